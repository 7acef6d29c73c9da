// SPDX-License-Identifier: MIT
// The messages of a connection: recognising them in every form, whatever the pieces in which they arrive, and
// what happens when they cannot be read.
#include "FailingAllocator.h"
#include "FailureKinds.h"
#include "LinkSupport.h"

#include "documents/Recording.h"

#include "modelkit/LogSinks.h"

#include <QtCore/QStringList>

#include <algorithm>
#include <random>
#include <stdexcept>

using namespace link_support;

namespace {

QByteArray utf16(const QByteArray& ascii, bool isBigEndian)
{
    QByteArray wide;
    for (const char character : ascii)
        wide += isBigEndian ? QByteArray(1, '\0') + character : QByteArray(1, character) + '\0';
    return wide;
}

QByteArray utf32(const QByteArray& ascii, bool isBigEndian)
{
    QByteArray wide;
    for (const char character : ascii)
        wide +=
            isBigEndian ? QByteArray(3, '\0') + character : QByteArray(1, character) + QByteArray(3, '\0');
    return wide;
}

QByteArray element(unsigned int number)
{
    return "<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Event</Type><MessageID>"
           + QByteArray::number(number) + "</MessageID></PelLu300RouterMessage></PelLu300RouterInterfaceXml>";
}

QByteArray withType(const QByteArray& type) { return element(1).replace("Event", type); }

QString at(const QString& what, qint64 offset) { return QStringLiteral("%1 @%2").arg(what).arg(offset); }

// What the reader gives, until it needs more: for example "7 xml @12" for a message with that number and
// offset, "refused WrongRoot @12", "broken NotWellFormed @12" or "ended".
QStringList takeAll(MessageReader& reader)
{
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
            lines += QStringLiteral("refused ") + nameOfKind(reader.GetFailure().kind) + end;
            break;
        case MessageReader::Broken:
            lines += QStringLiteral("broken ") + nameOfKind(reader.GetFailure().kind) + end;
            return lines;
        case MessageReader::Ended:
            lines += QStringLiteral("ended");
            return lines;
        }
    }
}

// The same for all of the bytes of a connection, in pieces of at most that size.
QStringList readInPieces(const QByteArray& stream, qint64 piece, const Limits& limits = {})
{
    MessageReader reader(limits);
    QStringList lines;
    for (qint64 begin = 0; begin < stream.size(); begin += piece) {
        reader.AddData(stream.constData() + begin, std::min<qint64>(piece, stream.size() - begin));
        lines += takeAll(reader);
        if (!lines.isEmpty() && lines.constLast().startsWith("broken"))
            return lines;
    }
    reader.EndData();
    return lines + takeAll(reader);
}

// In one piece, and byte by byte, which must not make a difference.
QStringList readAll(const QByteArray& stream, const Limits& limits = {})
{
    QStringList lines = readInPieces(stream, stream.size() + 1, limits);
    EXPECT_EQ(readInPieces(stream, 1, limits), lines);
    return lines;
}

Limits withInputSize(qint64 size)
{
    Limits limits;
    limits.inputSize = size;
    return limits;
}

} // namespace

TEST(MessageReader, ReadsAllFormsOnOneConnection)
{
    QByteArray stream;
    QStringList expected;
    for (unsigned int number = 1; number <= 9; ++number) {
        const Form form = wireForms[number % 3];
        expected += at(QString::number(number) + ' ' + NameOf(form), stream.size());
        stream += inForm(form, number);
        stream = stream.trimmed();
    }
    EXPECT_EQ(readAll(stream), expected + QStringList("ended"));
}

TEST(MessageReader, GivesAMessageWithItsLastByte)
{
    for (const Form form : wireForms) {
        const QByteArray bytes = inForm(form, 7).trimmed();
        MessageReader reader;
        reader.AddData(bytes.left(bytes.size() - 1));
        EXPECT_EQ(takeAll(reader), QStringList());
        reader.AddData(bytes.right(1));
        EXPECT_EQ(takeAll(reader), QStringList("7 " + NameOf(form) + " @0"));
    }
}

TEST(MessageReader, PassesOverWhatMayStandBetweenMessages)
{
    for (const QByteArray& between :
         {QByteArray("\n"), QByteArray(" \t\r\n "), QByteArray(1, '\0'), QByteArray(100, '\0'),
          QByteArray("\r\n\0\0\n\0", 6), QByteArray("<!-- <a> -->"), QByteArray("\n<?note <a>?>\n<!---->"),
          QByteArray("\xEF\xBB\xBF"), QByteArray("\xEF\xBB\xBF\n")})
        for (const Form first : wireForms)
            for (const Form second : wireForms) {
                const QByteArray begin = between + inForm(first, 1) + between;
                const QStringList lines = readAll(begin + inForm(second, 2) + between);
                ASSERT_EQ(lines.size(), 3) << between.toHex().constData();
                EXPECT_TRUE(lines.at(0).startsWith("1 " + NameOf(first)));
                EXPECT_TRUE(lines.at(1).startsWith("2 " + NameOf(second)));
                EXPECT_EQ(lines.at(2), "ended");
            }
}

TEST(MessageReader, ReadsXmlInWideEncodings)
{
    for (const bool isBigEndian : {false, true})
        for (const auto& encode : {utf16, utf32}) {
            const QByteArray wide = encode(element(1), isBigEndian);
            const QByteArray second = encode(element(2), isBigEndian);
            // Blanks and zeros have the same encoding.
            for (const QByteArray& between : {QByteArray(), QByteArray(" \r\n"), QByteArray(1, '\0')}) {
                const QByteArray begin = wide + encode(between, isBigEndian);
                const QByteArray all = begin + second + encode("\n", isBigEndian);
                EXPECT_EQ(readAll(all + binary(3)), QStringList({"1 xml @0", at("2 xml", begin.size()),
                                                                 at("3 binary", all.size()), "ended"}));
            }
            if (isBigEndian) {
                EXPECT_EQ(readAll(QByteArray(1, '\0') + wide), QStringList({"1 xml @1", "ended"}));
            }
        }
    const QByteArray marked = "\xFF\xFE" + utf16(element(1), false) + "\xFE\xFF" + utf16(element(2), true);
    EXPECT_EQ(readAll(marked), QStringList({"1 xml @0", at("2 xml", marked.size() / 2), "ended"}));
}

TEST(MessageReader, ReadsXmlWithMarkupThatLooksLikeItsEnd)
{
    const QByteArray end = "</PelLu300RouterInterfaceXml>";
    QByteArray document = element(1);
    document.replace("<Type>", "<!--" + end + "--><?x " + end + "?><x a='>" + QByteArray("&lt;/")
                                   + "'/><![CDATA[" + end + "]]><Type>");
    EXPECT_EQ(readAll(document + element(2)),
              QStringList({"1 xml @0", at("2 xml", document.size()), "ended"}));
}

TEST(MessageReader, TellsFormOffsetAndBytes)
{
    MessageReader reader;
    PelLu300RouterInterfaceXml document;
    const QByteArray first = binary(1);
    const QByteArray second = element(2);
    reader.AddData(first + "\n" + second + "\n");
    EXPECT_TRUE(reader.GetBytes().isEmpty());

    ASSERT_EQ(reader.Next(document), MessageReader::Ready);
    EXPECT_EQ(document, numbered(1));
    EXPECT_EQ(reader.GetForm(), Form::Binary);
    EXPECT_EQ(reader.GetOffset(), 0);
    EXPECT_EQ(reader.GetBytes(), first);

    ASSERT_EQ(reader.Next(document), MessageReader::Ready);
    EXPECT_EQ(document, numbered(2, PelLu300RouterMessage::Event));
    EXPECT_EQ(reader.GetForm(), Form::Xml);
    EXPECT_EQ(reader.GetOffset(), first.size() + 1);
    EXPECT_EQ(reader.GetBytes(), second);

    ASSERT_EQ(reader.Next(document), MessageReader::NeedMore);
    EXPECT_EQ(document, numbered(2, PelLu300RouterMessage::Event)) << "is not touched";
    EXPECT_TRUE(reader.GetBytes().isEmpty());
    reader.EndData();
    EXPECT_EQ(reader.Next(document), MessageReader::Ended);
    EXPECT_EQ(reader.Next(document), MessageReader::Ended);
    reader.AddData(first);
    EXPECT_EQ(reader.Next(document), MessageReader::Ended) << "the data had ended";
}

TEST(MessageReader, ReadsRecordsOfAnyClass)
{
    MessageReader reader;
    OstraInterfacePort port;
    reader.AddData(portForm() + "<OstraInterfacePort><Port>7</Port></OstraInterfacePort>" + binary(1));
    EXPECT_EQ(reader.Next(port), MessageReader::Ready);
    EXPECT_EQ(port.GetPort(), 5000U);
    EXPECT_EQ(reader.Next(port), MessageReader::Ready);
    EXPECT_EQ(port.GetPort(), 7U);
    EXPECT_EQ(reader.Next(port), MessageReader::Refused);
    EXPECT_EQ(reader.GetFailure().kind, Failure::WrongClass);
}

// --- messages that are refused ----------------------------------------------------------------

TEST(MessageReader, PassesOverABinaryFormWithBadContent)
{
    QByteArray damaged = inForm(Form::Compressed, 1);
    damaged[damaged.size() - 3] = static_cast<char>(damaged.at(damaged.size() - 3) ^ 0x55);
    // What is inside of a refused form is not taken for a message.
    const QByteArray around = binary(1);
    QByteArray unread = around.left(4) + QByteArray("\0\0\0\0", 4) + binary(5) + "abc";
    unread[7] = static_cast<char>(unread.size() - 8);
    const struct
    {
        QByteArray bytes;
        const char* kind;
    } refused[] = {{binaryWithWrongEntry(), "Refused"},
                   {portForm(), "WrongClass"},
                   {damaged, "DamagedCompression"},
                   {around.left(4) + QByteArray("\0\0\0\3abc", 7), "Refused"},
                   {unread, "Refused"}};
    for (const auto& message : refused) {
        const QStringList expected = {"1 binary @0", at("refused " + QString(message.kind), around.size()),
                                      at("2 xml", around.size() + message.bytes.size()), "ended"};
        EXPECT_EQ(readAll(around + message.bytes + element(2)), expected);
    }
}

TEST(MessageReader, PassesOverXmlWithBadContent)
{
    const QByteArray refused[] = {withType("Demand"), "<OstraInterfacePort/>", "<html><body/></html>",
                                  element(1).replace("<Type>Event</Type>", "")};
    const char* const kinds[] = {"Refused", "WrongRoot", "WrongRoot", "Refused"};
    for (std::size_t i = 0; i < std::size(refused); ++i)
        EXPECT_EQ(readAll(refused[i] + element(2)), QStringList({at("refused " + QString(kinds[i]), 0),
                                                                 at("2 xml", refused[i].size()), "ended"}));
}

TEST(MessageReader, TellsWhyAndWhereAMessageWasRefused)
{
    MessageReader reader;
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    reader.AddData(element(1) + "\n" + withType("Evert") + "\n");
    ASSERT_EQ(reader.Next(document), MessageReader::Ready);
    EXPECT_EQ(reader.GetFailure().kind, Failure::None);
    ASSERT_EQ(reader.Next(document), MessageReader::Refused);
    EXPECT_TRUE(reader.GetFailure().text.contains("Evert")) << reader.GetFailure().text.toStdString();
    EXPECT_EQ(reader.GetFailure().place.line, 1);
    EXPECT_TRUE(reader.GetFailure().place.path.endsWith("/Type"));
    EXPECT_EQ(reader.GetBytes(), withType("Evert"));
    EXPECT_EQ(reader.Next(document), MessageReader::NeedMore);
    EXPECT_EQ(reader.GetFailure().kind, Failure::None);
}

TEST(MessageReader, ChecksDocumentsOnlyWithValidation)
{
    PelLu300RouterInterfaceXml noType;
    noType.GetPelLu300RouterMessage().SetMessageID(1);
    for (const Form form : wireForms)
        for (const bool validates : {false, true}) {
            MessageReader reader;
            PelLu300RouterInterfaceXml document;
            document.SetValidate(validates);
            reader.AddData(ROUTERDOCUMENTS::WriteDocument(noType, form));
            EXPECT_EQ(reader.Next(document), validates ? MessageReader::Refused : MessageReader::Ready);
        }
}

TEST(MessageReader, AppliesItsOwnLimitsToTheContent)
{
    PelLu300RouterInterfaceXml three = numbered(1);
    for (unsigned int port = 1; port <= 3; ++port)
        three.GetPelLu300RouterMessage().AppendFragment(withPort(port));
    Limits limits;
    limits.listItems = 2;
    limits.inflatedSize = 60;
    QByteArray stream;
    for (const Form form : wireForms)
        stream += ROUTERDOCUMENTS::WriteDocument(three, form);
    const QStringList lines = readAll(stream + element(2), limits);
    ASSERT_EQ(lines.size(), 5);
    EXPECT_TRUE(lines.at(0).startsWith("refused TooManyItems"));
    EXPECT_TRUE(lines.at(1).startsWith("refused TooManyItems"));
    EXPECT_TRUE(lines.at(2).startsWith("refused InflatedTooLarge"));
    EXPECT_TRUE(lines.at(3).startsWith("2 xml"));
    EXPECT_EQ(lines.at(4), "ended");

    EXPECT_EQ(readAll(stream).size(), 4) << "the usual limits";
}

TEST(MessageReader, TurnsEveryExceptionIntoAFailure)
{
    // A record that is interrupted while it is read.
    class Unlucky : public PelLu300RouterInterfaceXml
    {
    public:
        void ProcessXml(QXmlStreamReader&) override { throw std::logic_error("bad luck"); }
        void SetBinary(QDataStream&, int) override { throw 7; }
    };
    MessageReader reader;
    Unlucky unlucky;
    reader.AddData(element(1) + binary(2) + binary(3));
    EXPECT_EQ(reader.Next(unlucky), MessageReader::Refused);
    EXPECT_EQ(reader.GetFailure().kind, Failure::Interrupted);
    EXPECT_TRUE(reader.GetFailure().text.contains("bad luck"));
    EXPECT_EQ(reader.Next(unlucky), MessageReader::Refused);
    EXPECT_EQ(reader.GetFailure().kind, Failure::Interrupted);
    PelLu300RouterInterfaceXml document;
    EXPECT_EQ(reader.Next(document), MessageReader::Ready);
    EXPECT_EQ(numberOf(document), 3U);
}

TEST(MessageReader, SurvivesThatMemoryRunsOut)
{
    const PelLu300RouterInterfaceXml content = numbered(7);
    for (const Form form : {Form::Binary, Form::Compressed})
        for (const Allocator allocator : {Allocator::New, Allocator::Malloc})
            for (const Extent extent : {Extent::Once, Extent::FromThenOn}) {
                if (!canFail(allocator))
                    continue;
                const QByteArray bytes = inForm(form, 7);
                long successes = 0;
                for (bool hasFailed = true; hasFailed; ++successes) {
                    MessageReader reader;
                    PelLu300RouterInterfaceXml document;
                    MessageReader::Outcome outcome = MessageReader::NeedMore;
                    {
                        const FailingAllocations failing(successes, allocator, extent);
                        reader.AddData(bytes);
                        outcome = reader.Next(document);
                        hasFailed = failing.hasFailed();
                    }
                    if (outcome == MessageReader::Ready) {
                        EXPECT_EQ(document, content) << successes;
                    } else {
                        EXPECT_TRUE(hasFailed);
                        EXPECT_NE(reader.GetFailure().kind, Failure::None);
                        EXPECT_FALSE(reader.GetFailure().text.isEmpty());
                    }
                    if (outcome == MessageReader::Refused) {
                        reader.AddData(bytes);
                        EXPECT_EQ(reader.Next(document), MessageReader::Ready);
                        EXPECT_EQ(document, content);
                    }
                }
                EXPECT_GT(successes, 1);
            }
}

// --- broken connections -----------------------------------------------------------------------

TEST(MessageReader, BreaksWhereNobodyKnowsWhatFollows)
{
    const QByteArray root = "<PelLu300RouterInterfaceXml>";
    const struct
    {
        QByteArray bytes;
        const char* kind;
    } broken[] = {
        {"GET / HTTP/1.1\r\n\r\n", "NotWellFormed"},
        {"\x01\x02\x03\x04", "NotABinaryForm"},
        {"{\"PelLu300RouterInterfaceXml\": {}}", "NotWellFormed"},
        {"< a/>", "NotWellFormed"},
        {binary(1).left(4) + QByteArray("\xFF\xFF\xFF\xFF", 4), "NotABinaryForm"},
        {binary(1).left(4) + QByteArray("\x7F\xFF\xFF\xFF", 4), "InputTooLarge"},
        {root + "<a></b>", "NotWellFormed"},
        {root + "<a <b/></a></PelLu300RouterInterfaceXml>", "NotWellFormed"},
        {root + "<PelLu300RouterMessage></PelLu300RouterInterfaceXml>", "NotWellFormed"},
        {root + "<PelLu300RouterMessage>" + element(1), "NotWellFormed"},
        {root + QByteArray(1, '\0'), "NotWellFormed"},
        {root + "&unknown;</PelLu300RouterInterfaceXml>", "NotWellFormed"},
        {root + "\x01</PelLu300RouterInterfaceXml>", "NotWellFormed"},
        {root + "\xC3(</PelLu300RouterInterfaceXml>", "NotWellFormed"},
        {"<!DOCTYPE a>" + element(1), "DoctypeRefused"},
        {"<?xml version=\"1.0\" encoding=\"UTF-7\"?>" + element(1), "EncodingRefused"},
        {withType("Demand").replace("<MessageID>", "<MessageID>&unknown;"), "NotWellFormed"},
        {"<other>&unknown;</other>", "NotWellFormed"},
    };
    for (const auto& fault : broken) {
        const QByteArray good = binary(1);
        EXPECT_EQ(readAll(good + fault.bytes + element(2)),
                  QStringList({"1 binary @0", at("broken " + QString(fault.kind), good.size())}))
            << fault.bytes.constData();
    }
}

TEST(MessageReader, BreaksAsSoonAsTheFaultHasArrived)
{
    // Nothing follows that could end the message.
    for (const QByteArray& bytes :
         {QByteArray("G"), binary(1).left(4) + QByteArray("\xFF\xFF\xFF\xFF", 4),
          QByteArray("<PelLu300RouterInterfaceXml><a></b>"), QByteArray("<a b='<"),
          QByteArray("<PelLu300RouterInterfaceXml><PelLu300RouterMessage></PelLu300RouterInterfaceXml>"),
          QByteArray("<a>\0", 4)}) {
        MessageReader reader;
        reader.AddData(bytes.left(bytes.size() - 1));
        EXPECT_EQ(takeAll(reader), QStringList()) << bytes.constData();
        reader.AddData(bytes.right(1));
        const QStringList lines = takeAll(reader);
        ASSERT_EQ(lines.size(), 1) << bytes.constData();
        EXPECT_TRUE(lines.at(0).startsWith("broken Not")) << lines.at(0).toStdString();
    }
}

TEST(MessageReader, StaysBroken)
{
    MessageReader reader;
    reader.AddData("<a></b>" + element(1));
    EXPECT_EQ(takeAll(reader), QStringList("broken NotWellFormed @0"));
    EXPECT_EQ(reader.GetFailure().place.line, 1);
    const QString text = reader.GetFailure().text;
    reader.AddData(element(2));
    EXPECT_EQ(takeAll(reader), QStringList("broken NotWellFormed @0"));
    reader.EndData();
    EXPECT_EQ(takeAll(reader), QStringList("broken NotWellFormed @0"));
    EXPECT_EQ(reader.GetFailure().text, text);
    EXPECT_TRUE(reader.GetBytes().isEmpty());
}

TEST(MessageReader, KeepsTheBytesFromWhereItIsBroken)
{
    MessageReader reader;
    reader.AddData(element(1) + "no ");
    reader.AddData("message");
    EXPECT_TRUE(reader.GetUnreadBytes().isEmpty());
    ASSERT_EQ(takeAll(reader).size(), 2);
    EXPECT_EQ(reader.GetUnreadBytes(), QByteArray("no message"));
    reader.AddData("more");
    EXPECT_EQ(reader.GetUnreadBytes(), QByteArray("no message"));
    MessageReader cutOff;
    cutOff.AddData("<a><b>");
    cutOff.EndData();
    takeAll(cutOff);
    EXPECT_EQ(cutOff.GetUnreadBytes(), QByteArray("<a><b>"));
}

TEST(MessageReader, KeepsTheBytesOfAMessageWhenMoreAreAdded)
{
    MessageReader reader;
    PelLu300RouterInterfaceXml document;
    reader.AddData(binary(1));
    ASSERT_EQ(reader.Next(document), MessageReader::Ready);
    reader.AddData(QByteArray(1 << 20, ' '));
    EXPECT_EQ(reader.GetBytes(), binary(1));
}

TEST(MessageReader, DoesNotTellAMessageAgainWhenTooMuchIsAdded)
{
    MessageReader reader;
    PelLu300RouterInterfaceXml document;
    reader.AddData(binary(1) + "rest");
    ASSERT_EQ(reader.Next(document), MessageReader::Ready);
    // So many bytes are refused before they are looked at.
    const char byte = 0;
    reader.AddData(&byte, ROUTERDOCUMENTS::LargestMessage);
    EXPECT_TRUE(reader.GetBytes().isEmpty());
    EXPECT_EQ(reader.Next(document), MessageReader::Broken);
    EXPECT_EQ(reader.GetFailure().kind, Failure::InputTooLarge);
    EXPECT_EQ(reader.GetUnreadBytes(), QByteArray("rest"));
    EXPECT_EQ(reader.GetOffset(), binary(1).size());
}

TEST(MessageReader, TellsWhatBytesAreThatAreNoMessage)
{
    MessageReader reader;
    PelLu300RouterInterfaceXml document;
    reader.AddData("GET / HTTP/1.1\r\n\r\n");
    EXPECT_EQ(reader.Next(document), MessageReader::Broken);
    EXPECT_TRUE(reader.GetFailure().text.contains("GET / HTTP/1.1"))
        << reader.GetFailure().text.toStdString();
}

TEST(MessageReader, TellsWhatIsMissingWhenTheConnectionEnds)
{
    const struct
    {
        QByteArray bytes;
        const char* text;
    } cutOff[] = {
        {binary(1).left(3), "The message is cut off; 3 bytes are there."},
        {"<", "The message is cut off; 1 byte is there."},
        {binary(1).left(7), "The binary form is cut off; its length is missing."},
        {binary(1).chopped(1), "The binary form is cut off; 1 byte is missing."},
        {inForm(Form::Compressed, 1).chopped(2), "The binary form is cut off; 2 bytes are missing."},
        {"<a", "The XML document is cut off: the end of its root element is missing."},
        {element(1).chopped(1), "The XML document is cut off: the end of its root element is missing."},
        {"<!-- a", "The comment or processing instruction is cut off."}};
    for (const auto& message : cutOff) {
        MessageReader reader;
        reader.AddData(element(1) + message.bytes);
        EXPECT_EQ(takeAll(reader), QStringList("1 xml @0"));
        reader.EndData();
        ASSERT_EQ(takeAll(reader).size(), 1);
        EXPECT_EQ(reader.GetFailure().text, text(message.text));
        EXPECT_EQ(reader.GetOffset(), element(1).size());
    }
}

// --- limits and cost --------------------------------------------------------------------------

TEST(MessageReader, BreaksAtTheFirstByteAboveTheLimit)
{
    for (const QByteArray& message :
         {binary(1), inForm(Form::Compressed, 1), element(1), "<!-- " + element(1) + " -->"}) {
        const QStringList whole = readAll(message, withInputSize(message.size()));
        EXPECT_EQ(whole.constLast(), "ended");
        EXPECT_EQ(readAll(message, withInputSize(message.size() - 1)),
                  QStringList("broken InputTooLarge @0"));
    }
    // Whatever follows above the limit has no effect.
    EXPECT_EQ(readAll("<a>" + QByteArray(20, ' ') + "</b>", withInputSize(10)),
              QStringList("broken InputTooLarge @0"));
    for (const qint64 limit : {qint64(-1), qint64(0)})
        EXPECT_EQ(readAll(binary(1), withInputSize(limit)), QStringList("broken InputTooLarge @0"));
}

TEST(MessageReader, NeedsNoMoreThanTheHeaderOfALargeForm)
{
    MessageReader reader(withInputSize(1000));
    reader.AddData(binary(1).left(4) + QByteArray("\0\0\x03\xE0", 4));
    EXPECT_EQ(takeAll(reader), QStringList()) << "exactly the limit";
    MessageReader second(withInputSize(1000));
    second.AddData(binary(1).left(4) + QByteArray("\0\0\x03\xE1", 4));
    EXPECT_EQ(takeAll(second), QStringList("broken InputTooLarge @0"));
}

TEST(MessageReader, LooksAtEveryByteOnceWhateverThePieces)
{
    constexpr int size = 30000;
    const auto repeated = [](const QByteArray& part) {
        return part.repeated(size / static_cast<int>(part.size()));
    };
    QByteArray large = element(1);
    large.replace("<Type>", repeated("<x>some text</x>") + "<Type>");
    QByteArray largeForm = binary(1).left(4) + QByteArray(4, '\0') + QByteArray(size, ' ');
    largeForm[5] = 1;
    const QByteArray streams[] = {large,
                                  utf16(large, true),
                                  "<a b='" + QByteArray(size, ' '),
                                  "<" + QByteArray(size, 'a'),
                                  "<!--" + QByteArray(size, '-'),
                                  "<?x " + QByteArray(size, '?'),
                                  "<!DOCTYPE a [" + repeated("<!ENTITY a 'b'>"),
                                  "<a><![CDATA[" + QByteArray(size, ']'),
                                  largeForm,
                                  QByteArray(size, '\0'),
                                  QByteArray(size, '\n'),
                                  utf16(element(1) + QByteArray(size, '\0'), false),
                                  repeated(QByteArray("\0\n", 2)),
                                  repeated("<!---->"),
                                  repeated("\xEF\xBB\xBF"),
                                  repeated(element(1)),
                                  repeated(binary(1)),
                                  repeated("<OstraInterfacePort/>")};
    for (const QByteArray& stream : streams)
        for (const int piece : {1, 7, 5000}) {
            MessageReader reader;
            PelLu300RouterInterfaceXml document;
            MessageReader::Outcome outcome = MessageReader::NeedMore;
            for (int begin = 0; begin < stream.size(); begin += piece) {
                reader.AddData(stream.constData() + begin, std::min(piece, int(stream.size()) - begin));
                do
                    outcome = reader.Next(document);
                while (outcome == MessageReader::Ready || outcome == MessageReader::Refused);
                ASSERT_EQ(outcome, MessageReader::NeedMore);
            }
            // The first bytes of a message are looked at until its form is known.
            EXPECT_LE(reader.GetExaminedBytes(), 5 * qint64(stream.size()))
                << piece << ": " << stream.left(30).constData();
        }
}

// --- any pieces -------------------------------------------------------------------------------

namespace {

// A random connection, and what must come out of it.
class RandomStream
{
public:
    explicit RandomStream(unsigned int seed) : m_random(seed)
    {
        const int count = below(8);
        for (int i = 0; i < count; ++i) {
            addBetween();
            addMessage();
        }
        addBetween();
        addEnd();
    }

    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(m_random); }

    QByteArray bytes;
    QStringList expected;

private:
    void addBetween()
    {
        const QByteArray all[] = {
            "", "\n", " \t", "\r\n", QByteArray(1, '\0'), QByteArray(5, '\0'), "\n\n", "<!--a-->", "<?a?>"};
        for (int i = below(3); i > 0; --i)
            bytes += all[below(int(std::size(all)))];
    }

    void add(const QString& what, const QByteArray& content)
    {
        expected += at(what, bytes.size());
        bytes += content;
    }

    void addMessage()
    {
        const auto number = static_cast<unsigned int>(below(1000));
        const QString name = QString::number(number);
        switch (below(12)) {
        case 0:
            return add("refused Refused", binaryWithWrongEntry());
        case 1:
            return add("refused WrongClass", portForm());
        case 2:
            return add("refused WrongRoot", "<OstraInterfacePort><Port>1</Port></OstraInterfacePort>");
        case 3:
            return add("refused Refused", withType("Demand"));
        case 4:
            return add(name + " compressed", inForm(Form::Compressed, number));
        case 5:
            return add(name + " xml", "\xEF\xBB\xBF" + xml(number).trimmed());
        case 6:
            add(name + " xml", "\xFF\xFE" + utf16(element(number), false));
            // A zero would belong to the encoding.
            bytes += QByteArray("\n\0", 2);
            return add(name + " binary", binary(number));
        case 7:
        case 8:
            return add(name + " xml", element(number));
        default:
            return add(name + " binary", binary(number));
        }
    }

    void addEnd()
    {
        switch (below(9)) {
        case 0:
            return add("broken NotWellFormed", "no message");
        case 1:
            return add("broken NotABinaryForm", binary(1).left(4) + QByteArray("\x80\0\0\0 and more", 13));
        case 2:
            return add("broken InputTooLarge", binary(1).left(4) + QByteArray("\x7F\0\0\0 and more", 13));
        case 3:
            return add("broken NotWellFormed", element(1).replace("</Type>", "</Tipe>"));
        case 4:
            return add("broken NotWellFormed",
                       "<PelLu300RouterInterfaceXml>&a;</PelLu300RouterInterfaceXml>");
        case 5:
            return add("broken NotWellFormed", element(1).left(5 + below(int(element(1).size()) - 5)));
        case 6:
            return add("broken NotABinaryForm", binary(1).left(4 + below(int(binary(1).size()) - 4)));
        default:
            expected += "ended";
        }
    }

    std::mt19937 m_random;
};

} // namespace

TEST(MessageReader, GivesTheSameMessagesForAllPieces)
{
    constexpr unsigned int rounds = 200;
    for (unsigned int seed = 1; seed <= rounds; ++seed) {
        RandomStream stream(seed);
        EXPECT_EQ(readAll(stream.bytes), stream.expected) << "seed " << seed;
        for (int i = 0; i < 5; ++i) {
            MessageReader reader;
            QStringList lines;
            int begin = 0;
            while (begin < stream.bytes.size()
                   && (lines.isEmpty() || !lines.constLast().startsWith("broken"))) {
                const int size = 1 + stream.below(1 << stream.below(9));
                reader.AddData(stream.bytes.mid(begin, size));
                begin += size;
                // Several pieces may arrive before anyone reads.
                if (stream.below(3) > 0)
                    lines += takeAll(reader);
            }
            if (lines.isEmpty() || !lines.constLast().startsWith("broken")) {
                reader.EndData();
                lines += takeAll(reader);
            }
            ASSERT_EQ(lines, stream.expected) << "seed " << seed << ", pieces " << i;
        }
    }
}
