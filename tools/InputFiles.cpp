// SPDX-License-Identifier: MIT
#include "InputFiles.h"

#include "Finding.h"

#include "modelkit/Limits.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <unistd.h>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

bool isStandardStream(const QString& path) { return path == QLatin1String("-"); }

MODELKIT::Place placeIn(const QString& name)
{
    MODELKIT::Place place;
    place.file = name;
    return place;
}

QByteArray readAll(QFile& file, const QString& path)
{
    constexpr qint64 step = qint64(1) << 20;
    const qint64 limit = MODELKIT::Limits::Get().inputSize;
    QByteArray bytes;
    while (true) {
        const QByteArray more = file.read(step);
        if (file.error() != QFileDevice::NoError)
            refuseToRead(path, file.errorString());
        if (more.isEmpty())
            return bytes;
        bytes += more;
        if (bytes.size() > limit)
            throw Refusal({Finding::Error, Found,
                           QStringLiteral("The input is larger than the limit of %1 bytes.").arg(limit),
                           placeIn(inputName(path))});
    }
}

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

QString inputName(const QString& path) { return isStandardStream(path) ? QStringLiteral("<stdin>") : path; }

void refuseToRead(const QString& path, const QString& reason)
{
    throw Refusal(
        Finding::ofFile(inputName(path), QStringLiteral("The file cannot be read: %1.").arg(reason)));
}

void refuseFolder(const QString& path)
{
    if (QFileInfo(path).isDir())
        refuseToRead(
            path, QStringLiteral("it is a folder without files whose names end in %1").arg(KnownEndings()));
}

QByteArray readInput(const QString& path)
{
    QFile file(path);
    if (isStandardStream(path)) {
        if (!file.open(STDIN_FILENO, QIODevice::ReadOnly | QIODevice::Unbuffered))
            refuseToRead(path, file.errorString());
        return readAll(file, path);
    }
    refuseFolder(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        refuseToRead(path, file.errorString());
    return readAll(file, path);
}

Document load(const QString& path, const ReadingOptions& options)
{
    return parse(readInput(path), inputName(path), options);
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
