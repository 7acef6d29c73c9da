// SPDX-License-Identifier: MIT
// What the tests of recordings share: messages in every form, devices, and all that a reader gives.
#pragma once

#include "TestSupport.h"

#include "documents/Document.h"
#include "documents/Recording.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <algorithm>

namespace recording_support {

using namespace ROUTERDOCUMENTS;
using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::Limits;
using MODELKIT::LimitsInScope;

constexpr Form allForms[] = {Form::Xml, Form::Binary, Form::Compressed, Form::Json, Form::JsonLines};

inline PelLu300RouterInterfaceXml numbered(unsigned int number)
{
    PelLu300RouterInterfaceXml document;
    document.GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Request);
    document.GetPelLu300RouterMessage().SetMessageID(number);
    return document;
}

// A message as it stands in a recording.
inline QByteArray inForm(Form form, unsigned int number)
{
    PelLu300RouterInterfaceXml document = numbered(number);
    return WriteMessage(document, form);
}

// The number in a message; 0 when it cannot be read.
inline unsigned int numberIn(const RecordedMessage& message)
{
    try {
        const Document document = ReadDocument(message.bytes, {message.form});
        const auto* read = dynamic_cast<const PelLu300RouterInterfaceXml*>(document.record.get());
        return read ? read->GetPelLu300RouterMessage().GetMessageID() : 0;
    } catch (const DocumentError&) {
        return 0;
    }
}

// A device that gives no more than a few bytes at a time.
class Pieces : public QIODevice
{
public:
    Pieces(const QByteArray& content, int piece, bool isSequential = false)
        : m_content(content), m_piece(piece), m_isSequential(isSequential)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return m_isSequential; }
    qint64 size() const override { return m_isSequential ? 0 : m_content.size(); }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        const qint64 given = std::min({size, m_piece, m_content.size() - m_at});
        std::copy_n(m_content.constData() + m_at, given, data);
        m_at += given;
        return given;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    const QByteArray m_content;
    const qint64 m_piece;
    const bool m_isSequential;
    qint64 m_at = 0;
};

// All that comes out of a recording.
struct Outcome
{
    QVector<RecordedMessage> messages;
    QVector<DocumentError> errors;
    // Messages and errors in their order, for example "xml 0:1" or "! 17:0 No message begins here...", each
    // with offset and line.
    QStringList lines;
};

inline Outcome readAll(QIODevice& device, const RecordingOptions& options = {})
{
    Outcome outcome;
    const qint64 count = ForEachMessage(
        device, options,
        [&](const RecordedMessage& message) {
            outcome.messages.append(message);
            outcome.lines += QStringLiteral("%1 %2:%3")
                                 .arg(NameOf(message.form), QString::number(message.offset),
                                      QString::number(message.line));
        },
        [&](const DocumentError& error) {
            outcome.errors.append(error);
            outcome.lines += QStringLiteral("! %1:%2 %3")
                                 .arg(QString::number(error.GetPlace().offset),
                                      QString::number(error.GetPlace().line), error.GetText());
        });
    EXPECT_EQ(count, outcome.messages.size());
    return outcome;
}

inline Outcome readAll(QByteArray content, const RecordingOptions& options = {})
{
    QBuffer buffer(&content);
    return readAll(buffer, options);
}

// Piece: for a device that gives no more at a time.
inline Outcome readInPieces(const QByteArray& content, int piece, const RecordingOptions& options = {})
{
    Pieces device(content, piece);
    return readAll(device, options);
}

inline QVector<unsigned int> numbersIn(const Outcome& outcome)
{
    QVector<unsigned int> numbers;
    for (const RecordedMessage& message : outcome.messages)
        numbers += numberIn(message);
    return numbers;
}

inline QByteArray wide(const QByteArray& text, int size, bool isBigEndian)
{
    QByteArray result;
    for (const char character : text)
        for (int i = 0; i < size; ++i)
            result += i == (isBigEndian ? size - 1 : 0) ? character : '\0';
    return result;
}

// The example documents, by name.
inline QVector<QByteArray> examples()
{
    QVector<QByteArray> documents;
    const QDir folder(projectPath("examples/documents"));
    for (const QString& name : folder.entryList({QStringLiteral("*.xml")}, QDir::Files, QDir::Name)) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        documents += file.readAll();
    }
    EXPECT_GT(documents.size(), 10);
    return documents;
}

} // namespace recording_support
