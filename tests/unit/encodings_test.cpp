// SPDX-License-Identifier: MIT
// Documents in every encoding: which are read or refused, the places of errors, and that no encoding hides
// anything from the limits.

#include "DocumentParts.h"
#include "TestSupport.h"

#include "modelkit/ReadingReport.h"

#include <QtCore/QBuffer>
#include <QtCore/QtEndian>

#include <string>
#include <vector>

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::IMKObject;
using MODELKIT::ReadingReport;

namespace {

// An encoding: its name in the declaration, some characters, beyond ASCII if it has any, and their bytes.
struct Sample
{
    const char* name;
    const char* characters;
    const char* encoded;
};

// In two of them, the second byte of a character can be the ASCII code of markup.
constexpr Sample extendingAscii[] = {
    {"UTF-8", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"},
    {"utf-8", "\xC3\xA4", "\xC3\xA4"},
    {"UTF8", "\xC3\xA4\xF0\x9F\x98\x80", "\xC3\xA4\xF0\x9F\x98\x80"},
    {"US-ASCII", "a", "a"},
    {"ISO-8859-1", "\xC3\xA4\xC3\xB6", "\xE4\xF6"},
    {"latin1", "\xC3\xA4", "\xE4"},
    {"ISO-8859-2", "\xC5\x82", "\xB3"},
    {"ISO-8859-5", "\xD0\x96", "\xB6"},
    {"ISO-8859-15", "\xE2\x82\xAC", "\xA4"},
    {"windows-1250", "\xC5\x82", "\xB3"},
    {"windows-1251", "\xD0\x96", "\xC6"},
    {"windows-1252", "\xE2\x82\xAC", "\x80"},
    {"KOI8-R", "\xD0\x96", "\xF6"},
    {"KOI8-U", "\xD0\x84", "\xB4"},
    {"IBM850", "\xC3\xA4", "\x84"},
    {"EUC-JP", "\xE6\x97\xA5", "\xC6\xFC"},
    {"EUC-KR", "\xEA\xB0\x80", "\xB0\xA1"},
    {"Shift_JIS", "\xE8\xA1\xA8\xEF\xBD\xB1", "\x95\x5C\xB1"},
    {"GB18030", "\xE4\xB8\xAD\xF0\x9F\x98\x80", "\xD6\xD0\x94\x39\xFC\x36"},
    {"GBK", "\xE4\xB8\xAD", "\xD6\xD0"},
    {"Big5", "\xE5\x8A\x9F", "\xA5\x5C"},
};

// A document as text and as bytes.
struct Encoded
{
    std::string title;
    QString string;
    QByteArray bytes;
};

QString declaration(const QString& encoding)
{
    return text("<?xml version=\"1.0\" encoding=\"%1\"?>").arg(encoding);
}

// The same document in all encodings: a declaration and the body, in which %1 stands for the characters of
// the encoding. Encodings that Qt does not know are left out, but those that both Qt versions know must be
// there.
std::vector<Encoded> inAllEncodings(const QString& body)
{
    std::vector<Encoded> all;
    for (const Sample& sample : extendingAscii) {
        const QString string = declaration(text(sample.name)) + body;
        QByteArray encoded = string.toLatin1();
        encoded.replace("%1", sample.encoded);
        all.push_back({sample.name, QString(string).replace(text("%1"), text(sample.characters)), encoded});
    }
    const QString beyond = QString(body).replace(text("%1"), text("\xC3\xA4\xE6\x97\xA5\xF0\x9F\x98\x80"));
    all.push_back({"UTF-8 without a declaration", beyond, beyond.toUtf8()});
    all.push_back({"UTF-8 with a mark", beyond, "\xEF\xBB\xBF" + beyond.toUtf8()});
    const QString lying = declaration(text("ISO-8859-1")) + beyond;
    all.push_back(
        {"UTF-8 with a mark that is declared as ISO-8859-1", lying, "\xEF\xBB\xBF" + lying.toUtf8()});
    const QString mentioning = text("<?style encoding='EUC-JP'?>") + beyond;
    all.push_back({"UTF-8 that mentions an encoding", mentioning, mentioning.toUtf8()});
    for (const ByteOrder order : {ByteOrder::Little, ByteOrder::Big}) {
        for (const Mark mark : {Mark::Without, Mark::With}) {
            for (const char* const declared : {"", "UTF-16", "UTF-8", "ISO-8859-1"}) {
                const QString string = *declared ? declaration(text(declared)) + beyond : beyond;
                const std::string title = std::string(order == ByteOrder::Big ? "big" : "little")
                                          + (mark == Mark::With ? " marked " : " ") + declared;
                all.push_back({"UTF-16 " + title, string, utf16(string, order, mark)});
                all.push_back({"UTF-32 " + title, string, utf32(string, order, mark)});
            }
        }
    }
    return all;
}

// Line and column of the index, counted independently of the library.
QString placeOf(const QString& string, int index)
{
    int line = 1;
    int begin = 0;
    for (int i = 0; i < index; ++i) {
        const bool isLineFeed = string.at(i) == QLatin1Char('\n');
        if (isLineFeed && i > 0 && string.at(i - 1) == QLatin1Char('\r')) {
            begin = i + 1;
        } else if (isLineFeed || string.at(i) == QLatin1Char('\r')) {
            ++line;
            begin = i + 1;
        }
    }
    return QString::number(line) + QLatin1Char(':') + QString::number(index - begin + 1);
}

int indexOf(const QString& string, const char* what)
{
    const auto index = string.indexOf(text(what));
    EXPECT_GE(index, 0) << what;
    return static_cast<int>(index);
}

// Reads bytes in every way.
bool readInto(PelLu300RouterInterfaceXml& document, const QByteArray& bytes, bool fromDevice)
{
    if (!fromDevice)
        return document.SetXmlBytes(bytes);
    QByteArray copy = bytes;
    QBuffer buffer(&copy);
    return document.LoadXml(&buffer);
}

QByteArray manyAttributes()
{
    QByteArray attributes;
    for (int i = 0; i < 300; ++i)
        attributes += " a" + QByteArray::number(i) + "=''";
    return attributes;
}

} // namespace

TEST(Encodings, AreAllRead)
{
    const QString body =
        text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Event</Type><Fragment>"
             "<PelVtConnectServer><Address>a%1z</Address></PelVtConnectServer></Fragment>"
             "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>");
    for (const Encoded& encoded : inAllEncodings(body)) {
        for (const bool fromDevice : {false, true}) {
            SCOPED_TRACE(encoded.title);
            PelLu300RouterInterfaceXml document;
            ASSERT_TRUE(readInto(document, encoded.bytes, fromDevice))
                << IMKObject::GetLastFailure().GetSentence().toStdString();
            Fragment fragment = document.GetPelLu300RouterMessage().GetFragment().at(0);
            const int begin = indexOf(encoded.string, "<Address>") + 9;
            const int end = indexOf(encoded.string, "</Address>");
            EXPECT_EQ(fragment.GetPelVtConnectServer().GetAddress(), encoded.string.mid(begin, end - begin));
        }
    }
}

TEST(Encodings, HaveRightPlacesWithEveryLineEnd)
{
    for (const char* const lineEnd : {"\n", "\r\n", "\r"}) {
        const QString body =
            QString(text("\n<!--%1-->\n\n<PelLu300RouterInterfaceXml>\n\t<!--%1\n%1-->\t<x/>\n"
                         "<PelLu300RouterMessage>%1<y/></PelLu300RouterMessage>\n"
                         "</PelLu300RouterInterfaceXml>"))
                .replace(text("\n"), text(lineEnd));
        for (const Encoded& encoded : inAllEncodings(body)) {
            SCOPED_TRACE(encoded.title + " " + std::to_string(static_cast<int>(lineEnd[0])));
            PelLu300RouterInterfaceXml document;
            ReadingReport report;
            ASSERT_TRUE(document.SetXmlBytes(encoded.bytes));
            QStringList places;
            for (const ReadingReport::Entry& entry : report.GetEntries())
                if (entry.kind == ReadingReport::UnknownElement)
                    places += entry.place.ToString();
            EXPECT_EQ(places.join(QLatin1Char(' ')),
                      placeOf(encoded.string, indexOf(encoded.string, "<x/>")) + QLatin1Char(' ')
                          + placeOf(encoded.string, indexOf(encoded.string, "<y/>")));
        }
    }
}

TEST(Encodings, HaveRightPlacesOfErrors)
{
    const QString body =
        text("\n<PelLu300RouterInterfaceXml>\n<!--%1-->\t<a></b></PelLu300RouterInterfaceXml>");
    for (const Encoded& encoded : inAllEncodings(body)) {
        SCOPED_TRACE(encoded.title);
        PelLu300RouterInterfaceXml document;
        EXPECT_FALSE(document.SetXmlBytes(encoded.bytes));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
        // The reader stops behind the tag.
        const int behind = indexOf(encoded.string, "</b>") + 3;
        EXPECT_EQ(IMKObject::GetLastFailure().place.ToString(), placeOf(encoded.string, behind));
    }
}

TEST(Encodings, HideNothingFromTheLimits)
{
    const QString attributes = text("\n<PelLu300RouterInterfaceXml>%1\r<x")
                               + QString::fromLatin1(manyAttributes())
                               + text("/></PelLu300RouterInterfaceXml>");
    const QString doctype = text("\n<!--%1--> <!DOCTYPE x []><PelLu300RouterInterfaceXml/>");
    for (const Encoded& encoded : inAllEncodings(attributes)) {
        SCOPED_TRACE(encoded.title);
        PelLu300RouterInterfaceXml document;
        EXPECT_FALSE(document.SetXmlBytes(encoded.bytes));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::TooManyAttributes);
        EXPECT_EQ(IMKObject::GetLastFailure().place.ToString(),
                  placeOf(encoded.string, indexOf(encoded.string, "<x")));
        EXPECT_FALSE(document.IsInitialized());
    }
    for (const Encoded& encoded : inAllEncodings(doctype)) {
        SCOPED_TRACE(encoded.title);
        PelLu300RouterInterfaceXml document;
        EXPECT_FALSE(document.SetXmlBytes(encoded.bytes));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::DoctypeRefused);
        EXPECT_EQ(IMKObject::GetLastFailure().place.ToString(),
                  placeOf(encoded.string, indexOf(encoded.string, "<!DOCTYPE")));
    }
}

TEST(Encodings, ThatKeepAStateOrAreUnknownAreRefusedAtTheDeclaration)
{
    for (const char* const name :
         {"ISO-2022-JP", "ISO-2022-KR", "HZ-GB-2312", "UTF-7", "SCSU", "BOCU-1", "IBM037", "IBM500",
          "klingon", "UTF-16", "UTF-16LE", "UTF-32", "ISO-10646-UCS-2"}) {
        SCOPED_TRACE(name);
        const QByteArray bytes = declaration(text(name)).toLatin1()
                                 + "\n<PelLu300RouterInterfaceXml></PelLu300RouterInterfaceXml>";
        PelLu300RouterInterfaceXml document;
        EXPECT_FALSE(document.SetXmlBytes(bytes));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::EncodingRefused);
        EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(),
                  text("1:1: The encoding %1 is not accepted.").arg(text(name)));
        EXPECT_FALSE(document.IsInitialized());
    }
}

TEST(Encodings, WithUnusuallyWrittenDeclarationsAreRecognised)
{
    const QByteArray rest = "<PelLu300RouterInterfaceXml><!--\xE4--></PelLu300RouterInterfaceXml>";
    for (const char* const odd : {"<?xml version='1.0' encoding='ISO-8859-1'?>",
                                  "<?xml\tversion = '1.0'\r\n encoding =\t\"ISO-8859-1\" standalone='yes' ?>",
                                  "<?xml version=\"1.0\"\nencoding\n=\n'iso8859-1'\n?>"}) {
        SCOPED_TRACE(odd);
        PelLu300RouterInterfaceXml document;
        EXPECT_TRUE(document.SetXmlBytes(odd + rest))
            << IMKObject::GetLastFailure().GetSentence().toStdString();
    }
    // None of these is a declaration of an encoding.
    for (const char* const none :
         {"", "<?xml version='1.0'?>", "<?xmlencoding='ISO-8859-1'?>",
          "<?xml version='1.0' standalone='encoding'?>", " <?xml version='1.0' encoding='ISO-8859-1'?>"}) {
        SCOPED_TRACE(none);
        PelLu300RouterInterfaceXml document;
        EXPECT_FALSE(document.SetXmlBytes(none + rest));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
    }
}

TEST(Encodings, WithBrokenDeclarationsAreLeftToTheReader)
{
    for (const char* const broken :
         {"<?xml version='1.0' encoding='ISO-2022-JP?>", "<?xml version='1.0' encoding=ISO-2022-JP?>",
          "<?xml version='1.0' encoding='", "<?xml version='1.0' encoding", "<?xml ",
          "<?xml version='1.0' encoding=''?>", "<?xml version='1.0' encoding='2'?>",
          "<?xml version='1.0' encoding='a b'?>"}) {
        SCOPED_TRACE(broken);
        PelLu300RouterInterfaceXml document;
        EXPECT_FALSE(document.SetXmlBytes(QByteArray(broken) + "<PelLu300RouterInterfaceXml/>"));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
    }
}

TEST(Encodings, WithInvalidBytesAreRefusedWhereTheyStop)
{
    const auto expectMalformed = [](const QByteArray& bytes, const char* place) {
        PelLu300RouterInterfaceXml document;
        EXPECT_FALSE(document.SetXmlBytes(bytes));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
        EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(),
                  text("%1: Encountered incorrectly encoded content. (in /PelLu300RouterInterfaceXml)")
                      .arg(text(place)));
        EXPECT_FALSE(document.IsInitialized());
    };
    const QByteArray head = "<PelLu300RouterInterfaceXml>\r\n<!--\xC3\xA4";
    const QByteArray tail = "--></PelLu300RouterInterfaceXml>";
    for (const QByteArray& wrong :
         {QByteArray("\xFF"), QByteArray("\x80"), QByteArray("\xC0\x80"), QByteArray("\xC1\xBF"),
          QByteArray("\xE0\x9F\xBF"), QByteArray("\xED\xA0\x80"), QByteArray("\xF0\x8F\xBF\xBF"),
          QByteArray("\xF4\x90\x80\x80"), QByteArray("\xF5\x80\x80\x80"), QByteArray("\xE2\x82"),
          QByteArray("\xC3"), QByteArray("\xF0\x9F\x98"), QByteArray("\xE2\x82-"),
          QByteArray("\xF0\x9F\x98-")}) {
        SCOPED_TRACE(wrong.toHex().toStdString());
        expectMalformed(head + wrong + tail, "2:6");
        expectMalformed(head + wrong, "2:6");
    }
    expectMalformed(
        "<?xml version='1.0' encoding='US-ASCII'?>\n<PelLu300RouterInterfaceXml>\xE4" + tail.mid(3), "2:29");
    expectMalformed(
        "<?xml version='1.0' encoding='Shift_JIS'?>\n<PelLu300RouterInterfaceXml>\xFF" + tail.mid(3), "2:29");
    expectMalformed(
        "<?xml version='1.0' encoding='EUC-JP'?>\n<PelLu300RouterInterfaceXml>\xC6<" + tail.mid(4), "2:29");
    for (const char* const name : {"EUC-JP", "EUC-KR", "Big5", "GBK", "GB18030"}) {
        SCOPED_TRACE(name);
        PelLu300RouterInterfaceXml document;
        // A character that is cut off behind the end of the document.
        const QByteArray whole = declaration(text(name)).toLatin1() + "\n<PelLu300RouterInterfaceXml/>";
        EXPECT_TRUE(document.SetXmlBytes(whole));
        EXPECT_FALSE(document.SetXmlBytes(whole + '\xC6'));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
        EXPECT_EQ(IMKObject::GetLastFailure().place.ToString(), text("2:30"));
    }
    for (const ByteOrder order : {ByteOrder::Little, ByteOrder::Big}) {
        const QString string = text("<PelLu300RouterInterfaceXml>\n\xF0\x9F\x98\x80");
        const QString half = string + QChar(0xDC00) + text("</PelLu300RouterInterfaceXml>");
        expectMalformed(utf16(half, order, Mark::With), "2:3");
        expectMalformed(utf16(string, order, Mark::With) + 'a', "2:3");
        expectMalformed(utf32(string, order, Mark::With) + QByteArray(4, '\xFF'), "2:3");
        expectMalformed(utf32(string, order, Mark::Without) + "ab", "2:3");
        expectMalformed(
            utf32(string, order, Mark::Without)
                + (order == ByteOrder::Big ? QByteArray("\0\0\xD8\0", 4) : QByteArray("\0\xD8\0\0", 4)),
            "2:3");
    }
}

TEST(Encodings, OfAStringDoNotMatterButMustBeKnown)
{
    for (const char* const name : {"UTF-8", "UTF-16", "ISO-8859-1", "EUC-JP", "ISO-2022-JP", "IBM037"}) {
        SCOPED_TRACE(name);
        PelLu300RouterInterfaceXml document;
        const QString xml = declaration(text(name)) + text("<PelLu300RouterInterfaceXml><!--\xC3\xA4-->")
                            + text("<PelLu300RouterMessage/></PelLu300RouterInterfaceXml>");
        EXPECT_TRUE(document.SetXmlString(xml, false));
        EXPECT_TRUE(document.IsPelLu300RouterMessageSet());
    }
    PelLu300RouterInterfaceXml document;
    EXPECT_FALSE(
        document.SetXmlString(declaration(text("klingon")) + text("<PelLu300RouterInterfaceXml/>"), false));
    EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(), text("1:1: The encoding klingon is not accepted."));
}

TEST(Encodings, OfAStringThatBeginsWithAByteOrderMarkIgnoreIt)
{
    PelLu300RouterInterfaceXml document;
    ReadingReport report;
    EXPECT_TRUE(document.SetXmlString(
        QChar(0xFEFF) + text("<PelLu300RouterInterfaceXml><x/></PelLu300RouterInterfaceXml>"), false));
    ASSERT_EQ(report.GetEntries().size(), 1);
    EXPECT_EQ(report.GetEntries().at(0).place.ToString(), text("1:29"));
}

TEST(Encodings, WithTwoByteOrderMarksAreNotWellFormed)
{
    PelLu300RouterInterfaceXml document;
    const QString xml = QString(2, QChar(0xFEFF)) + text("<PelLu300RouterInterfaceXml/>");
    EXPECT_FALSE(document.SetXmlString(xml, false));
    EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(),
              text("1:1: Encountered incorrectly encoded content."));
    EXPECT_FALSE(document.SetXmlBytes(xml.toUtf8()));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
    EXPECT_FALSE(document.SetXmlBytes(utf16(xml, ByteOrder::Big, Mark::Without)));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
}

TEST(Encodings, OfDocumentsThatAreCutOffHaveTheRightLine)
{
    for (const char* const lineEnd : {"\n", "\r\n", "\r"}) {
        PelLu300RouterInterfaceXml document;
        EXPECT_FALSE(document.SetXmlString(
            text("<?xml version='1.0'?>%1<PelLu300RouterInterfaceXml>%1").arg(text(lineEnd)), false));
        EXPECT_EQ(IMKObject::GetLastFailure().place.ToString(), text("3:1"));
    }
}

TEST(Encodings, OfAStringWithHalfASurrogatePairAreRefusedWhereItIs)
{
    PelLu300RouterInterfaceXml document;
    for (const int half : {0xD800, 0xDBFF, 0xDC00, 0xDFFF}) {
        const QString xml = text("<PelLu300RouterInterfaceXml>\n<!-- ") + QChar(half)
                            + text("--></PelLu300RouterInterfaceXml>");
        EXPECT_FALSE(document.SetXmlString(xml, false));
        EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(),
                  text("2:6: Encountered incorrectly encoded content. (in /PelLu300RouterInterfaceXml)"));
    }
}

TEST(Encodings, ThatChangeBehindTheDeclarationAreNotFollowed)
{
    // The declaration in ASCII, and then text in which every other byte is zero.
    const QByteArray bytes =
        "<?xml version='1.0' encoding='UTF-16'?>"
        + utf16(text("<!DOCTYPE x><PelLu300RouterInterfaceXml/>"), ByteOrder::Little, Mark::Without);
    PelLu300RouterInterfaceXml document;
    EXPECT_FALSE(document.SetXmlBytes(bytes));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::EncodingRefused);
    // The byte order changes behind the declaration.
    const QByteArray turned = utf16(declaration(text("UTF-16BE")), ByteOrder::Little, Mark::With)
                              + utf16(text("<PelLu300RouterInterfaceXml/>"), ByteOrder::Big, Mark::Without);
    EXPECT_FALSE(document.SetXmlBytes(turned));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
    EXPECT_FALSE(document.IsInitialized());
}
