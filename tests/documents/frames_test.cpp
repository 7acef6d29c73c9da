// SPDX-License-Identifier: MIT
// Bare frames: with and without a class id, in both byte orders; one, and several one behind another.
#include "RecordingSupport.h"
#include "ReportSupport.h"

#include "documents/Dissection.h"
#include "documents/DocumentCheck.h"

using namespace recording_support;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

constexpr FrameFormat bigWithId{true, QDataStream::BigEndian};
constexpr FrameFormat littleWithId{true, QDataStream::LittleEndian};
constexpr FrameFormat bigWithoutId{false, QDataStream::BigEndian};
constexpr FrameFormat littleWithoutId{false, QDataStream::LittleEndian};
constexpr FrameFormat allFormats[] = {bigWithId, littleWithId, bigWithoutId, littleWithoutId};

const RecordInfo& portInfo() { return *RecordInfo::Find(QStringLiteral("OstraInterfacePort")); }
const RecordInfo& serverInfo() { return *RecordInfo::Find(QStringLiteral("PelVtConnectServer")); }

// What a program gets that calls GetBinary() itself.
QByteArray frameOf(const MODELKIT::IMKObject& record, const FrameFormat& format)
{
    QByteArray frame;
    QDataStream stream(&frame, QIODevice::WriteOnly);
    stream.setByteOrder(format.byteOrder);
    EXPECT_TRUE(record.GetBinary(stream, static_cast<int>(RecordInfo::Of(record).GetId()), format.hasId));
    return frame;
}

OstraInterfacePort port(unsigned int number)
{
    OstraInterfacePort record;
    record.SetPort(number);
    return record;
}

PelLu300RouterInterfaceXml fullDocument()
{
    PelLu300RouterInterfaceXml document = numbered(7);
    Fragment fragment;
    fragment.GetDF_Params().SetFrequency(98500000.25);
    document.GetPelLu300RouterMessage().AppendFragment(fragment);
    fragment.GetPelVtConnectServer().SetAddress(QStringLiteral("r\u00FCter"));
    document.GetPelLu300RouterMessage().AppendFragment(fragment);
    return document;
}

ReadingOptions inFormat(const FrameFormat& format, const RecordInfo* info = nullptr,
                        Validation validation = Validation::Off)
{
    return {std::nullopt, validation, format, info};
}

RecordingOptions recordingOf(const FrameFormat& format) { return {std::nullopt, format}; }

// The kind, offset and text of the error; empty when the frame is read.
QString errorOf(const QByteArray& frame, const ReadingOptions& options)
{
    try {
        ReadDocument(frame, options);
        return QString();
    } catch (const DocumentError& error) {
        return QStringLiteral("%1 at %2: %3")
            .arg(error.GetKind())
            .arg(error.GetPlace().offset)
            .arg(error.GetText());
    }
}

// Where the messages are that can be read. With "!" in front, those that are rejected; "!" alone is what is
// no message.
QStringList readableIn(const QByteArray& content, int piece, const FrameFormat& format)
{
    QStringList places;
    bool isRejected = false;
    Pieces device(content, piece);
    ForEachMessage(
        device, recordingOf(format),
        [&](const RecordedMessage& message) {
            const QString place = QString::number(message.offset);
            isRejected = !errorOf(message.bytes, inFormat(*message.frame)).isEmpty();
            places += isRejected ? QStringLiteral("! ") + place : place;
            ReadDocument(message.bytes, inFormat(*message.frame));
        },
        [&](const DocumentError&) {
            if (!isRejected)
                places += QStringLiteral("!");
            isRejected = false;
        });
    return places;
}

QString error(Failure::Kind kind, qint64 offset, const char* text)
{
    return QStringLiteral("%1 at %2: %3").arg(kind).arg(offset).arg(QLatin1String(text));
}

QVector<Part> partsOf(const QByteArray& frame, const FrameFormat& format, const RecordInfo* info)
{
    QVector<Part> parts;
    QByteArray plain;
    DissectFrame(frame, format, info, plain, [&](const Part& part) { parts += part; });
    return parts;
}

} // namespace

// --- one frame ------------------------------------------------------------------------------

TEST(Frames, AreReadInEveryLayout)
{
    PelLu300RouterInterfaceXml written = fullDocument();
    for (const FrameFormat& format : allFormats) {
        const QByteArray frame = frameOf(written, format);
        const Document read = ReadDocument(frame, inFormat(format, &RecordInfo::Document(), Validation::On));
        EXPECT_TRUE(dynamic_cast<PelLu300RouterInterfaceXml&>(*read.record) == written);
        EXPECT_EQ(read.form, Form::Binary);
        EXPECT_EQ(read.info, &RecordInfo::Document());
        EXPECT_EQ(read.size, frame.size());
        ASSERT_TRUE(read.frame);
        EXPECT_EQ(read.frame->hasId, format.hasId);
        EXPECT_EQ(read.frame->byteOrder, format.byteOrder);
    }
}

TEST(Frames, OfEveryRecordAreRead)
{
    for (const RecordInfo* info : RecordInfo::All())
        for (const FrameFormat& format : allFormats) {
            const auto record = info->Create();
            record->SetValidate(false);
            const Document read = ReadDocument(frameOf(*record, format), inFormat(format, info));
            EXPECT_EQ(read.info, info) << info->GetName().toStdString();
        }
}

TEST(Frames, HaveTheBytesThatGetBinaryWrites)
{
    const auto numberIn = [](const char* hex, const FrameFormat& format) {
        const Document read = ReadDocument(bytes(hex), inFormat(format, &portInfo()));
        return dynamic_cast<const OstraInterfacePort&>(*read.record).GetPort();
    };
    EXPECT_EQ(numberIn("7F012EB8 00000010 1F980517 00000008 0000000000001388", bigWithId), 5000U);
    EXPECT_EQ(numberIn("B82E017F 10000000 1705981F 08000000 8813000000000000", littleWithId), 5000U);
    EXPECT_EQ(numberIn("00000010 1F980517 00000008 0000000000001388", bigWithoutId), 5000U);
    EXPECT_EQ(numberIn("10000000 1705981F 08000000 8813000000000000", littleWithoutId), 5000U);
}

TEST(Frames, TellTheirClassByTheirId)
{
    EXPECT_EQ(ReadDocument(frameOf(port(1), littleWithId), inFormat(littleWithId)).info, &portInfo());
}

TEST(Frames, WithoutIdAndClassAreAMistakeOfTheProgram)
{
    const QByteArray frame = frameOf(port(1), bigWithoutId);
    EXPECT_THROW(ReadDocument(frame, inFormat(bigWithoutId)), std::logic_error);
    EXPECT_THROW(CheckDocument(frame, {std::nullopt, 0, bigWithoutId}), std::logic_error);
    EXPECT_THROW(partsOf(frame, bigWithoutId, nullptr), std::logic_error);
}

TEST(Frames, OfAnotherClassAreRefused)
{
    EXPECT_EQ(
        errorOf(frameOf(port(1), littleWithId), inFormat(littleWithId, &serverInfo())),
        error(Failure::WrongClass, 0, "The frame holds OstraInterfacePort, expected is PelVtConnectServer."));
    EXPECT_EQ(errorOf(bytes("7F012EB8 00000000"), inFormat(littleWithId)),
              error(Failure::WrongClass, 0, "The frame has the class id B82E017F, which no record has."));
}

TEST(Frames, WithWrongLengthsAreRefused)
{
    const QByteArray frame = frameOf(port(1), littleWithoutId);
    const ReadingOptions options = inFormat(littleWithoutId, &portInfo());
    EXPECT_EQ(errorOf(QByteArray(), options),
              error(Failure::NotABinaryForm, 0, "The frame is cut off; its length is missing."));
    EXPECT_EQ(errorOf(frame.left(3), options),
              error(Failure::NotABinaryForm, 3, "The frame is cut off; its length is missing."));
    EXPECT_EQ(errorOf(frame.left(19), options),
              error(Failure::NotABinaryForm, 19, "The frame is cut off; 1 byte is missing."));
    EXPECT_EQ(errorOf(frame.left(4), options),
              error(Failure::NotABinaryForm, 4, "The frame is cut off; 16 bytes are missing."));
    EXPECT_EQ(errorOf(frame + "x", options),
              error(Failure::NotABinaryForm, 20, "1 byte follows behind the end of the frame."));
    EXPECT_EQ(errorOf(frame + "xy", options),
              error(Failure::NotABinaryForm, 20, "2 bytes follow behind the end of the frame."));
    EXPECT_EQ(errorOf(bytes("FFFFFFFF"), options),
              error(Failure::NotABinaryForm, 0, "The frame has a negative length."));
}

TEST(Frames, WithWrongContentAreRefusedWithTheOffset)
{
    // The entry of Port says that 4 bytes are its value, and there are no more.
    EXPECT_EQ(errorOf(bytes("0C000000 1705981F 04000000 88130000"), inFormat(littleWithoutId, &portInfo())),
              error(Failure::Refused, 16,
                    "OstraInterfacePort::SetBinary(...): Length error occurred during processing of binary "
                    "representation"));
    // The same behind a class id.
    EXPECT_EQ(errorOf(bytes("B82E017F 0C000000 1705981F 04000000 88130000"), inFormat(littleWithId)),
              error(Failure::Refused, 20,
                    "OstraInterfacePort::SetBinary(...): Length error occurred during processing of binary "
                    "representation"));
}

TEST(Frames, AreCheckedWithValidationOnly)
{
    const RecordInfo* const info = RecordInfo::Find(QStringLiteral("PelLu300RouterMessage"));
    PelLu300RouterMessage withoutType;
    withoutType.SetValidate(false);
    for (const FrameFormat& format : allFormats) {
        const QByteArray frame = frameOf(withoutType, format);
        EXPECT_EQ(errorOf(frame, inFormat(format, info)), QString());
        EXPECT_NE(errorOf(frame, inFormat(format, info, Validation::On)), QString());
    }
}

TEST(Frames, ObeyTheLimits)
{
    PelLu300RouterInterfaceXml written = fullDocument();
    for (const FrameFormat& format : allFormats) {
        const QByteArray frame = frameOf(written, format);
        Limits limits;
        limits.inputSize = frame.size() - 1;
        {
            const LimitsInScope inScope(limits);
            EXPECT_TRUE(errorOf(frame, inFormat(format, &RecordInfo::Document()))
                            .startsWith(QString::number(Failure::InputTooLarge)));
        }
        limits.inputSize = frame.size();
        limits.listItems = 1;
        const LimitsInScope inScope(limits);
        EXPECT_TRUE(errorOf(frame, inFormat(format, &RecordInfo::Document()))
                        .startsWith(QString::number(Failure::TooManyItems)));
    }
}

TEST(Frames, ReportWhatIsAcceptedWithItsOffset)
{
    const QByteArray unknown = bytes("04030201 02000000 AAAA");
    const QByteArray frame = bytes("0A000000") + unknown;
    const MODELKIT::ReadingReport report;
    ReadDocument(frame, inFormat(littleWithoutId, &portInfo()));
    ASSERT_EQ(report.GetEntries().size(), 1);
    EXPECT_EQ(report.GetEntries().constFirst().place.offset, 4);

    const MODELKIT::ReadingReport withId;
    ReadDocument(bytes("B82E017F") + frame, inFormat(littleWithId));
    ASSERT_EQ(withId.GetEntries().size(), 1);
    EXPECT_EQ(withId.GetEntries().constFirst().place.offset, 8);
}

TEST(Frames, ReportNothingWhenTheirLengthsAreWrong)
{
    const MODELKIT::ReadingReport report;
    EXPECT_NE(errorOf(bytes("0B000000 04030201 02000000 AAAA BB"), inFormat(littleWithoutId, &portInfo())),
              QString());
    EXPECT_TRUE(report.GetEntries().isEmpty());
}

TEST(Frames, AreCheckedCompletely)
{
    PelLu300RouterInterfaceXml written;
    written.SetValidate(false);
    Fragment fragment;
    fragment.SetValidate(false);
    MastershipState& state = fragment.GetMastershipState();
    state.SetState(state.GetInvalidState());
    written.GetPelLu300RouterMessage().AppendFragment(fragment);
    written.GetPelLu300RouterMessage().AppendFragment(fragment);
    QVector<int> counts;
    for (const FrameFormat& format : allFormats) {
        const CheckedDocument checked =
            CheckDocument(frameOf(written, format), {std::nullopt, 0, format, &RecordInfo::Document()});
        counts += static_cast<int>(checked.errors.size());
        for (const DocumentError& one : checked.errors)
            EXPECT_FALSE(one.GetText().isEmpty());
    }
    EXPECT_GE(counts.constFirst(), 2);
    EXPECT_EQ(counts, QVector<int>(4, counts.constFirst()));
}

TEST(Frames, MayBeCompressedBehindAClassId)
{
    PelLu300RouterInterfaceXml written = fullDocument();
    QByteArray frame;
    QDataStream stream(&frame, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    written.GetCompressedBinaryRepresentation(stream, 9);
    ASSERT_EQ(frame.left(4), QByteArray("1ZKM"));
    const Document read = ReadDocument(frame, inFormat(littleWithId, nullptr, Validation::On));
    EXPECT_EQ(read.form, Form::Compressed);
    EXPECT_TRUE(dynamic_cast<PelLu300RouterInterfaceXml&>(*read.record) == written);
    EXPECT_EQ(errorOf(frame, inFormat(littleWithId, &portInfo())),
              error(Failure::WrongClass, 0,
                    "The binary form holds PelLu300RouterInterfaceXml, expected is OstraInterfacePort."));

    QVector<Part> parts;
    QByteArray plain;
    DissectFrame(frame, littleWithId, nullptr, plain, [&](const Part& part) { parts += part; });
    QByteArray joined;
    for (const Part& part : parts)
        joined += part.bytes;
    EXPECT_EQ(joined, frame);
    EXPECT_EQ(parts.at(0).kind, Part::Marker);
    EXPECT_EQ(plain, frameOf(written, bigWithId));
}

// --- other documents ------------------------------------------------------------------------

TEST(Documents, OfAnotherRecordAreRefusedInEveryForm)
{
    OstraInterfacePort record = port(1);
    for (const Form form : allForms) {
        const QByteArray written = WriteDocument(record, form);
        EXPECT_EQ(errorOf(written, {form, Validation::On, std::nullopt, &portInfo()}), QString());
        const QString refusal = errorOf(written, {form, Validation::On, std::nullopt, &serverInfo()});
        EXPECT_TRUE(refusal.contains(QStringLiteral("OstraInterfacePort"))) << refusal.toStdString();
        EXPECT_TRUE(refusal.contains(QStringLiteral("PelVtConnectServer"))) << refusal.toStdString();
        const Failure::Kind kind =
            form == Form::Binary || form == Form::Compressed ? Failure::WrongClass : Failure::WrongRoot;
        EXPECT_TRUE(refusal.startsWith(QString::number(kind))) << refusal.toStdString();
    }
}

// --- recordings -----------------------------------------------------------------------------

TEST(FrameRecording, GivesEveryFrame)
{
    for (const FrameFormat& format : allFormats) {
        const QByteArray first = frameOf(port(1), format);
        const QByteArray second = frameOf(port(2), format);
        const qint64 size = first.size();
        for (const int piece : {1, 3, 7, 1000}) {
            const Outcome outcome = readInPieces(first + second, piece, recordingOf(format));
            EXPECT_EQ(outcome.lines,
                      QStringList({QStringLiteral("binary 0:0"), QStringLiteral("binary %1:0").arg(size)}));
            ASSERT_EQ(outcome.messages.size(), 2);
            EXPECT_EQ(outcome.messages.at(0).bytes, first);
            EXPECT_EQ(outcome.messages.at(1).bytes, second);
            EXPECT_EQ(outcome.messages.at(1).number, 2);
            ASSERT_TRUE(outcome.messages.at(1).frame);
            EXPECT_EQ(outcome.messages.at(1).frame->byteOrder, format.byteOrder);
        }
    }
}

TEST(FrameRecording, OfNothingHasNoFrames)
{
    for (const FrameFormat& format : allFormats)
        EXPECT_EQ(readAll(QByteArray(), recordingOf(format)).lines, QStringList());
}

TEST(FrameRecording, TakesCompressedFormsAmongFramesWithId)
{
    QByteArray content;
    QDataStream stream(&content, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    numbered(1).GetBinaryRepresentation(stream);
    numbered(2).GetCompressedBinaryRepresentation(stream, 9);
    numbered(3).GetBinaryRepresentation(stream);
    const Outcome outcome = readAll(content, recordingOf(littleWithId));
    EXPECT_TRUE(outcome.errors.isEmpty());
    ASSERT_EQ(outcome.messages.size(), 3);
    EXPECT_EQ(outcome.messages.at(1).form, Form::Compressed);
    for (const RecordedMessage& message : outcome.messages)
        EXPECT_NO_THROW(ReadDocument(message.bytes, inFormat(*message.frame)));
}

TEST(FrameRecording, GoesOnAtTheNextClassId)
{
    const QByteArray frame = frameOf(port(1), littleWithId);
    const QByteArray negative = bytes("B82E017F FFFFFFFF");
    for (const int piece : {1, 5, 1000}) {
        EXPECT_EQ(readInPieces(frame + "junk" + frame, piece, recordingOf(littleWithId)).lines,
                  QStringList({"binary 0:0",
                               "! 24:0 The frame has the class id 6B6E756A, which no record has; 4 bytes are "
                               "passed over.",
                               "binary 28:0"}));
        EXPECT_EQ(
            readInPieces(negative + frame, piece, recordingOf(littleWithId)).lines,
            QStringList({"! 0:0 The frame has a negative length; 8 bytes are passed over.", "binary 8:0"}));
    }
}

TEST(FrameRecording, WithoutIdsEndsAtADamagedFrame)
{
    const QByteArray frame = frameOf(port(1), bigWithoutId);
    for (const int piece : {1, 5, 1000})
        EXPECT_EQ(
            readInPieces(frame + bytes("80000000") + frame, piece, recordingOf(bigWithoutId)).lines,
            QStringList({"binary 0:0", "! 20:0 The frame has a negative length; 24 bytes are passed over."}));
}

TEST(FrameRecording, TellsWhatIsMissingAtTheEnd)
{
    const QByteArray frame = frameOf(port(1), littleWithoutId);
    EXPECT_EQ(readAll(frame + frame.left(19), recordingOf(littleWithoutId)).lines,
              QStringList({"binary 0:0",
                           "! 20:0 The frame is cut off; 1 byte is missing; 19 bytes are passed over."}));
    EXPECT_EQ(readAll(frame + frame.left(3), recordingOf(littleWithoutId)).lines,
              QStringList({"binary 0:0",
                           "! 20:0 The frame is cut off; its length is missing; 3 bytes are passed over."}));
}

TEST(FrameRecording, ReadsTheFramesInsideOneThatIsCutOff)
{
    const QByteArray frame = frameOf(port(1), littleWithId);
    EXPECT_EQ(readAll(bytes("B82E017F 00010000") + frame + frame, recordingOf(littleWithId)).lines,
              QStringList({"! 0:0 The frame is cut off; 208 bytes are missing; 8 bytes are passed over.",
                           "binary 8:0", "binary 32:0"}));
}

TEST(FrameRecording, ReadsTheFramesThatOneTookForItsContent)
{
    for (const FrameFormat& format : {littleWithId, bigWithId}) {
        const QByteArray frame = frameOf(port(1), format);
        for (const int piece : {1, 5, 1000})
            EXPECT_EQ(readableIn(frame + frame.left(12) + frame + frame, piece, format),
                      QStringList({"0", "! 24", "36", "60"}))
                << piece;
    }
}

TEST(FrameRecording, TakesNoContentForAFrameWhenTheLengthIsRight)
{
    // The value of the number looks like the beginning of a frame.
    const QByteArray bad = bytes("B82E017F 18000000 1705981F 10000000 B82E017F 00000000 00000000 00000000");
    const QByteArray frame = frameOf(port(1), littleWithId);
    EXPECT_EQ(readableIn(bad + frame, 1000, littleWithId), QStringList({"! 0", "32"}));
    EXPECT_EQ(readableIn(bad, 1000, littleWithId), QStringList({"! 0"}));
    EXPECT_EQ(readableIn(bad + bad, 1000, littleWithId), QStringList({"! 0", "! 32"}));
}

TEST(FrameRecording, RejectsFramesInsideEachOtherInLittleTime)
{
    // Each takes all that follows but the last byte.
    constexpr int count = 2000;
    constexpr int header = 8;
    QByteArray content;
    QDataStream stream(&content, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    for (int i = 1; i <= count; ++i)
        stream << quint32(0x7F012EB8) << qint32(header * (count - i));
    content += 'x';
    QBuffer buffer(&content);
    RecordingReader reader(buffer, recordingOf(littleWithId));
    RecordedMessage message;
    for (bool isThere = true; isThere;) {
        try {
            isThere = reader.ReadNext(message);
            if (isThere)
                reader.Reject(message);
        } catch (const DocumentError&) {
        }
    }
    EXPECT_LT(reader.GetExaminedBytes(), 10 * content.size());
}

TEST(FrameRecording, GoesOnBehindARejectedFrameWhenMoreArrives)
{
    const QByteArray frame = frameOf(port(1), littleWithId);
    QByteArray content = frame;
    QBuffer buffer(&content);
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));
    RecordingReader reader(buffer, recordingOf(littleWithId));
    RecordedMessage message;
    ASSERT_TRUE(reader.ReadNext(message));
    reader.Reject(message);
    EXPECT_FALSE(reader.ReadNext(message));
    content += frame;
    ASSERT_TRUE(reader.ReadNext(message));
    EXPECT_EQ(message.offset, 24);
}

TEST(FrameRecording, RefusesFramesAboveTheLimit)
{
    Limits limits;
    limits.inputSize = 24;
    const LimitsInScope inScope(limits);
    const QByteArray frame = frameOf(port(1), littleWithId);
    const Outcome outcome =
        readAll(bytes("B82E017F 11000000") + QByteArray(17, 'x') + frame, recordingOf(littleWithId));
    EXPECT_EQ(outcome.lines,
              QStringList({"! 0:0 The frame of 25 bytes is larger than the limit of 24 bytes; 25 bytes are "
                           "passed over.",
                           "binary 25:0"}));
    EXPECT_EQ(outcome.errors.constFirst().GetKind(), Failure::InputTooLarge);
}

TEST(FrameRecording, PlacesErrorsInTheRecording)
{
    QByteArray content = frameOf(port(1), littleWithoutId) + bytes("0C000000 1705981F 04000000 88130000");
    QBuffer buffer(&content);
    QVector<qint64> offsets;
    const qint64 count = ForEachMessage(
        buffer, recordingOf(littleWithoutId),
        [](const RecordedMessage& message) {
            ReadDocument(message.bytes, inFormat(*message.frame, &portInfo()));
        },
        [&](const DocumentError& one) { offsets += one.GetPlace().offset; });
    EXPECT_EQ(count, 1);
    EXPECT_EQ(offsets, QVector<qint64>({36}));
}

TEST(FrameRecording, GoesOnWhenAFrameArrivesLater)
{
    const QByteArray frame = frameOf(port(1), littleWithoutId);
    QByteArray content = frame.left(10);
    QBuffer buffer(&content);
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));
    RecordingReader reader(buffer, recordingOf(littleWithoutId));
    RecordedMessage message;
    EXPECT_THROW(reader.ReadNext(message), DocumentError);
    EXPECT_FALSE(reader.ReadNext(message));
    content += frame;
    ASSERT_TRUE(reader.ReadNext(message));
    EXPECT_EQ(message.offset, 10);
    EXPECT_EQ(message.bytes, frame);
}

// --- parts ----------------------------------------------------------------------------------

TEST(FrameParts, AreAllBytes)
{
    const PelLu300RouterInterfaceXml written = fullDocument();
    for (const FrameFormat& format : allFormats) {
        const QByteArray frame = frameOf(written, format);
        for (int size = 0; size <= frame.size(); ++size) {
            const QByteArray beginning = frame.left(size);
            QByteArray joined;
            for (const Part& part : partsOf(beginning, format, &RecordInfo::Document()))
                joined += part.bytes;
            EXPECT_EQ(joined, beginning);
        }
    }
}

TEST(FrameParts, HaveTheSameValuesInEveryLayout)
{
    const PelLu300RouterInterfaceXml written = fullDocument();
    const auto valuesIn = [&](const FrameFormat& format) {
        QStringList values;
        const QByteArray frame = frameOf(written, format);
        for (const Part& part : partsOf(frame, format, &RecordInfo::Document())) {
            EXPECT_EQ(part.wrong, QString());
            if (part.kind == Part::Value)
                values += part.path + QLatin1Char('=') + part.meaning;
        }
        return values;
    };
    const QStringList expected = valuesIn(bigWithId);
    EXPECT_EQ(expected.size(), 4);
    for (const FrameFormat& format : allFormats)
        EXPECT_EQ(valuesIn(format), expected);
}

TEST(FrameParts, TellThatTheClassIsAnother)
{
    const QByteArray frame = frameOf(port(1), littleWithId);
    const QVector<Part> parts = partsOf(frame, littleWithId, &serverInfo());
    EXPECT_EQ(parts.constFirst().wrong, QStringLiteral("Expected is PelVtConnectServer."));

    QVector<Part> inside;
    const QByteArray form = portForm();
    DissectPlain(
        form, [&](const Part& part) { inside += part; }, &serverInfo());
    EXPECT_EQ(inside.constFirst().wrong, QStringLiteral("Expected is PelVtConnectServer."));
}
