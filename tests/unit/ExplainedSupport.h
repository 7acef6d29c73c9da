// SPDX-License-Identifier: MIT
// What the tests of explained failures share: a document with its form, and checks that an operation fails
// with the right kind, the whole sentence and one entry in the log.
#pragma once

#include "LogSupport.h"
#include "TestFolder.h"
#include "TestSupport.h"

namespace testing_support {

using MODELKIT::Failure;
using MODELKIT::IMKObject;

inline QString inRoot(const QString& content)
{
    return text("<PelLu300RouterInterfaceXml>") + content + text("</PelLu300RouterInterfaceXml>");
}

inline QString attributes(int count)
{
    QString result;
    for (int i = 0; i < count; ++i)
        result += text(" a%1=''").arg(i);
    return result;
}

inline PelLu300RouterInterfaceXml sample()
{
    PelLu300RouterInterfaceXml document;
    document.GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Reply);
    document.GetPelLu300RouterMessage().SetMessageID(7);
    return document;
}

const char* const sampleForm = "8553499A 00000029 9B1A7AD8 00000021"
                               "E1D9E008 00000009 00000005 5265706C79"
                               "EF193DE9 00000008 0000000000000007";

// Expects that the operation returns false for that reason, before it has changed the record.
template <class Operation>
void expectFailure(PelLu300RouterInterfaceXml& document, Failure::Kind kind, const QString& sentence,
                   const Operation& operation)
{
    const Log log(document);
    EXPECT_FALSE(operation());
    EXPECT_EQ(IMKObject::GetLastFailure().kind, kind);
    EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(), sentence);
    log.expectOneError(sentence);
}

inline void expectFileRefused(const QByteArray& bytes, Failure::Kind kind, const QString& sentence,
                              bool validate = false)
{
    const Folder folder;
    const QString path = folder.write(bytes);
    PelLu300RouterInterfaceXml document;
    document.SetValidate(validate);
    expectFailure(document, kind, path + text(":") + sentence, [&] { return document.LoadXml(path); });
}

// The same for the text as a string and as a file.
inline void expectRefused(const QString& xml, Failure::Kind kind, const QString& sentence,
                          bool validate = false)
{
    PelLu300RouterInterfaceXml document;
    document.SetValidate(validate);
    expectFailure(document, kind, sentence, [&] { return document.SetXmlString(xml, true); });
    expectFileRefused(xml.toUtf8(), kind, sentence, validate);
}

// The reason comes from the XML reader, which chooses the words.
inline void expectNotWellFormed(const QString& xml, const QString& position, const QString& path)
{
    PelLu300RouterInterfaceXml document;
    const Log log(document);
    EXPECT_FALSE(document.SetXmlString(xml, false));
    const Failure& failure = IMKObject::GetLastFailure();
    EXPECT_EQ(failure.kind, Failure::NotWellFormed);
    EXPECT_FALSE(failure.text.isEmpty());
    const QString sentence = text("%1: %2 (in %3)").arg(position, failure.text, path);
    EXPECT_EQ(failure.GetSentence(), sentence);
    log.expectOneError(sentence);
}

inline void expectRead(const QString& xml)
{
    PelLu300RouterInterfaceXml document;
    const Log log(document);
    EXPECT_TRUE(document.SetXmlString(xml, false)) << IMKObject::GetLastFailure().GetSentence().toStdString();
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::None);
    const Folder folder;
    EXPECT_TRUE(document.LoadXml(folder.write(xml.toUtf8())));
    log.expectNothing();
}

// Expects that the operation throws this exception, with that sentence as the reason and in the log.
template <class Exception, class Operation>
void expectThrown(const IMKObject& record, const QString& sentence, const Operation& operation)
{
    const Log log(record);
    try {
        operation();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const ModelKitException& exception) {
        EXPECT_TRUE(typeid(exception) == typeid(Exception)) << typeid(exception).name();
        Failure same;
        same.text = exception.GetText();
        same.place = exception.GetPlace();
        EXPECT_EQ(same.GetSentence(), sentence);
    }
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::Refused);
    EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(), sentence);
    log.expectOneError(sentence);
}

} // namespace testing_support
