// SPDX-License-Identifier: MIT
// Texts in recordings that are broken, or cut off by the end: given as messages, so that their reader tells
// what is wrong.
#include "RecordingSupport.h"

#include "documents/DocumentCheck.h"

using namespace recording_support;

namespace {

using Numbers = QVector<unsigned int>;

// What is wrong with the last message, with the places in the recording.
QStringList errorsOfLast(const QByteArray& recording)
{
    const Outcome outcome = readAll(recording);
    EXPECT_TRUE(outcome.errors.isEmpty()) << outcome.lines.join(u'\n').toStdString();
    EXPECT_EQ(outcome.messages.size(), 2);
    QStringList errors;
    if (outcome.messages.isEmpty())
        return errors;
    const RecordedMessage& last = outcome.messages.last();
    for (const DocumentError& error : CheckDocument(last.bytes, {last.form}).errors) {
        const MODELKIT::Place place = last.PlaceInRecording(error);
        errors += QStringLiteral("#%1 %2:%3 %4")
                      .arg(QString::number(last.number), QString::number(place.line),
                           QString::number(place.column), error.GetText());
    }
    return errors;
}

} // namespace

TEST(BrokenText, GivesBrokenJsonOnOneLineAsAMessage)
{
    const QByteArray good = inForm(Form::JsonLines, 1);
    for (const QByteArray& bad :
         QVector<QByteArray>{"{\"a\": \"b}", "{\"a\": [1}", "{\"a\": {\"b\": 1}", "{\"a\": \"b\",",
                             "{\"a\": 1]", "{\"a\": \"tab\there\"}", "{\"a\": \x80}"})
        for (const auto& form : {std::optional<Form>(), std::optional<Form>(Form::JsonLines)})
            for (const int piece : {1, 7, 1000}) {
                const Outcome outcome = readInPieces(good + bad + " \n" + good + bad + "\n", piece, {form});
                ASSERT_EQ(outcome.messages.size(), 4)
                    << bad.constData() << outcome.lines.join(u'\n').toStdString();
                EXPECT_EQ(numbersIn(outcome), Numbers({1, 0, 1, 0})) << bad.constData();
                EXPECT_TRUE(outcome.errors.isEmpty()) << bad.constData();
                EXPECT_EQ(outcome.messages.at(1).bytes, bad);
                EXPECT_EQ(outcome.messages.at(1).offset, good.size());
                EXPECT_EQ(outcome.messages.at(1).line, 2);
            }
}

TEST(BrokenText, TellsHowMuchBrokenJsonOnSeveralLinesIsPassedOver)
{
    const QByteArray good = inForm(Form::JsonLines, 1);
    const QByteArray bad = "{\"a\":\n \"b}\n";
    for (const int piece : {1, 7, 1000}) {
        const Outcome outcome = readInPieces(good + bad + "?\n" + good, piece);
        EXPECT_EQ(
            outcome.lines,
            QStringList(
                {"json 0:1",
                 QStringLiteral("! %1:2 This is no JSON value; 13 bytes are passed over.").arg(good.size()),
                 QStringLiteral("json %1:5").arg(good.size() + 13)}));
        // At the end nothing else can follow; but every JSON line ends on its line.
        const Outcome last = readInPieces(good + bad + "?\n", piece);
        EXPECT_EQ(last.lines, QStringList({"json 0:1", QStringLiteral("json %1:2").arg(good.size())}));
        EXPECT_EQ(last.messages.last().bytes, bad + '?');
        const Outcome lines = readInPieces(good + bad, piece, {Form::JsonLines});
        EXPECT_EQ(lines.lines,
                  QStringList(
                      {"jsonl 0:1", QStringLiteral("! %1:2 This is no JSON value; 11 bytes are passed over.")
                                        .arg(good.size())}));
    }
}

TEST(BrokenText, GivesJsonWithRawControlCharactersAsAMessage)
{
    EXPECT_EQ(errorsOfLast("<DF_Params/>{\"DF_Params\": {}}\n"), QStringList());
    const QByteArray begin = "<DF_Params/>\n{\"PelVtConnectServer\": {\"Address\": \"a";
    EXPECT_EQ(errorsOfLast(begin + "\x05\"}}"),
              QStringList("#2 2:38 This is no JSON: a control character in a string must be an escape."));
}

TEST(BrokenText, GivesATextThatTheEndCutsOffAsAMessage)
{
    EXPECT_EQ(readAll("\n<DF_Params>").lines, QStringList("xml 1:2"));
    EXPECT_EQ(readAll("\n{\"DF_Params\"").lines, QStringList("json 1:2"));
    EXPECT_EQ(readAll("\n<!-- note --").lines,
              QStringList("! 1:2 The comment or processing instruction is cut off."));

    const QByteArray good = "<DF_Params/>\n\n";
    EXPECT_EQ(
        errorsOfLast(good + "<MastershipState><State>Bad</State><MasterClientID>a"),
        QStringList({"#2 3:18 enum is not valid (classname=MastershipState,membername=m_state): \"Bad\". "
                     "Possible are NoMasterPresent, MasterPresent and RouterIsMaster.",
                     "#2 3:52 Premature end of document."}));
    const QString bad = "#2 3:31 \"Bad\" is none of NoMasterPresent, MasterPresent and RouterIsMaster.";
    EXPECT_EQ(errorsOfLast(good + "{\"MastershipState\": {\"State\": \"Bad\", \"MasterClientID\": \"a\""),
              QStringList({bad, "#2 3:59 This is no JSON: an object goes on with a comma or }; here the text "
                                "ends."}));
    EXPECT_EQ(errorsOfLast(good + "{\"MastershipState\": {\"State\": \"Bad\", \"MasterClientID\": \"a\n"),
              QStringList({bad, "#2 3:58 This is no JSON: a string has no end; here the text ends."}));
}

TEST(BrokenText, GivesAWideTextThatTheEndCutsOffAsAMessage)
{
    const QByteArray good = wide("<DF_Params/>", 2, true);
    for (const QByteArray& part : {QByteArray(), QByteArray(1, '\0')}) {
        const QByteArray cut = wide("<MastershipState><State>Bad</State>", 2, true) + part;
        const Outcome outcome = readAll(good + cut);
        EXPECT_EQ(outcome.lines, QStringList({"xml 0:1", "xml 24:1"}));
        EXPECT_EQ(outcome.messages.last().bytes, cut);
        EXPECT_EQ(outcome.messages.last().column, 13);
    }
}

TEST(BrokenText, RefusesATextAboveTheLimitThatTheEndCutsOff)
{
    Limits limits;
    limits.inputSize = 100;
    const LimitsInScope scope(limits);
    const QByteArray filler(200, 'x');
    for (const QByteArray& begin : QVector<QByteArray>{"<DF_Params>", "{\"a\":\""})
        EXPECT_EQ(readInPieces(begin + filler, 7).lines,
                  QStringList("! 0:1 The message is larger than the limit of 100 bytes."));
    // Broken JSON is not kept either.
    for (const int piece : {7, 1000})
        EXPECT_EQ(readInPieces("{\"a\":]" + filler, piece).lines,
                  QStringList("! 0:1 This is no JSON value; 206 bytes are passed over."));
}

TEST(BrokenText, SaysWhereACommentBeginsThatIsCutOffHoweverLongItIs)
{
    const QByteArray good = inForm(Form::JsonLines, 1);
    for (const char* begin : {"<!-- ", "<?x "})
        for (const int size : {10, 255, 256, 257, 5000})
            for (const int piece : {1, 7, 300, 10000})
                EXPECT_EQ(
                    readInPieces(good + begin + QByteArray(size, '\n'), piece).lines,
                    QStringList({QStringLiteral("json 0:1"),
                                 QStringLiteral("! %1:2 The comment or processing instruction is cut off.")
                                     .arg(good.size())}))
                    << size << ' ' << piece;
}
