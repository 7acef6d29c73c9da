// SPDX-License-Identifier: MIT
#include "InputFile.h"

#include "Finding.h"

#include "modelkit/Limits.h"

#include <QtCore/QFileInfo>

#include <unistd.h>

#include <algorithm>

namespace routermsg {

using MODELKIT::Intake;

namespace {

bool isStandardInput(const QString& path) { return path == QLatin1String("-"); }

} // namespace

QString inputName(const QString& path) { return isStandardInput(path) ? QStringLiteral("<stdin>") : path; }

InputFile::InputFile(const QString& path)
    : m_name(inputName(path)), m_file(path), m_intake(m_file, MODELKIT::Limits::anyNumber)
{
    const auto mode = QIODevice::ReadOnly | QIODevice::Unbuffered;
    if (!isStandardInput(path) && QFileInfo(path).isDir()) {
        setErrorString(QStringLiteral("it is a folder, expected is a file"));
        refuse();
    }
    if (isStandardInput(path) ? !m_file.open(STDIN_FILENO, mode) : !m_file.open(mode)) {
        // A word of the command line that is not UTF-8 has lost its bytes.
        const bool isLost = path.contains(QChar::ReplacementCharacter) && !QFileInfo::exists(path);
        setErrorString(isLost ? QStringLiteral("its name is not UTF-8") : m_file.errorString());
        refuse();
    }
    setOpenMode(mode);
}

bool InputFile::take(qint64 most, QByteArray& bytes)
{
    const Intake::Outcome outcome = takeArrived(most, bytes);
    if (outcome == Intake::Broken)
        refuse();
    return outcome == Intake::Whole;
}

void InputFile::refuse() const
{
    throw Refusal(Finding::of(MODELKIT::cannotRead(&m_file, errorString()), m_name));
}

void InputFile::forget()
{
    m_isKeeping = false;
    m_beginning = QByteArray();
}

qint64 InputFile::readData(char* data, qint64 size)
{
    QByteArray bytes;
    if (takeArrived(size, bytes) == Intake::Broken)
        return -1;
    std::copy(bytes.cbegin(), bytes.cend(), data);
    return bytes.size();
}

qint64 InputFile::writeData(const char* /*data*/, qint64 /*size*/) { return -1; }

Intake::Outcome InputFile::takeArrived(qint64 most, QByteArray& bytes)
{
    constexpr qint64 mostKept = qint64(1) << 20;
    const auto before = bytes.size();
    const Intake::Outcome outcome = m_intake.TakeArrived(most, bytes);
    if (outcome == Intake::Broken)
        setErrorString(m_intake.GetReason());
    const auto count = bytes.size() - before;
    m_count += count;
    constexpr qint64 headSize = 64;
    m_head.append(bytes.constData() + before,
                  static_cast<int>(std::min<qint64>(count, headSize - m_head.size())));
    if (m_isKeeping)
        m_beginning.append(bytes.constData() + before,
                           static_cast<int>(std::min<qint64>(count, mostKept - m_beginning.size())));
    return outcome;
}

} // namespace routermsg
