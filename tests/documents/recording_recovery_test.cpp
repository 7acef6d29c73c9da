// SPDX-License-Identifier: MIT
// Messages that were cut off while they were written: those behind them are found.
#include "RecordingSupport.h"

#include "modelkit/ReadingReport.h"

#include <QtCore/QTemporaryDir>

using namespace recording_support;

namespace {

using Numbers = QVector<unsigned int>;

// Without an XML declaration.
QByteArray bareXml(unsigned int number)
{
    const QByteArray xml = inForm(Form::Xml, number);
    return xml.mid(xml.indexOf("<PelLu"));
}

QByteArray frame(const char* id, const QByteArray& payload)
{
    QByteArray length = QByteArray::number(payload.size(), 16).rightJustified(8, '0');
    return bytes(id) + QByteArray::fromHex(length) + payload;
}

// A frame of no known members with this inside, which its reader refuses.
QByteArray badFrame(const QByteArray& payload)
{
    return frame("8553499A", bytes("00000001 7FFFFFFF") + payload);
}

// Reads every message; those that cannot be read are rejected.
Outcome readStrictly(const QByteArray& content, int piece = 4096)
{
    Pieces device(content, piece);
    Outcome outcome;
    const qint64 count = ForEachMessage(
        device, {},
        [&](const RecordedMessage& message) {
            ReadDocument(message.bytes, {message.form});
            outcome.messages.append(message);
        },
        [&](const DocumentError& error) {
            outcome.errors.append(error);
            outcome.lines += error.GetText();
        });
    EXPECT_EQ(count, outcome.messages.size());
    return outcome;
}

std::string told(const Outcome& outcome) { return outcome.lines.join(u'\n').toStdString(); }

} // namespace

// --- XML ------------------------------------------------------------------------------------

TEST(RecordingRecovery, SavesTheDocumentBehindOneThatWasCutOffAnywhere)
{
    const QByteArray whole = bareXml(1).trimmed();
    for (const QByteArray& next : {bareXml(2), inForm(Form::Xml, 2)})
        for (const QByteArray between : {"", "\n"})
            for (int size = 2; size < whole.size(); ++size) {
                const QByteArray content = whole.left(size) + between + next + bareXml(3);
                const Outcome outcome = readInPieces(content, 1 + size % 50);
                EXPECT_EQ(numbersIn(outcome).mid(outcome.messages.size() - 2), Numbers({2, 3}))
                    << content.left(size).constData();
                EXPECT_EQ(outcome.messages.size() + outcome.errors.size(), 3) << told(outcome);
            }
}

TEST(RecordingRecovery, SavesTheDocumentBehindAMissingEndTag)
{
    for (const char* const tag : {"</Type>", "</MessageID>", "</PelLu300RouterMessage>",
                                  "</PelLu300RouterInterfaceXml>", "<PelLu300RouterMessage>"}) {
        const QByteArray broken = bareXml(1).replace(tag, "");
        for (const Form form : allForms) {
            const Outcome outcome = readAll(broken + inForm(form, 2) + bareXml(3));
            if (form == Form::Json || form == Form::JsonLines) {
                // JSON may be the text of an element.
                EXPECT_EQ(numbersIn(outcome).last(), 3U);
            } else {
                EXPECT_EQ(numbersIn(outcome).mid(outcome.messages.size() - 2), Numbers({2, 3}))
                    << tag << told(outcome);
            }
        }
        // Nothing follows. Without a start tag, what is behind the last end tag that fits is told as well.
        const Outcome last = readAll(broken);
        EXPECT_EQ(last.messages.size() + last.errors.size(), tag[1] == '/' ? 1 : 2) << tag;
    }
}

TEST(RecordingRecovery, EndsADocumentAtTheEndTagOfItsRoot)
{
    const QByteArray broken = "<DF_Params><Frequency>1</DF_Params>";
    for (const QByteArray next :
         {"{\"a\":1}", "<b/>", "\n\n  <!-- x --> {}", "MKZ1\0\0\0\0", "<?xml version='1.0'?><a/>"}) {
        const Outcome outcome = readAll(broken + next);
        ASSERT_GE(outcome.messages.size(), 1);
        EXPECT_EQ(outcome.messages.first().bytes, broken) << next.constData();
        EXPECT_EQ(readInPieces(broken + next, 1).lines, outcome.lines);
    }
    const Outcome alone = readAll(broken + "\n");
    ASSERT_EQ(alone.messages.size(), 1);
    EXPECT_EQ(alone.messages.first().bytes, broken);
    // Tags in the wrong order still belong to it.
    const QByteArray crossed = "<DF_Params><Frequency>1</DF_Params> </Frequency>";
    EXPECT_EQ(readAll(crossed + "{}").messages.first().bytes, crossed);
}

TEST(RecordingRecovery, DoesNotCutADocumentThatCanBeRead)
{
    const QByteArray inner = bareXml(9);
    for (const QByteArray& part :
         {"<Unknown>" + inner + "</Unknown>", "<!-- " + inner + " -->", "<![CDATA[" + inner + "]]>",
          "<Unknown><a><b/>" + inner + inner + "</a></Unknown>",
          QByteArray("<x:PelLu300RouterInterfaceXml/>"), QByteArray("<PelLu300RouterInterfaceXmlElse/>"),
          QByteArray("<DF_Params/><PelVtConnectServer/>"),
          QByteArray("<Unknown a='<'></Unknown>").replace('<', "&lt;")}) {
        QByteArray document = bareXml(1).trimmed();
        document.replace("</Type>", "</Type>" + part);
        const Outcome outcome = readInPieces(document + bareXml(2), 5);
        ASSERT_EQ(outcome.messages.size(), 2) << part.constData();
        EXPECT_EQ(outcome.messages.first().bytes, document);
        EXPECT_TRUE(outcome.errors.isEmpty());
        EXPECT_NO_THROW(ReadDocument(document)) << part.constData();
    }
    // A document of another dialect may hold documents.
    const QByteArray log = "<log>" + inner + inner + "</log>";
    const Outcome outcome = readAll(log + inner);
    ASSERT_EQ(outcome.messages.size(), 2);
    EXPECT_EQ(outcome.messages.first().bytes, log);
}

TEST(RecordingRecovery, SavesJsonBehindADocumentThatWasCutOffAnywhere)
{
    const QByteArray whole = bareXml(1).trimmed();
    const QByteArray broken = inForm(Form::JsonLines, 7).chopped(5);
    for (const Form form : {Form::Json, Form::JsonLines})
        for (const QByteArray& behind :
             QVector<QByteArray>{QByteArray(), inForm(Form::Xml, 4), bareXml(4), inForm(Form::Binary, 4),
                                 broken, broken + "\n" + bareXml(4)})
            for (int size = 2; size < whole.size(); ++size) {
                const QByteArray content =
                    inForm(form, 1) + whole.left(size) + "\n" + inForm(form, 2) + inForm(form, 3) + behind;
                const Outcome outcome = readInPieces(content, 1 + size % 50);
                const Numbers numbers = numbersIn(outcome);
                ASSERT_GE(numbers.size(), 4) << content.constData() << told(outcome);
                EXPECT_EQ(numbers.mid(0, 4), Numbers({1, 0, 2, 3})) << content.constData() << told(outcome);
                EXPECT_EQ(outcome.messages.at(1).bytes, whole.left(size) + "\n");
                EXPECT_EQ(numbers.contains(4), !behind.isEmpty() && behind != broken)
                    << content.constData() << told(outcome);
            }
}

TEST(RecordingRecovery, TakesJsonForTextWhereItMayBeText)
{
    const QByteArray json = inForm(Form::JsonLines, 9);
    // In a document that is whole.
    for (const QByteArray& text : QVector<QByteArray>{"\n" + json, "<!--\n" + json + "-->",
                                                      "<![CDATA[\n" + json + "]]>", "<?x \n" + json + "?>"}) {
        const QByteArray document =
            "<PelVtConnectServer><Address>" + text + "</Address></PelVtConnectServer>";
        const Outcome outcome = readInPieces(document + "\n" + json, 7);
        ASSERT_EQ(outcome.messages.size(), 2) << told(outcome);
        EXPECT_EQ(outcome.messages.first().bytes, document);
        EXPECT_EQ(numbersIn(outcome).last(), 9U);
    }
    // In one that is cut off behind it, or in something that is no element.
    const QByteArray begin = "<PelVtConnectServer><Address>";
    for (const QByteArray& text : QVector<QByteArray>{
             "\n" + json + "</Address>", "\n" + json + "text", "a " + json, "\n {\"a\":1}\n",
             QByteArray("\n{\"DF_Params\":{\"Frequency\":\"x\"}}\n"), "\n[" + json + "]",
             "<!--\n" + json + "-->", "<![CDATA[\n" + json + "]]>", "\n" + json.trimmed().chopped(1)}) {
        const QByteArray content = begin + text;
        const Outcome outcome = readInPieces(content + inForm(Form::Xml, 2), 7);
        ASSERT_EQ(outcome.messages.size(), 2) << content.constData() << told(outcome);
        EXPECT_EQ(outcome.messages.first().bytes, content);
        EXPECT_EQ(numbersIn(outcome).last(), 2U);
    }
    for (const QByteArray& text :
         QVector<QByteArray>{"<!--\n" + json, "<![CDATA[\n" + json, "<?x\n" + json}) {
        const Outcome outcome = readInPieces(begin + text, 7);
        ASSERT_EQ(outcome.lines, QStringList("xml 0:1"));
        EXPECT_EQ(outcome.messages.first().bytes, begin + text);
    }
    // When no JSON is expected.
    RecordingOptions options;
    options.form = Form::Xml;
    const Outcome outcome = readAll(begin + "\n" + json + bareXml(2), options);
    EXPECT_EQ(outcome.messages.size(), 2) << told(outcome);
}

TEST(RecordingRecovery, LooksForJsonWithoutNotices)
{
    const MODELKIT::ReadingReport report;
    const QByteArray json = "{\"DF_Params\":{\"Frequency\":9007199254740993}}\n";
    EXPECT_NO_THROW(ReadDocument(json));
    EXPECT_EQ(report.GetEntries().size(), 1);
    EXPECT_EQ(readAll("<DF_Params>\n" + json).messages.size(), 2);
    EXPECT_EQ(report.GetEntries().size(), 1);
}

TEST(RecordingRecovery, OfJsonBehindACutOffDocumentCostsLinearWork)
{
    const QByteArray bad = "{\"DF_Params\":{\"Frequency\":\"x\"}}\n";
    for (const QByteArray& line :
         QVector<QByteArray>{bad, bad + "x\n", QByteArray("{\"DF_Params\":\n"),
                             QByteArray("{\"DF_Params\":x\n"), QByteArray("{\"a\":\"\n")}) {
        QByteArray content = "<DF_Params>\n" + line.repeated(3000);
        QBuffer buffer(&content);
        RecordingReader reader(buffer);
        RecordedMessage message;
        EXPECT_TRUE(reader.ReadNext(message)) << line.constData();
        EXPECT_EQ(message.bytes, content);
        EXPECT_LE(reader.GetExaminedBytes(), 6 * content.size()) << line.constData();
    }
}

TEST(RecordingRecovery, SavesWhatFollowsADocumentAboveTheLimit)
{
    Limits limits;
    limits.inputSize = 1000;
    const LimitsInScope scope(limits);
    for (const int size : {1, 2, 4}) {
        const QByteArray broken = wide("<DF_Params><Frequency>" + QByteArray(5000, 'x'), size, false);
        const Outcome outcome = readInPieces(broken + wide("<DF_Params/>", size, false) + bareXml(2), 3);
        EXPECT_EQ(outcome.errors.size(), 1) << told(outcome);
        EXPECT_EQ(outcome.messages.size(), 2) << told(outcome);
        EXPECT_EQ(numbersIn(outcome).last(), 2U);
    }
}

TEST(RecordingRecovery, SavesTheMessageBehindACutOffWideDocument)
{
    const QByteArray text = inForm(Form::Xml, 1).trimmed();
    for (const int size : {2, 4})
        for (const bool isBigEndian : {true, false}) {
            const QByteArray whole = wide(text, size, isBigEndian);
            const QVector<QByteArray> followers = {inForm(Form::Xml, 2),
                                                   bareXml(2),
                                                   inForm(Form::Binary, 2),
                                                   inForm(Form::Compressed, 2),
                                                   "\xEF\xBB\xBF" + inForm(Form::Xml, 2),
                                                   wide(inForm(Form::Xml, 2), size, isBigEndian)};
            for (const QByteArray& follower : followers)
                for (int end = 8 * size; end < whole.size(); end += 7) {
                    const QByteArray content = whole.left(end) + follower + inForm(Form::Binary, 3);
                    const Outcome outcome = readAll(content);
                    EXPECT_EQ(numbersIn(outcome), Numbers({0, 2, 3}))
                        << size << isBigEndian << ' ' << end << follower.left(8).toHex().constData()
                        << told(outcome);
                    EXPECT_EQ(readInPieces(content, 1 + end % 9).lines, outcome.lines);
                }
        }
}

// --- JSON -----------------------------------------------------------------------------------

TEST(RecordingRecovery, SavesXmlBehindJsonThatWasCutOffInAString)
{
    const QByteArray onOneLine = "{\"a\":\"b";
    for (const QByteArray& json : {onOneLine, QByteArray("{\"a"), QByteArray("{\"a\":1,\n\"b\": \"c\\")})
        for (QByteArray xml : {inForm(Form::Xml, 2), bareXml(2), inForm(Form::Xml, 2).replace('"', '\'')}) {
            const QByteArray content = inForm(Form::JsonLines, 1) + json + xml + inForm(Form::JsonLines, 3);
            const Outcome outcome = readAll(content);
            const bool isGiven = json == onOneLine;
            EXPECT_EQ(numbersIn(outcome), isGiven ? Numbers({1, 0, 2, 3}) : Numbers({1, 2, 3}))
                << content.constData() << told(outcome);
            EXPECT_EQ(outcome.errors.size(), isGiven ? 0 : 1);
            EXPECT_EQ(readInPieces(content, 3).lines, outcome.lines);
        }
}

TEST(RecordingRecovery, RefusesControlCharactersInJson)
{
    for (int character = 0; character < ' '; ++character) {
        const QByteArray json =
            "{\"PelVtConnectServer\":{\"Address\":\"a" + QByteArray(1, static_cast<char>(character)) + "\"}}";
        const Outcome outcome = readAll(json);
        ASSERT_EQ(outcome.lines, QStringList("json 0:1")) << character;
        EXPECT_EQ(outcome.messages.first().bytes, json) << character;
        EXPECT_THROW(ReadDocument(json), DocumentError) << character;
    }
}

// --- binary forms ---------------------------------------------------------------------------

TEST(RecordingRecovery, SavesTheMessageThatACutOffFrameWouldTake)
{
    PelLu300RouterInterfaceXml large = numbered(1);
    // Whatever a text takes would belong to it.
    for (unsigned int i = 0; i < 30; ++i) {
        Fragment fragment;
        fragment.GetRouterVtServerPort().SetPort(i * i);
        large.GetPelLu300RouterMessage().AppendFragment(fragment);
    }
    for (const Form form : {Form::Binary, Form::Compressed})
        for (const Form next : allForms) {
            const QByteArray whole = WriteMessage(large, form);
            const QByteArray follower = inForm(next, 2);
            const auto step = std::max<int>(1, static_cast<int>(whole.size()) / 25);
            for (int size = 8; size < whole.size(); size += step) {
                QByteArray content = inForm(Form::Binary, 7) + whole.left(size);
                // What follows is large enough to complete it.
                int count = 0;
                for (; count * follower.size() < whole.size(); ++count)
                    content += follower;
                content += inForm(Form::Binary, 3);
                const Outcome outcome = readStrictly(content);
                const auto taken = (whole.size() - size) % follower.size();
                // Only if whole messages just complete the form, it looks like one whose length is right.
                if (taken == 0 || taken == follower.trimmed().size())
                    continue;
                EXPECT_EQ(outcome.messages.size(), count + 2)
                    << NameOf(form).toStdString() << " cut off at " << size << " in front of "
                    << NameOf(next).toStdString() << '\n'
                    << told(outcome);
                EXPECT_EQ(outcome.errors.size(), 1) << told(outcome);
                EXPECT_EQ(readStrictly(content, 1 + size % 9).lines, outcome.lines);
            }
        }
}

TEST(RecordingRecovery, PassesOverABadFrameWhoseLengthIsRight)
{
    const QVector<QByteArray> payloads = {QByteArray(),
                                          inForm(Form::Binary, 9),
                                          inForm(Form::Xml, 9),
                                          "x" + inForm(Form::Xml, 9) + "x",
                                          "\n" + inForm(Form::JsonLines, 9),
                                          "MKZ1",
                                          bareXml(9).left(60)};
    for (const QByteArray& payload : payloads)
        for (const Form next : allForms)
            for (const QByteArray between : {"", "\n", "<!-- -->"}) {
                // A tag that is open inside could go on in a text, so it only stands in front of other forms.
                const bool isOpen = payload == payloads.last();
                const bool isText = !IsBinary(next);
                if (isOpen && (isText || between.startsWith('<')))
                    continue;
                const QByteArray content =
                    inForm(Form::Binary, 1) + badFrame(payload) + between + inForm(next, 2) + inForm(next, 3);
                for (const int piece : {1, 7, 4096}) {
                    const Outcome outcome = readStrictly(content, piece);
                    EXPECT_EQ(numbersIn(outcome), Numbers({1, 2, 3}))
                        << payload.constData() << NameOf(next).toStdString() << told(outcome);
                    EXPECT_EQ(outcome.errors.size(), 1) << told(outcome);
                }
            }
    for (const QByteArray& payload : payloads) {
        const Outcome last = readStrictly(badFrame(payload) + "\n");
        EXPECT_EQ(last.messages.size(), 0);
        EXPECT_EQ(last.errors.size(), 1);
    }
}

TEST(RecordingRecovery, IsForTheMessageThatWasGivenLast)
{
    QByteArray content = badFrame(inForm(Form::Xml, 9)) + "junk" + inForm(Form::Xml, 1);
    QBuffer buffer(&content);
    RecordingReader reader(buffer);
    RecordedMessage bad;
    ASSERT_TRUE(reader.ReadNext(bad));
    reader.Reject(RecordedMessage());
    RecordedMessage message;
    EXPECT_THROW(reader.ReadNext(message), DocumentError);
    // Now it is too late.
    reader.Reject(bad);
    ASSERT_TRUE(reader.ReadNext(message));
    EXPECT_EQ(numberIn(message), 1U);
    reader.Reject(message);
    EXPECT_FALSE(reader.ReadNext(message));
}

TEST(RecordingRecovery, GoesOnWhenTheRecordingGrowsBehindARejectedFrame)
{
    const QTemporaryDir folder;
    QFile writing(folder.filePath(QStringLiteral("recording")));
    ASSERT_TRUE(writing.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    const QByteArray cutOff = inForm(Form::Binary, 1).chopped(5);
    const QByteArray next = inForm(Form::Binary, 2);
    writing.write(cutOff + next.left(5));
    QFile reading(writing.fileName());
    RecordingReader reader(reading);
    RecordedMessage message;
    ASSERT_TRUE(reader.ReadNext(message));
    reader.Reject(message);
    EXPECT_FALSE(reader.ReadNext(message));
    writing.write(next.mid(5));
    ASSERT_TRUE(reader.ReadNext(message));
    EXPECT_EQ(numberIn(message), 2U);
    EXPECT_EQ(message.offset, cutOff.size());
    EXPECT_FALSE(reader.ReadNext(message));
}

TEST(RecordingRecovery, OfFramesInsideEachOtherCostsLinearWork)
{
    const auto workFor = [](int count) {
        QByteArray content;
        for (int i = 0; i < count; ++i)
            content += bytes("8553499A")
                       + QByteArray::fromHex(QByteArray::number(16 * count, 16).rightJustified(8, '0'));
        content += QByteArray(32 * count, 'x');
        QBuffer buffer(&content);
        RecordingReader reader(buffer);
        RecordedMessage message;
        qint64 messages = 0;
        while (true) {
            try {
                if (!reader.ReadNext(message))
                    break;
                ++messages;
                reader.Reject(message);
            } catch (const DocumentError&) {
                // The next call goes on behind it.
            }
        }
        EXPECT_GT(messages, 2);
        return reader.GetExaminedBytes();
    };
    const qint64 work = workFor(500);
    EXPECT_GT(work, 500);
    EXPECT_LT(workFor(2000), 5 * work);
}

// --- places ---------------------------------------------------------------------------------

TEST(RecordingRecovery, TellsPlacesInTheRecording)
{
    QByteArray content = "{} \xC3\xA4\xF0\x9F\x98\x80<DF_Params/><DF_Params "
                         "a=>\n</DF_Params>{\"DF_Params\":{\"Frequency\":\n\"x\"}}";
    content.replace("\xC3\xA4\xF0\x9F\x98\x80", "<!--\xC3\xA4\xF0\x9F\x98\x80-->");
    QBuffer buffer(&content);
    QStringList places;
    const qint64 count = ForEachMessage(
        buffer, {},
        [&](const RecordedMessage& message) {
            places += QStringLiteral("%1:%2").arg(message.line).arg(message.column);
            ReadDocument(message.bytes, {message.form});
        },
        [&](const DocumentError& error) { places += QStringLiteral("! ") + error.GetPlace().ToString(); });
    EXPECT_EQ(count, 1);
    EXPECT_EQ(places, QStringList({"1:1", "! 1:1", "1:14", "1:26", "! 1:39", "2:13", "! 3:1"}));
}

TEST(RecordingRecovery, PassesOtherExceptionsOn)
{
    QByteArray content = inForm(Form::Binary, 1);
    QBuffer buffer(&content);
    EXPECT_THROW(ForEachMessage(
                     buffer, {}, [](const RecordedMessage&) { throw std::runtime_error("stop"); },
                     [](const DocumentError&) { ADD_FAILURE(); }),
                 std::runtime_error);
}

TEST(RecordingRecovery, PlacesTheReasonWhyAFormCannotBeInflated)
{
    const QByteArray good = inForm(Form::Compressed, 1);
    QByteArray bad = good;
    bad[8] = '\x7F';
    QVector<qint64> offsets;
    QByteArray content = good + bad + good;
    QBuffer buffer(&content);
    ForEachMessage(
        buffer, {}, [](const RecordedMessage& message) { ReadDocument(message.bytes, {message.form}); },
        [&](const DocumentError& error) {
            EXPECT_EQ(error.GetKind(), Failure::DamagedCompression);
            offsets += error.GetPlace().offset;
        });
    EXPECT_EQ(offsets, QVector<qint64>({good.size() + 8}));
}
