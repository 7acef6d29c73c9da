// SPDX-License-Identifier: MIT
#include "InputList.h"

#include "documents/Forms.h"

#include <QtCore/QByteArray>
#include <QtCore/QFileInfo>

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

QString systemText(int error) { return qt_error_string(error); }

// Qt leaves out entries that it cannot name or open, so the folders are read with the system's own calls.
class Search
{
public:
    explicit Search(InputList& found) : m_found(found) {}

    void addFolder(const QByteArray& folder)
    {
        const auto names = namesIn(folder);
        if (!names)
            return;
        for (const QByteArray& name : *names)
            if (!addEntry(folder, name))
                return;
    }

private:
    // None, with a problem, if the folder cannot be read.
    std::optional<QVector<QByteArray>> namesIn(const QByteArray& folder)
    {
        const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(folder.constData()), closedir);
        if (!stream) {
            addProblem(folder, QStringLiteral("The folder cannot be read: %1.").arg(systemText(errno)));
            return std::nullopt;
        }
        QVector<QByteArray> names;
        while (const dirent* const entry = nextIn(*stream))
            if (entry->d_name[0] != '.')
                names += QByteArray(entry->d_name);
        if (errno != 0)
            addProblem(folder,
                       QStringLiteral("The folder cannot be read as a whole: %1.").arg(systemText(errno)));
        std::sort(names.begin(), names.end());
        return names;
    }

    // Null at the end, with errno 0, and on failure.
    static const dirent* nextIn(DIR& stream)
    {
        errno = 0;
        return readdir(&stream);
    }

    // False, with a problem, if nothing in the folder can be accessed.
    bool addEntry(const QByteArray& folder, const QByteArray& name)
    {
        const QByteArray path = folder.endsWith('/') ? folder + name : folder + '/' + name;
        struct stat status = {};
        if (lstat(path.constData(), &status) != 0) {
            if (errno == EACCES) {
                addProblem(
                    folder,
                    QStringLiteral("What is in the folder cannot be read: %1.").arg(systemText(errno)));
                return false;
            }
            // It was removed in the meantime.
            return true;
        }
        const bool isLink = S_ISLNK(status.st_mode);
        const bool isDocument = FormOfFileName(QString::fromUtf8(name)).has_value();
        const bool isBroken = isLink && stat(path.constData(), &status) != 0;
        const int error = errno;
        const bool isFolder = S_ISDIR(status.st_mode) && !isLink;
        if (!isFolder && !(isDocument && (isBroken || S_ISREG(status.st_mode))))
            return true;
        if (QString::fromUtf8(name).toUtf8() != name)
            addProblem(path, isFolder ? QStringLiteral("The folder cannot be read: its name is not UTF-8.")
                                      : QStringLiteral("The file cannot be read: its name is not UTF-8."));
        else if (isFolder)
            addFolder(path);
        else if (isBroken)
            addProblem(path, QStringLiteral("The link cannot be followed: %1.").arg(systemText(error)));
        else
            m_found.files += QString::fromUtf8(path);
        return true;
    }

    void addProblem(const QByteArray& path, const QString& text)
    {
        m_found.problems += Finding::ofFile(QString::fromUtf8(path), text);
    }

    InputList& m_found;
};

} // namespace

InputList inputsIn(const QString& folder)
{
    InputList found;
    Search(found).addFolder(folder.toUtf8());
    return found;
}

Finding nothingIn(const QString& folder)
{
    return Finding::ofFile(
        folder, QStringLiteral("The folder has no files whose names end in %1.").arg(KnownEndings()));
}

InputList inputsAmong(const QStringList& paths)
{
    InputList all;
    for (const QString& path : paths) {
        if (!QFileInfo(path).isDir()) {
            all.files += path;
            continue;
        }
        const InputList found = inputsIn(path);
        all.files += found.files;
        all.problems += found.problems;
        if (found.files.isEmpty() && found.problems.isEmpty())
            all.problems += nothingIn(path);
    }
    return all;
}

} // namespace routermsg
