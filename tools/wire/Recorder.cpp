// SPDX-License-Identifier: MIT
#include "wire/Recorder.h"

#include "Finding.h"
#include "documents/DocumentError.h"

#include "modelkit/Devices.h"

#include <QtCore/QFileInfo>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

Recorder::Recorder(const QString& path) : m_path(path), m_file(path)
{
    // Each exchange goes to the file in one piece.
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        throw Refusal(Finding::ofFile(
            path, QStringLiteral("The recording cannot be written: %1.").arg(m_file.errorString())));
    endLastLine();
}

void Recorder::add(const Exchange& exchange)
{
    try {
        WriteExchange(m_file, exchange);
    } catch (const DocumentError& error) {
        throw OutputRefusal(Finding::ofFile(m_path, error.GetText()));
    }
}

// A program that was killed may have left half a line.
void Recorder::endLastLine()
{
    if (!QFileInfo(m_path).isFile() || m_file.size() == 0)
        return;
    QFile before(m_path);
    char last = 0;
    if (!before.open(QIODevice::ReadOnly) || !before.seek(before.size() - 1) || !before.getChar(&last))
        throw Refusal(Finding::ofFile(
            m_path,
            QStringLiteral("The end of the recording cannot be read: %1.").arg(before.errorString())));
    QString reason;
    if (last != '\n' && !MODELKIT::writeAll(m_file, "\n", reason))
        throw Refusal(
            Finding::ofFile(m_path, QStringLiteral("The recording cannot be written: %1.").arg(reason)));
}

} // namespace routermsg
