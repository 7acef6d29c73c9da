// SPDX-License-Identifier: MIT
// Reading whole documents without exceptions: the outcome says what the operations would have thrown,
// returned, or left in the last failure and in a report.

#include "LogSupport.h"
#include "TestFolder.h"
#include "TestSupport.h"

#include "modelkit/LogSinks.h"
#include "modelkit/ReadOutcome.h"

#include <QtCore/QFile>

#include <functional>
#include <new>
#include <stdexcept>
#include <vector>

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::IMKObject;
using MODELKIT::Limits;
using MODELKIT::ReadingReport;
using MODELKIT::ReadOptions;
using MODELKIT::ReadOutcome;

namespace {

const auto complete =
    "<PelLu300RouterMessage>\n <Type>Reply</Type>\n <MessageID>7</MessageID>\n</PelLu300RouterMessage>";
const auto withoutType = "<PelLu300RouterMessage>\n <MessageID>7</MessageID>\n</PelLu300RouterMessage>";
const auto withUnknown = "<PelLu300RouterMessage>\n <Type>Reply</Type>\n <New/>\n</PelLu300RouterMessage>";
const auto wrongType = "<PelLu300RouterMessage>\n <Type>Replay</Type>\n</PelLu300RouterMessage>";

// One of the functions, reading a message from XML or from the binary form of the message in that XML.
struct Way
{
    const char* name;
    std::function<ReadOutcome(IMKObject& record, const QByteArray& xml, const ReadOptions& options)> read;
    bool isXml;
};

QByteArray binaryOf(const QByteArray& xml)
{
    PelLu300RouterMessage message;
    if (!message.SetXmlBytes(xml))
        return xml;
    return message.GetBinaryRepresentationAsQByteArray();
}

QBuffer& opened(QBuffer& buffer)
{
    EXPECT_TRUE(buffer.open(QIODevice::ReadOnly));
    return buffer;
}

std::vector<Way> ways()
{
    using MODELKIT::TryLoadBinary;
    using MODELKIT::TryLoadXml;
    using MODELKIT::TryReadBinary;
    using MODELKIT::TryReadXml;
    using MODELKIT::TryReadXmlString;
    using R = IMKObject;
    using B = QByteArray;
    using O = ReadOptions;
    return {
        {"bytes of XML", [](R& r, const B& xml, const O& o) { return TryReadXml(r, xml, o); }, true},
        {"XML as a string",
         [](R& r, const B& xml, const O& o) { return TryReadXmlString(r, QString::fromUtf8(xml), o); }, true},
        {"a file of XML",
         [](R& r, const B& xml, const O& o) {
             const Folder folder;
             return TryLoadXml(r, folder.write(xml), o);
         },
         true},
        {"a device of XML",
         [](R& r, const B& xml, const O& o) {
             QBuffer buffer;
             buffer.setData(xml);
             return TryLoadXml(r, &opened(buffer), o);
         },
         true},
        {"a binary form", [](R& r, const B& xml, const O& o) { return TryReadBinary(r, binaryOf(xml), o); },
         false},
        {"a binary file",
         [](R& r, const B& xml, const O& o) {
             const Folder folder;
             return TryLoadBinary(r, folder.write(binaryOf(xml)), o);
         },
         false},
        {"a binary device",
         [](R& r, const B& xml, const O& o) {
             QBuffer buffer;
             buffer.setData(binaryOf(xml));
             return TryLoadBinary(r, &opened(buffer), o);
         },
         false},
    };
}

// Calls test(way) for each.
template <class Test>
void inEachWay(const Test& test)
{
    for (const Way& way : ways()) {
        SCOPED_TRACE(way.name);
        test(way);
    }
}

ReadOptions validating()
{
    ReadOptions options;
    options.validate = true;
    return options;
}

ReadOptions checking()
{
    ReadOptions options;
    options.check = true;
    return options;
}

ReadOptions reporting()
{
    ReadOptions options;
    options.report = true;
    return options;
}

class ThrowingSink : public MODELKIT::LogSink
{
public:
    void Write(MODELKIT::Logger::Level, const QString&) override { throw std::runtime_error("no ink"); }
};

// Throws while it is read, or before that.
class ThrowingRecord : public PelLu300RouterMessage
{
public:
    std::function<void()> whenRead = [] {};
    std::function<void()> whenValidated = [] {};

    void Reset() override
    {
        PelLu300RouterMessage::Reset();
        whenRead();
    }
    void SetValidate(bool validate) const override
    {
        PelLu300RouterMessage::SetValidate(validate);
        whenValidated();
    }
};

} // namespace

TEST(ReadOutcomes, SuccessIsTrueAndHasNoFailure)
{
    inEachWay([](const Way& way) {
        PelLu300RouterMessage message;
        const ReadOutcome outcome = way.read(message, complete, {});
        EXPECT_TRUE(outcome);
        EXPECT_EQ(outcome.failure.kind, Failure::None);
        EXPECT_FALSE(outcome.isReported);
        EXPECT_FALSE(outcome.HasLostNothing());
        EXPECT_EQ(message.GetMessageID(), 7U);
        EXPECT_FALSE(message.GetValidate());
    });
}

TEST(ReadOutcomes, FailuresAreThoseOfTheOperation)
{
    inEachWay([](const Way& way) {
        PelLu300RouterMessage message;
        const Log log(message);
        const ReadOutcome outcome = way.read(message, "<PelLu300RouterMessage>", {});
        EXPECT_FALSE(outcome);
        EXPECT_EQ(outcome.failure.kind, way.isXml ? Failure::NotWellFormed : Failure::WrongClass);
        EXPECT_FALSE(outcome.failure.text.isEmpty());
        EXPECT_EQ(outcome.failure.GetSentence(), IMKObject::GetLastFailure().GetSentence());
        log.expectOneError(outcome.failure.GetSentence());
    });
}

TEST(ReadOutcomes, ValidationRefusesWrongValuesAndStaysOn)
{
    inEachWay([](const Way& way) {
        PelLu300RouterMessage message;
        const Log log(message);
        const ReadOutcome outcome = way.read(message, wrongType, validating());
        EXPECT_FALSE(outcome);
        EXPECT_EQ(outcome.failure.kind, Failure::Refused);
        EXPECT_EQ(outcome.failure.text,
                  text("enum is not valid (classname=PelLu300RouterMessage,membername=m_type)"));
        EXPECT_EQ(outcome.failure.place.path, text("/PelLu300RouterMessage/Type"));
        EXPECT_EQ(outcome.failure.place.line, way.isXml ? 2 : 0);
        EXPECT_TRUE(message.GetValidate());
        log.expectOneError(outcome.failure.GetSentence());
    });
}

TEST(ReadOutcomes, WithoutTheOptionTheFlagOfTheRecordApplies)
{
    inEachWay([](const Way& way) {
        PelLu300RouterMessage message;
        message.SetValidate(true);
        EXPECT_FALSE(way.read(message, wrongType, {}));
        EXPECT_TRUE(message.GetValidate());
        message.SetValidate(false);
        EXPECT_TRUE(way.read(message, wrongType, {}));
        EXPECT_FALSE(message.GetValidate());
    });
}

TEST(ReadOutcomes, ACheckThatFailsIsARefusal)
{
    inEachWay([](const Way& way) {
        PelLu300RouterMessage message;
        EXPECT_TRUE(way.read(message, complete, checking()));
        const Log log(message);
        const char* const xml = way.isXml ? withoutType : wrongType;
        const ReadOutcome outcome = way.read(message, xml, checking());
        EXPECT_FALSE(outcome);
        EXPECT_EQ(outcome.failure.kind, Failure::Refused);
        EXPECT_EQ(outcome.failure.text, text("PelLu300RouterMessage: Please set Type properly."));
        EXPECT_EQ(outcome.failure.place.path, text("/PelLu300RouterMessage"));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::Refused);
        log.expectOneError(outcome.failure.GetSentence());
        EXPECT_TRUE(way.read(message, xml, {}));
    });
}

TEST(ReadOutcomes, AFileIsNamed)
{
    const Folder folder;
    PelLu300RouterMessage message;
    for (const ReadOptions& options : {validating(), checking()}) {
        const ReadOutcome outcome = MODELKIT::TryLoadXml(message, folder.write(wrongType), options);
        EXPECT_EQ(outcome.failure.kind, Failure::Refused);
        EXPECT_EQ(outcome.failure.place.file, folder.path());
        message.SetValidate(false);
    }
    const ReadOutcome missing = MODELKIT::TryLoadBinary(message, folder.folder() + text("/none"));
    EXPECT_EQ(missing.failure.kind, Failure::InputOutput);
    EXPECT_EQ(missing.failure.place.file, folder.folder() + text("/none"));
    EXPECT_EQ(MODELKIT::TryLoadXml(message, nullptr).failure.kind, Failure::InputOutput);
    EXPECT_EQ(MODELKIT::TryLoadBinary(message, nullptr).failure.kind, Failure::InputOutput);
}

TEST(ReadOutcomes, LimitsApplyToTheOperationAlone)
{
    inEachWay([](const Way& way) {
        ReadOptions options;
        options.limits = limitsWith([](Limits& limits) { limits.inputSize = 3; });
        PelLu300RouterMessage message;
        const ReadOutcome outcome = way.read(message, complete, options);
        EXPECT_EQ(outcome.failure.kind, Failure::InputTooLarge);
        EXPECT_TRUE(way.read(message, complete, {}));
    });
}

TEST(ReadOutcomes, AReportSaysWhatWasAcceptedSilently)
{
    PelLu300RouterMessage message;
    const ReadOutcome outcome = MODELKIT::TryReadXml(message, withUnknown, reporting());
    EXPECT_TRUE(outcome);
    EXPECT_TRUE(outcome.isReported);
    EXPECT_FALSE(outcome.HasLostNothing());
    ASSERT_EQ(outcome.entries.size(), 1);
    EXPECT_EQ(outcome.entries[0].kind, ReadingReport::UnknownElement);
    EXPECT_EQ(outcome.entries[0].place.line, 3);
    EXPECT_EQ(outcome.dropped, 0);

    inEachWay([](const Way& way) {
        PelLu300RouterMessage record;
        EXPECT_TRUE(way.read(record, complete, reporting()).HasLostNothing());
        EXPECT_FALSE(way.read(record, "<", reporting()).HasLostNothing());
    });
}

TEST(ReadOutcomes, WhatWasDroppedIsALossToo)
{
    QByteArray xml = "<DF_Params>";
    for (int i = 0; i <= ReadingReport::maximalEntries; ++i)
        xml += "<New/>";
    DF_Params record;
    ReadOutcome outcome = MODELKIT::TryReadXml(record, xml + "</DF_Params>", reporting());
    EXPECT_EQ(outcome.entries.size(), ReadingReport::maximalEntries);
    EXPECT_EQ(outcome.dropped, 1);
    outcome.entries.clear();
    EXPECT_FALSE(outcome.HasLostNothing());
}

TEST(ReadOutcomes, AReportOfTheCallerGetsTheEntriesToo)
{
    for (const ReadOptions& options : {ReadOptions(), reporting()}) {
        ReadingReport report;
        PelLu300RouterMessage message;
        EXPECT_TRUE(MODELKIT::TryReadXml(message, withUnknown, options));
        EXPECT_EQ(report.GetEntries().size(), 1);
    }
}

TEST(ReadOutcomes, ExceptionsOfOthersAreInterruptions)
{
    inEachWay([](const Way& way) {
        ThrowingRecord record;
        record.whenRead = [] { throw std::runtime_error("out of order"); };
        const ReadOutcome outcome = way.read(record, complete, {});
        EXPECT_EQ(outcome.failure.kind, Failure::Interrupted);
        EXPECT_EQ(outcome.failure.text, text("The operation was interrupted by an exception: out of order"));
        record.whenRead = [] { throw std::bad_alloc(); };
        EXPECT_EQ(way.read(record, complete, {}).failure.kind, Failure::Interrupted);
    });
}

TEST(ReadOutcomes, AnEarlierFailureIsNotToldAgain)
{
    ThrowingRecord record;
    EXPECT_FALSE(MODELKIT::TryReadXml(record, "<"));
    record.whenValidated = [] { throw std::runtime_error("out of order"); };
    const ReadOutcome outcome = MODELKIT::TryReadXml(record, complete, validating());
    EXPECT_EQ(outcome.failure.kind, Failure::Interrupted);
    EXPECT_EQ(outcome.failure.place.line, 0);
}

TEST(ReadOutcomes, ALogThatFailsDoesNotHideTheReason)
{
    inEachWay([](const Way& way) {
        PelLu300RouterMessage message;
        message.SetLogger(std::make_shared<MODELKIT::Logger>(std::make_shared<ThrowingSink>()));
        EXPECT_EQ(way.read(message, wrongType, validating()).failure.kind, Failure::Refused);
        message.SetValidate(false);
        EXPECT_EQ(way.read(message, wrongType, checking()).failure.kind, Failure::Refused);
        EXPECT_EQ(way.read(message, "<", {}).failure.kind,
                  way.isXml ? Failure::NotWellFormed : Failure::NotABinaryForm);
    });
}

TEST(ReadOutcomes, OtherExceptionsThanThoseOfTheStandardArePassedOn)
{
    ThrowingRecord record;
    record.whenRead = [] { throw 7; };
    EXPECT_THROW(static_cast<void>(MODELKIT::TryReadXml(record, complete)), int);
}
