// SPDX-License-Identifier: MIT
// Recordings: messages of all forms one behind another, what stands between them, and what is no message.
#include "RecordingSupport.h"

#include "documents/JsonForm.h"

#include "modelkit/Limits.h"

using namespace recording_support;

namespace {

using Numbers = QVector<unsigned int>;

QByteArray withLength(QByteArray form, const char* hex)
{
    form.replace(4, 4, bytes(hex));
    return form;
}

} // namespace

// --- messages -------------------------------------------------------------------------------

TEST(Recording, OfNothingHasNoMessages)
{
    for (const char* const content :
         {"", " ", "\n\r\n\t", "\xEF\xBB\xBF", "<!-- no message -->\n", "<?note?>"}) {
        const Outcome outcome = readAll(QByteArray(content));
        EXPECT_EQ(outcome.lines, QStringList()) << content;
    }
}

TEST(Recording, TakesEveryFormBehindEveryOther)
{
    for (const Form first : allForms)
        for (const Form second : allForms)
            for (const Form third : allForms) {
                const QByteArray content = inForm(first, 1) + inForm(second, 2) + inForm(third, 3);
                const Outcome outcome = readAll(content);
                EXPECT_EQ(numbersIn(outcome), Numbers({1, 2, 3})) << outcome.lines.join(u'\n').toStdString();
                EXPECT_TRUE(outcome.errors.isEmpty());
            }
}

TEST(Recording, TakesMessagesWithNothingBetweenThem)
{
    QByteArray content;
    for (unsigned int i = 1; i <= 5; ++i)
        content += inForm(allForms[i - 1], i).trimmed();
    const Outcome outcome = readAll(content);
    EXPECT_EQ(numbersIn(outcome), Numbers({1, 2, 3, 4, 5})) << outcome.lines.join(u'\n').toStdString();
    EXPECT_TRUE(outcome.errors.isEmpty());
}

TEST(Recording, GivesTheBytesOfTheMessagesAndTheirPlaces)
{
    const QByteArray xml = "<DF_Params>\n</DF_Params>";
    const QByteArray json = "{\"DF_Params\":\n {}}";
    const QByteArray binary = bytes("F1EE139C 00000000");
    const QByteArray compressed = DF_Params().GetCompressedBinaryRepresentationAsQByteArray(9);
    const QByteArray content = "\n" + xml + "\r\n\r\n" + json + "\r" + xml + "\n" + binary + xml + compressed;
    const Outcome outcome = readAll(content);
    EXPECT_EQ(outcome.lines, QStringList({"xml 1:2", "json 29:5", "xml 48:7", "binary 73:9", "xml 81:0",
                                          "compressed 105:0"}));
    ASSERT_EQ(outcome.messages.size(), 6);
    qint64 number = 0;
    const QVector<QByteArray> expected = {xml, json, xml, binary, xml, compressed};
    for (const RecordedMessage& message : outcome.messages) {
        EXPECT_EQ(message.number, ++number);
        EXPECT_EQ(message.bytes, expected.at(static_cast<int>(number) - 1));
        EXPECT_EQ(content.mid(static_cast<int>(message.offset), message.bytes.size()), message.bytes);
    }
}

TEST(Recording, TakesTheExamplesInAllFormsInPiecesOfAnySize)
{
    QByteArray content;
    QVector<QByteArray> expected;
    for (const QByteArray& example : examples())
        for (const Form form : allForms) {
            const Document document = ReadDocument(example);
            content += example + WriteMessage(*document.record, form);
            expected += ToJson(*document.record);
            expected += ToJson(*ReadDocument(WriteDocument(*document.record, form)).record);
        }
    for (const int piece : {1, 2, 3, 7, 4096, 1 << 20}) {
        Pieces sequential(content, piece, true);
        EXPECT_EQ(readAll(sequential).messages.size(), expected.size()) << piece;
        const Outcome outcome = readInPieces(content, piece);
        EXPECT_TRUE(outcome.errors.isEmpty()) << outcome.lines.join(u'\n').toStdString();
        ASSERT_EQ(outcome.messages.size(), expected.size()) << piece;
        for (int i = 0; i < expected.size(); ++i)
            EXPECT_EQ(ToJson(*ReadDocument(outcome.messages.at(i).bytes).record), expected.at(i));
    }
}

TEST(Recording, TakesMessagesOfAnyClass)
{
    for (const auto* info : RecordInfo::All())
        for (const Form form : allForms) {
            const QByteArray message = WriteMessage(*info->Create(), form);
            const Outcome outcome = readAll(message + message);
            ASSERT_EQ(outcome.messages.size(), 2);
            EXPECT_TRUE(outcome.errors.isEmpty());
            EXPECT_EQ(ReadDocument(outcome.messages.last().bytes).info, info);
        }
}

TEST(Recording, TakesMessagesThatAreLargerThanABlock)
{
    PelLu300RouterInterfaceXml large = numbered(7);
    Fragment fragment;
    fragment.GetPelVtConnectServer().SetAddress(QString(200000, QLatin1Char('a')));
    large.GetPelLu300RouterMessage().AppendFragment(fragment);
    QByteArray content;
    for (const Form form : allForms)
        content += inForm(form, 1) + WriteMessage(large, form) + inForm(form, 2);
    const Numbers expected = {1, 7, 2, 1, 7, 2, 1, 7, 2, 1, 7, 2, 1, 7, 2};
    EXPECT_EQ(numbersIn(readAll(content)), expected);
    EXPECT_EQ(numbersIn(readInPieces(content, 1000)), expected);
}

TEST(Recording, GivesWhatTheDocumentsReaderRefuses)
{
    QByteArray binary = inForm(Form::Binary, 2);
    binary.replace(12, 4, bytes("7FFFFFFF"));
    QByteArray compressed = inForm(Form::Compressed, 3);
    compressed[12] = static_cast<char>(compressed.at(12) ^ 0x55);
    const QByteArray content = inForm(Form::Binary, 1) + binary + compressed + "<html></html>"
                               + inForm(Form::Json, 4) + "{\"PelLu300RouterInterfaceXml\": nonsense}\n"
                               + inForm(Form::Xml, 5);
    const Outcome outcome = readAll(content);
    EXPECT_TRUE(outcome.errors.isEmpty());
    EXPECT_EQ(numbersIn(outcome), Numbers({1, 0, 0, 0, 4, 0, 5}));
}

// --- a form that is known ---------------------------------------------------------------------

// The two binary forms are read alike, as of single documents.
TEST(Recording, OfOneFormTakesNoOther)
{
    QByteArray content;
    for (unsigned int i = 1; i <= 4; ++i)
        content += inForm(allForms[i - 1], i) + '\n';
    for (unsigned int i = 1; i <= 4; ++i) {
        const Outcome outcome = readAll(content, {allForms[i - 1]});
        EXPECT_EQ(numbersIn(outcome), i == 2 || i == 3 ? Numbers({2, 3}) : Numbers({i}));
        EXPECT_EQ(outcome.errors.size(), i == 1 || i == 4 ? 1 : 2) << outcome.lines.join(u'\n').toStdString();
    }
}

TEST(Recording, OfJsonLinesGivesThemThatForm)
{
    const QByteArray content = inForm(Form::JsonLines, 1) + "\r\n  " + inForm(Form::JsonLines, 2);
    const Outcome outcome = readAll(content, {Form::JsonLines});
    EXPECT_EQ(numbersIn(outcome), Numbers({1, 2}));
    EXPECT_EQ(outcome.messages.first().form, Form::JsonLines);
    EXPECT_EQ(readAll(content).messages.first().form, Form::Json);
}

TEST(Recording, OfJsonLinesEndsEveryMessageOnItsLine)
{
    const QByteArray content = "{\"DF_Params\":\n{}}\n" + inForm(Form::JsonLines, 1);
    const Outcome outcome = readAll(content, {Form::JsonLines});
    EXPECT_EQ(outcome.lines,
              QStringList({"! 0:1 This is no JSON value; 18 bytes are passed over.", "jsonl 18:3"}));
    EXPECT_EQ(readAll(content).lines, QStringList({"json 0:1", "json 18:3"}));
}

TEST(Recording, OfOneFormTellsWhereAnotherFormBegins)
{
    const QByteArray xml = inForm(Form::Xml, 1);
    for (const Form other : {Form::Json, Form::JsonLines, Form::Binary, Form::Compressed})
        for (const int piece : {1, 7, 1000}) {
            const QByteArray message = inForm(other, 2);
            const Outcome outcome = readInPieces(xml + message + xml, piece, {Form::Xml});
            EXPECT_EQ(numbersIn(outcome), Numbers({1, 1}));
            ASSERT_EQ(outcome.errors.size(), 1);
            const Form named = IsBinary(other) ? other : Form::Json;
            const DocumentError& error = outcome.errors.first();
            EXPECT_EQ(error.GetOtherForm(), named);
            EXPECT_EQ(error.GetPlace().offset, xml.size());
            EXPECT_EQ(error.GetText(),
                      QStringLiteral("Here begins a message in the form %1, expected is xml; %2 bytes are "
                                     "passed over.")
                          .arg(NameOf(named), QString::number(message.size())));
        }
    for (const Form form : {Form::Json, Form::JsonLines, Form::Binary, Form::Compressed}) {
        const Outcome outcome = readAll(xml + inForm(form, 2), {form});
        EXPECT_EQ(numbersIn(outcome), Numbers({2}));
        ASSERT_EQ(outcome.errors.size(), 1);
        EXPECT_EQ(outcome.errors.first().GetOtherForm(), Form::Xml);
        EXPECT_EQ(outcome.errors.first().GetPlace().line, 1);
    }
    // What only looks a little like a message is none.
    for (const char* const junk : {"{\n", "[1]\n", "MKZ\n", "\x85\x53\n"}) {
        const Outcome outcome = readAll(xml + junk + xml, {Form::Xml});
        ASSERT_EQ(outcome.errors.size(), 1) << junk;
        EXPECT_EQ(outcome.errors.first().GetOtherForm(), std::nullopt) << junk;
        EXPECT_TRUE(outcome.errors.first().GetText().startsWith(QStringLiteral("No message begins here")));
    }
    EXPECT_EQ(readAll(xml + "junk").errors.first().GetOtherForm(), std::nullopt);
}

// --- what is no message -------------------------------------------------------------------------

TEST(Recording, TellsWhatIsNoMessageOnceForEachStretch)
{
    const QByteArray xml = inForm(Form::Xml, 1);
    const auto size = xml.size();
    const Outcome outcome = readAll("What is\nthis? " + xml + "?" + xml + "</PelLu300RouterInterfaceXml> \n"
                                    + xml + QByteArray(100000, '\x05'));
    EXPECT_EQ(numbersIn(outcome), Numbers({1, 1, 1}));
    ASSERT_EQ(outcome.errors.size(), 4);
    EXPECT_EQ(outcome.lines.at(0), "! 0:1 No message begins here; 14 bytes are passed over.");
    EXPECT_EQ(outcome.lines.at(2),
              QStringLiteral("! %1:9 No message begins here; 1 byte is passed over.").arg(14 + size));
    EXPECT_EQ(outcome.errors.at(2).GetText(), "No message begins here; 31 bytes are passed over.");
    EXPECT_EQ(outcome.errors.at(3).GetText(), "No message begins here; 100000 bytes are passed over.");
    EXPECT_EQ(outcome.errors.at(0).GetKind(), Failure::NotWellFormed);
    EXPECT_EQ(outcome.errors.at(3).GetKind(), Failure::NotABinaryForm);
}

TEST(Recording, FindsEveryFormBehindWhatIsNoMessage)
{
    for (const char* const junk :
         {"junk\n", "0\n", "</a>\n", "< \n", "<\n", "{\n", "[\"\n", "\x85\x53\n", "MKZ\n", "\xEF\xBB\n",
          "\xFE\n", "<!\n", "<!-\n", "MKZ1\xFF\xFF\xFF\xFF\n"})
        for (const Form form : allForms) {
            const Outcome outcome = readAll(inForm(Form::Binary, 1) + junk + inForm(form, 2));
            EXPECT_EQ(numbersIn(outcome), Numbers({1, 2}))
                << junk << NameOf(form).toStdString() << outcome.lines.join(u'\n').toStdString();
            EXPECT_EQ(outcome.errors.size(), 1) << junk << NameOf(form).toStdString();
        }
}

TEST(Recording, DoesNotTakeZerosForSpace)
{
    const Outcome outcome =
        readAll(inForm(Form::Binary, 1) + QByteArray(512, '\0') + inForm(Form::Binary, 2));
    EXPECT_EQ(numbersIn(outcome), Numbers({1, 2}));
    ASSERT_EQ(outcome.errors.size(), 1);
    EXPECT_EQ(outcome.errors.first().GetText(), "No message begins here; 512 bytes are passed over.");
    EXPECT_EQ(outcome.errors.first().GetKind(), Failure::NotABinaryForm);
}

TEST(Recording, TellsBinaryFormsWithLengthsThatCannotBe)
{
    const QByteArray good = inForm(Form::Binary, 1);
    for (const Form form : {Form::Binary, Form::Compressed}) {
        const QByteArray bad = withLength(inForm(form, 2), "80000000");
        const Outcome outcome = readAll(good + bad + good);
        EXPECT_EQ(numbersIn(outcome), Numbers({1, 1}));
        ASSERT_EQ(outcome.errors.size(), 1);
        EXPECT_EQ(outcome.errors.first().GetText(),
                  QStringLiteral("The binary form has a negative length; %1 bytes are passed over.")
                      .arg(bad.size()));
        EXPECT_EQ(outcome.errors.first().GetPlace().offset, good.size());
        EXPECT_EQ(outcome.errors.first().GetKind(), Failure::NotABinaryForm);
    }
    const Outcome outcome = readAll(good + withLength(good, "7FFFFFFF") + good);
    EXPECT_EQ(numbersIn(outcome), Numbers({1, 1}));
    ASSERT_EQ(outcome.errors.size(), 1);
    EXPECT_EQ(outcome.errors.first().GetKind(), Failure::InputTooLarge);
}

TEST(Recording, FindsWhatABinaryFormWithAWrongLengthWouldTake)
{
    const QByteArray good = inForm(Form::Binary, 1);
    const Outcome outcome = readAll(withLength(good, "00001000") + good + good);
    EXPECT_EQ(numbersIn(outcome), Numbers({1, 1}));
    ASSERT_EQ(outcome.errors.size(), 1);
    EXPECT_EQ(outcome.errors.first().GetPlace().offset, 0);
    EXPECT_EQ(
        outcome.errors.first().GetText(),
        QStringLiteral("The binary form is cut off; %1 bytes are missing.").arg(4096 + 8 - 3 * good.size()));
}

TEST(Recording, TellsHowMuchOfACutOffBinaryFormIsMissing)
{
    for (const Form form : {Form::Binary, Form::Compressed}) {
        const QByteArray whole = inForm(form, 1);
        const Outcome one = readAll(whole.chopped(1));
        EXPECT_EQ(one.lines, QStringList("! 0:1 The binary form is cut off; 1 byte is missing."));
        EXPECT_EQ(one.errors.first().GetKind(), Failure::NotABinaryForm);
        EXPECT_EQ(readAll(whole.left(8)).errors.first().GetText(),
                  QStringLiteral("The binary form is cut off; %1 bytes are missing.").arg(whole.size() - 8));
        EXPECT_EQ(readAll(whole.left(5)).errors.first().GetText(),
                  "The binary form is cut off; its length is missing.");
    }
}

TEST(Recording, EndsADocumentWhereAnotherOneBegins)
{
    const QByteArray xml = inForm(Form::Xml, 1);
    for (const Form form : {Form::Xml, Form::Binary, Form::Compressed})
        for (int cut = 6; cut < xml.size() - 2; ++cut) {
            const Outcome outcome = readAll(xml.left(cut) + inForm(form, 2) + xml);
            ASSERT_EQ(outcome.messages.size(), 3) << cut << outcome.lines.join(u'\n').toStdString();
            EXPECT_EQ(numbersIn(outcome), Numbers({0, 2, 1})) << cut;
            EXPECT_TRUE(outcome.errors.isEmpty()) << cut;
        }
}

TEST(Recording, GoesOnBehindALineThatIsNoJson)
{
    const QByteArray good = inForm(Form::JsonLines, 1);
    for (const char* const bad : {"nonsense", "{\"a\" <", "[[]", "}", "\"text\"", "7"})
        for (const auto& form : {std::optional<Form>(), std::optional<Form>(Form::JsonLines)}) {
            const Outcome outcome = readAll(good + bad + "\n" + good + good, {form});
            EXPECT_EQ(numbersIn(outcome), Numbers({1, 1, 1}))
                << bad << outcome.lines.join(u'\n').toStdString();
            ASSERT_EQ(outcome.errors.size(), 1) << bad;
            EXPECT_EQ(outcome.errors.first().GetPlace().line, 2) << bad;
            EXPECT_EQ(outcome.errors.first().GetPlace().offset, good.size()) << bad;
            EXPECT_EQ(outcome.errors.first().GetKind(), Failure::NotWellFormed) << bad;
        }
}

// --- limits -------------------------------------------------------------------------------------

TEST(Recording, RefusesMessagesAboveTheLimitAndGoesOn)
{
    for (const Form form : allForms) {
        const QByteArray small = inForm(form, 1);
        PelLu300RouterInterfaceXml large = numbered(2);
        Fragment fragment;
        // The text of this address does not compress well.
        QString address;
        for (int i = 0; i < 60000; ++i)
            address += QString::number(i * 7919, 36);
        fragment.GetPelVtConnectServer().SetAddress(address);
        large.GetPelLu300RouterMessage().AppendFragment(fragment);
        Limits limits;
        limits.inputSize = 2000;
        const LimitsInScope inScope(limits);
        for (const int piece : {100, 1 << 20}) {
            const Outcome outcome = readInPieces(small + WriteMessage(large, form) + small, piece);
            EXPECT_EQ(numbersIn(outcome), Numbers({1, 1})) << outcome.lines.join(u'\n').toStdString();
            ASSERT_EQ(outcome.errors.size(), 1) << outcome.lines.join(u'\n').toStdString();
            EXPECT_EQ(outcome.errors.first().GetKind(), Failure::InputTooLarge);
            EXPECT_EQ(outcome.errors.first().GetPlace().offset, small.size());
        }
    }
}

TEST(Recording, TakesMessagesOfJustTheLimit)
{
    for (const Form form : allForms) {
        const QByteArray message = inForm(form, 1);
        Limits limits;
        for (const int less : {0, 1}) {
            limits.inputSize = message.trimmed().size() - less;
            const LimitsInScope inScope(limits);
            const Outcome outcome = readAll(message + message);
            EXPECT_EQ(outcome.messages.size(), less == 0 ? 2 : 0) << NameOf(form).toStdString();
            EXPECT_EQ(outcome.errors.isEmpty(), less == 0) << NameOf(form).toStdString();
        }
    }
}

TEST(Recording, WithALimitThatAdmitsNothingHasOnlyErrors)
{
    Limits limits;
    limits.inputSize = -1;
    const LimitsInScope inScope(limits);
    for (const Form form : allForms) {
        const Outcome outcome = readAll(inForm(form, 1) + inForm(form, 2));
        EXPECT_TRUE(outcome.messages.isEmpty());
        EXPECT_FALSE(outcome.errors.isEmpty());
    }
}

// --- writing ------------------------------------------------------------------------------------

TEST(Recording, IsWrittenMessageByMessage)
{
    QBuffer buffer;
    ASSERT_TRUE(buffer.open(QIODevice::WriteOnly));
    PelLu300RouterInterfaceXml document = numbered(1);
    QByteArray expected;
    for (const Form form : allForms) {
        AppendMessage(buffer, document, form);
        expected += WriteMessage(document, form);
    }
    EXPECT_EQ(buffer.data(), expected);
    EXPECT_EQ(numbersIn(readAll(expected)), Numbers({1, 1, 1, 1, 1}));
}

TEST(Recording, HasALineBreakBehindEveryText)
{
    for (const Form form : {Form::Xml, Form::Json, Form::JsonLines}) {
        const QByteArray message = inForm(form, 1);
        EXPECT_TRUE(message.endsWith('\n'));
        EXPECT_FALSE(message.endsWith("\n\n"));
    }
    EXPECT_EQ(inForm(Form::JsonLines, 7).count('\n'), 1);
    EXPECT_EQ(inForm(Form::Binary, 1), numbered(1).GetBinaryRepresentationAsQByteArray());
}

TEST(Recording, TellsWhyAMessageIsNotWritten)
{
    QFile full(QStringLiteral("/dev/full"));
    ASSERT_TRUE(full.open(QIODevice::WriteOnly));
    PelLu300RouterInterfaceXml document = numbered(1);
    try {
        AppendMessage(full, document, Form::Xml);
        ADD_FAILURE();
    } catch (const DocumentError& error) {
        EXPECT_EQ(error.GetKind(), Failure::InputOutput);
        EXPECT_EQ(error.GetText(), "The message cannot be written: No space left on device.");
    }
}
