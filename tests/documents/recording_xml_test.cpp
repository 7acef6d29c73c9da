// SPDX-License-Identifier: MIT
// XML documents in recordings: where they end, whatever their markup and encoding.
#include "RecordingSupport.h"

#include <QtCore/QtEndian>

using namespace recording_support;

namespace {

// The documents one behind another, delivered in pieces of several sizes, are found again.
void expectFound(const QVector<QByteArray>& documents, const QByteArray& between = "\n")
{
    QByteArray content;
    for (const QByteArray& document : documents)
        content += document + between;
    for (const int piece : {1, 2, 3, 7, 4096}) {
        const Outcome outcome = readInPieces(content, piece);
        EXPECT_TRUE(outcome.errors.isEmpty()) << outcome.lines.join(u'\n').toStdString();
        ASSERT_EQ(outcome.messages.size(), documents.size()) << outcome.lines.join(u'\n').toStdString();
        for (int i = 0; i < documents.size(); ++i)
            EXPECT_EQ(outcome.messages.at(i).bytes, documents.at(i));
    }
}

// A text in units of that size.
QByteArray encoded(const QString& text, int size, bool isBigEndian)
{
    QByteArray result;
    for (const uint code : text.toUcs4())
        for (int i = 0; i < size; ++i)
            result += static_cast<char>(code >> (8 * (isBigEndian ? size - 1 - i : i)));
    return result;
}

QString document(const QString& address)
{
    return QStringLiteral(
               "<?xml version=\"1.0\"?>\n<PelVtConnectServer>\n<Address>%1</Address></PelVtConnectServer>")
        .arg(address);
}

} // namespace

TEST(RecordingOfXml, EndsADocumentBehindItsRootElement)
{
    const QVector<QByteArray> documents = {
        "<DF_Params/>",
        "<DF_Params />",
        "<DF_Params a='1'/>",
        "<a></a >",
        "<a><a/><a></a></a>",
        "<a x=\"/\"><b y='/'>/</b></a>",
        "<a x=\">\" y='>\"/>' z=\"'/>\"><b/></a>",
        "<a><!-- </a> > ' \" -- ]]> ?> --></a>",
        "<a><!----></a>",
        "<a><!---></a>--></a>",
        "<a><![CDATA[</a>]]]]></a>",
        "<a><![CDATA[]]></a>",
        "<a><![CDATA[]]]></a>",
        "<a><![CDATA[ > ' \" <!-- <?x ]> ]] > ]]></a>",
        "<a><?x </a> > ' \" ? > ?></a>",
        "<a><?xml-stylesheet href='</a>'?></a>",
        "<a><?xmlx ?><?XML ?><?x?></a>",
        "<a>' \" > ]]> --> ?></a>",
        "<?xml version='1.0'?><!-- <a> --><?x <a> ?>\n<a></a>",
        "<!DOCTYPE a><a></a>",
        "<?xml version='1.0'?>\n<!DOCTYPE a SYSTEM \"<a>'\" [<!ENTITY b '<a>\"]>'><!-- '<a>]>' --><?x "
        "'\"<a>]> ?>"
        "<!ELEMENT a ANY> %c; ]>\n<!-- <a> -->\n<a></a>",
        "<!DOCTYPE a [<!ATTLIST a b CDATA \">\"><!-->-->]><a></a>",
        "\xEF\xBB\xBF<a></a>",
        "\xEF\xBB\xBF<?xml version='1.0'?><a></a>",
    };
    for (const QByteArray& one : documents)
        expectFound({one, "<b></b>", one});
    expectFound(documents);
    expectFound(documents, "");
}

TEST(RecordingOfXml, PassesOverWhatStandsBetweenDocuments)
{
    const QByteArray between =
        "\n<!-- <a> -- > -->\n<?note <a> ? > ?>\xEF\xBB\xBF \t\r\n<?xml-stylesheet a='b'?>";
    expectFound({"<a></a>", "<?xml version='1.0'?><b/>", "\xEF\xBB\xBF<c/>", "{\"d\":1}"}, between);
}

TEST(RecordingOfXml, TakesEveryWideEncodingWithAndWithoutMark)
{
    // The bytes of some characters look like markup.
    const QString text =
        document(QString::fromUtf8("\xE3\xB0\xBC\xE3\xBE\x80 \xC4\xBC <![CDATA[<\xF0\x9F\x98\x80>]]>"));
    QVector<QByteArray> all;
    for (const int size : {2, 4})
        for (const bool isBigEndian : {true, false}) {
            QString wide = text;
            if (size == 2) {
                QByteArray units;
                for (const QChar unit : text)
                    units +=
                        encoded(QString(QChar(unit.isSurrogate() ? u'x' : unit.unicode())), 2, isBigEndian);
                const QByteArray mark = encoded(QString(QChar(QChar::ByteOrderMark)), 2, isBigEndian);
                all += units;
                all += mark + units;
            } else {
                const QByteArray units = encoded(wide, 4, isBigEndian);
                all += units;
                all += encoded(QString(QChar(QChar::ByteOrderMark)), 4, isBigEndian) + units;
            }
        }
    for (const QByteArray& one : all)
        for (const QByteArray& other : all) {
            expectFound({one, other}, "");
            expectFound({one, "<a></a>", other, "{}", other, inForm(Form::Binary, 1), one}, "");
        }
    for (const QByteArray& one : all)
        EXPECT_NO_THROW(ReadDocument(one));
}

TEST(RecordingOfXml, PassesOverWhiteSpaceInTheEncodingOfTheDocumentBefore)
{
    for (const int size : {2, 4})
        for (const bool isBigEndian : {true, false}) {
            const QByteArray wide = encoded(document(QStringLiteral("a")), size, isBigEndian);
            const QByteArray white = encoded(QStringLiteral("\r\n\t "), size, isBigEndian);
            const QByteArray aside = encoded(QStringLiteral("\n<!-- > --><?x ? > ?>\n"), size, isBigEndian);
            expectFound({wide, wide, wide}, white);
            expectFound({wide, wide, wide}, aside);
            for (const QByteArray& next :
                 {QByteArray("<a></a>"), inForm(Form::Compressed, 1), QByteArray("{}")}) {
                const Outcome outcome = readInPieces(wide + white + next, 1);
                EXPECT_EQ(outcome.messages.size(), 2) << outcome.lines.join(u'\n').toStdString();
                EXPECT_TRUE(outcome.errors.isEmpty());
            }
        }
}

TEST(RecordingOfXml, CountsLinesInEveryEncoding)
{
    for (const int size : {1, 2, 4})
        for (const bool isBigEndian : {true, false}) {
            // In UTF-16 the bytes of these characters look like line breaks.
            const QString text =
                size == 1 ? document(QStringLiteral("a")) : document(QString(QChar(0x0A0A)) + QChar(0x0D20));
            const QByteArray wide = encoded(text, size, isBigEndian);
            const QByteArray white = encoded(QStringLiteral("\r\n\r\n"), size, isBigEndian);
            const Outcome outcome = readInPieces(wide + white + wide + white + "<a/>", 3);
            ASSERT_EQ(outcome.messages.size(), 3);
            EXPECT_EQ(outcome.messages.at(1).line, 5) << size;
            EXPECT_EQ(outcome.messages.at(2).line, 9) << size;
        }
}

TEST(RecordingOfXml, TakesEncodingsThatExtendAscii)
{
    const auto inEncoding = [](const QByteArray& name, const QByteArray& text) {
        return "<?xml version=\"1.0\" encoding='" + name + "'?><PelVtConnectServer><Address>" + text
               + "</Address></PelVtConnectServer>";
    };
    expectFound({inEncoding("ISO-8859-1", "\xE4\xF6\xFC"), inEncoding("windows-1252", "\x80\x99"),
                 inEncoding("UTF-8", "\xC3\xA4"), inEncoding("KOI8-R", "\xC0\xFF"),
                 inEncoding("EUC-JP", "\xC6\xFC\xCB\xDC")});
}

TEST(RecordingOfXml, KnowsTheSecondBytesThatLookLikeBrackets)
{
    // In these encodings the character in the middle ends with the byte of ], so its two followers end
    // nothing.
    const auto inEncoding = [](const QByteArray& name, const QByteArray& character) {
        return "<?xml version=\"1.0\" encoding=\"" + name + "\"?><PelVtConnectServer><Address><![CDATA["
               + character + "]></PelVtConnectServer>]]></Address></PelVtConnectServer>";
    };
    for (const char* const name :
         {"Shift_JIS", "shift-jis", "windows-31J", "GBK", "GB18030", "Big5", "gb2312"})
        expectFound({inEncoding(name, "\x81\x5D"), "<a/>", inEncoding(name, "\x81\x5D\x81\x5D")});
    // Katakana of one byte, in front of an end.
    expectFound({"<?xml version=\"1.0\" encoding=\"Shift_JIS\"?><a><![CDATA[\xB1]]></a>", "<a/>"});
    expectFound({"<?xml version=\"1.0\" encoding=\"GB18030\"?><a><![CDATA[\x81\x30\x81\x30]]></a>", "<a/>"});
    // Here the bytes are characters of their own.
    expectFound({"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a><![CDATA[\x81]]></a>", "<a/>"});
    expectFound(
        {"\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"GBK\"?><a><![CDATA[\xC3\xA4\xC3]]></a>", "<a/>"});
}

TEST(RecordingOfXml, KeepsAMarkThatTellsTheEncoding)
{
    const QByteArray xml =
        "\xEF\xBB\xBF<?xml version='1.0' encoding='ISO-8859-1'?><PelVtConnectServer><Address>"
        "\xC3\xA4</Address></PelVtConnectServer>";
    const Outcome outcome = readAll("\n" + xml + "\n" + xml);
    ASSERT_EQ(outcome.messages.size(), 2);
    for (const RecordedMessage& message : outcome.messages) {
        const Document read = ReadDocument(message.bytes);
        EXPECT_EQ(dynamic_cast<PelVtConnectServer&>(*read.record).GetAddress(), QString(QChar(0xE4)));
    }
}

TEST(RecordingOfXml, GivesDocumentsThatAreNotWellFormedToTheirEnd)
{
    for (const char* const bad : {"<a><b></a></b>", "<a b='<c></a>", "<a <b></b></a>", "<a></b>",
                                  "<a>\x01</a>", "<a>&b;</a>", "<a b=c></a>"}) {
        const Outcome outcome = readAll(QByteArray(bad) + inForm(Form::Xml, 1) + inForm(Form::Binary, 2));
        ASSERT_EQ(outcome.messages.size(), 3) << bad << outcome.lines.join(u'\n').toStdString();
        EXPECT_TRUE(outcome.errors.isEmpty());
        EXPECT_EQ(outcome.messages.first().bytes, bad);
        EXPECT_EQ(numbersIn(outcome), QVector<unsigned int>({0, 1, 2}));
    }
}

TEST(RecordingOfXml, TakesAZeroInADocumentForDamageOnly)
{
    const QByteArray damaged = QByteArray("<a>\0\0\0\0\0\0\0\0</a>", 15);
    expectFound({damaged, "<a/>", damaged});
}
