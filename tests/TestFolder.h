// SPDX-License-Identifier: MIT
// Files of a test.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

#include <sys/resource.h>

namespace testing_support {

// A temporary folder with at most one document. It exists as long as the object.
class Folder
{
public:
    QString folder() const { return m_folder.path(); }
    QString path() const { return m_folder.filePath(QStringLiteral("document")); }

    // The names of everything in the folder, including hidden files.
    QStringList entries() const
    {
        return QDir(m_folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    // Returns the path of the document.
    QString write(const QByteArray& content) const
    {
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(content), content.size());
        return path();
    }

    QByteArray read() const
    {
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

private:
    QTemporaryDir m_folder;
};

// While the object lives, no file can grow above the limit. Writing more fails as on a full disk.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(int bytes) : m_signalBefore(std::signal(SIGXFSZ, SIG_IGN))
    {
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &m_before), 0);
        rlimit limit = m_before;
        limit.rlim_cur = static_cast<rlim_t>(bytes);
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit()
    {
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &m_before), 0);
        std::signal(SIGXFSZ, m_signalBefore);
    }

private:
    void (*m_signalBefore)(int);
    rlimit m_before = {};
};

} // namespace testing_support
