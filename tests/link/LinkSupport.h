// SPDX-License-Identifier: MIT
// What the tests of connections share: messages in every form, and what a reader makes of bytes.
#pragma once

#include "TestSupport.h"

#include "documents/Document.h"
#include "link/MessageReader.h"

#include <QtCore/QStringList>

#include <utility>

namespace link_support {

using namespace ROUTERLINK;
using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::Limits;
using ROUTERDOCUMENTS::Form;

constexpr Form wireForms[] = {Form::Xml, Form::Binary, Form::Compressed};

inline PelLu300RouterInterfaceXml numbered(unsigned int number,
                                           PelLu300RouterMessage::Type type = PelLu300RouterMessage::Request)
{
    PelLu300RouterInterfaceXml document;
    document.GetPelLu300RouterMessage().SetType(type);
    document.GetPelLu300RouterMessage().SetMessageID(number);
    return document;
}

inline QByteArray inForm(Form form, unsigned int number)
{
    PelLu300RouterInterfaceXml document = numbered(number);
    return ROUTERDOCUMENTS::WriteDocument(document, form);
}

inline QByteArray xml(unsigned int number) { return inForm(Form::Xml, number); }
inline QByteArray binary(unsigned int number) { return inForm(Form::Binary, number); }

// A binary form whose content cannot be read although its length is right: an entry is longer than the form.
inline QByteArray binaryWithWrongEntry()
{
    QByteArray form = binary(1);
    constexpr int lowestByteOfEntryLength = 15;
    form[lowestByteOfEntryLength] = static_cast<char>(form.at(lowestByteOfEntryLength) + 1);
    return form;
}

inline unsigned int numberOf(const PelLu300RouterInterfaceXml& document)
{
    return document.GetPelLu300RouterMessage().GetMessageID();
}

// What the reader gives, until it needs more: for example "7 xml @12" for a message with that number and
// offset, "refused WrongRoot @12", "broken NotWellFormed @12" or "ended".
inline QStringList takeAll(MessageReader& reader)
{
    static const QStringList kinds = {"None",
                                      "InputOutput",
                                      "NotWellFormed",
                                      "WrongRoot",
                                      "DoctypeRefused",
                                      "InputTooLarge",
                                      "InflatedTooLarge",
                                      "NestedTooDeep",
                                      "TooManyAttributes",
                                      "TooManyItems",
                                      "NotABinaryForm",
                                      "WrongClass",
                                      "DamagedCompression",
                                      "NotRepresentable",
                                      "Refused",
                                      "EncodingRefused",
                                      "NotWholeYet",
                                      "Interrupted",
                                      "NothingToWrite"};
    QStringList lines;
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    while (true) {
        const MessageReader::Outcome outcome = reader.Next(document);
        const bool isFailed = outcome == MessageReader::Refused || outcome == MessageReader::Broken;
        EXPECT_EQ(reader.GetFailure().kind != Failure::None, isFailed);
        EXPECT_EQ(reader.GetFailure().text.isEmpty(), !isFailed);
        const QString end = QStringLiteral(" @%1").arg(reader.GetOffset());
        switch (outcome) {
        case MessageReader::NeedMore:
            return lines;
        case MessageReader::Ready:
            lines += QString::number(numberOf(document)) + ' ' + NameOf(reader.GetForm()) + end;
            break;
        case MessageReader::Refused:
            lines += "refused " + kinds.at(reader.GetFailure().kind) + end;
            break;
        case MessageReader::Broken:
            lines += "broken " + kinds.at(reader.GetFailure().kind) + end;
            return lines;
        case MessageReader::Ended:
            lines += QStringLiteral("ended");
            return lines;
        }
    }
}

// The same for all of the bytes of a connection, in pieces of at most that size.
inline QStringList readInPieces(const QByteArray& stream, int piece, const Limits& limits = {})
{
    MessageReader reader(limits);
    QStringList lines;
    for (int at = 0; at < stream.size(); at += piece) {
        reader.AddData(stream.mid(at, piece));
        lines += takeAll(reader);
        if (!lines.isEmpty() && lines.constLast().startsWith("broken"))
            return lines;
    }
    reader.EndData();
    return lines + takeAll(reader);
}

// In one piece, and byte by byte, which must not make a difference.
inline QStringList readAll(const QByteArray& stream, const Limits& limits = {})
{
    QStringList lines = readInPieces(stream, stream.size() + 1, limits);
    EXPECT_EQ(readInPieces(stream, 1, limits), lines);
    return lines;
}

} // namespace link_support
