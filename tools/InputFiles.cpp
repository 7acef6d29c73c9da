// SPDX-License-Identifier: MIT
#include "InputFiles.h"

#include "Finding.h"
#include "InputFile.h"

#include "modelkit/Devices.h"
#include "modelkit/Limits.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

void addFilesIn(const QString& folder, QStringList& files)
{
    const QDir dir(folder);
    // Only the names, because there may be many files.
    const QStringList names = dir.entryList(QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& name : names) {
        const QString path = dir.filePath(name);
        const QFileInfo entry(path);
        if (entry.isDir() && !entry.isSymLink())
            addFilesIn(path, files);
        else if (entry.isFile() && FormOfFileName(name))
            files += path;
    }
}

} // namespace

QByteArray readInput(const QString& path)
{
    constexpr qint64 step = qint64(1) << 20;
    const qint64 limit = MODELKIT::Limits::Get().inputSize;
    InputFile file(path);
    file.forget();
    QByteArray bytes;
    while (file.take(step, bytes))
        if (bytes.size() > limit)
            throw Refusal(Finding::of(MODELKIT::inputTooLarge(limit), inputName(path)));
    return bytes;
}

Document parse(const QByteArray& bytes, const QString& name, const ReadingOptions& options)
{
    try {
        return ReadDocument(bytes, options);
    } catch (const DocumentError& error) {
        throw Refusal(Finding::of(error, name));
    }
}

QStringList filesAmong(const QStringList& paths)
{
    QStringList files;
    for (const QString& path : paths) {
        const auto before = files.size();
        if (QFileInfo(path).isDir())
            addFilesIn(path, files);
        // A folder without documents stays in the list: readInput() complains about it.
        if (files.size() == before)
            files += path;
    }
    return files;
}

} // namespace routermsg
