// SPDX-License-Identifier: MIT
// What people are told about bytes that are no document, and about documents that reading breaks off.
#include "TestSupport.h"

#include "documents/Document.h"
#include "documents/DocumentError.h"
#include "documents/UnknownForm.h"

#include <QtCore/QStringList>

using namespace ROUTERDOCUMENTS;
using MODELKIT::Failure;

namespace {

DocumentError refusalOf(const QByteArray& bytes)
{
    try {
        ReadDocument(bytes);
    } catch (const DocumentError& error) {
        return error;
    }
    return DocumentError(Failure());
}

QByteArray bytesOf(const char* hex) { return QByteArray::fromHex(hex); }

QString reasonFor(const char* hex) { return WhyNoForm(bytesOf(hex)); }

QString compressedBy(const QString& program)
{
    return QStringLiteral(
               "The input is compressed with %1. Decompress it first: the compressed form of documents is "
               "another one.")
        .arg(program);
}

QString neither(const QString& beginning)
{
    return QStringLiteral("The input is neither XML nor JSON nor a binary form; it begins with %1.")
        .arg(beginning);
}

} // namespace

TEST(DocumentContentTest, SaysNothingAboutWhatBeginsLikeAForm)
{
    for (const char* hex :
         {"8553499A", "8553499A00000010", "4D4B5A31", "0000000100000000", "3C", "3C0061", "003C0061",
          "0000003C", "FEFF003C", "FFFE3C00", "EFBBBF3C", "200A3C", "3C01", "7B", "0A5B", "EFBBBF7B"})
        EXPECT_EQ(reasonFor(hex), QString()) << hex;
}

TEST(DocumentContentTest, NamesEmptyInputs)
{
    EXPECT_EQ(WhyNoForm(QByteArray()), QStringLiteral("The input is empty."));
    EXPECT_EQ(WhyNoForm(" \r\n\t"), QStringLiteral("The input holds nothing but white space."));
}

TEST(DocumentContentTest, NamesOtherCompressions)
{
    EXPECT_EQ(reasonFor("1F8B0800"), compressedBy(QStringLiteral("gzip")));
    EXPECT_EQ(reasonFor("28B52FFD00"), compressedBy(QStringLiteral("zstd")));
    EXPECT_EQ(reasonFor("504B0304"), compressedBy(QStringLiteral("zip")));
    EXPECT_EQ(reasonFor("425A6839314159265359"), compressedBy(QStringLiteral("bzip2")));
    EXPECT_EQ(reasonFor("FD377A585A00"), compressedBy(QStringLiteral("xz")));
    EXPECT_EQ(reasonFor("04224D18"), compressedBy(QStringLiteral("lz4")));
    EXPECT_EQ(reasonFor("377ABCAF271C"), compressedBy(QStringLiteral("7-Zip")));
    EXPECT_EQ(WhyNoForm("BZh"), neither(QStringLiteral("\"BZh\"")));
}

TEST(DocumentContentTest, NamesTheOtherByteOrder)
{
    const QString swapped =
        QStringLiteral("The input is a binary form in little-endian byte order, expected is big-endian.");
    for (const auto* info : PELLU300ROUTERINTERFACEXML::RecordInfo::All()) {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream.setByteOrder(QDataStream::LittleEndian);
        stream << info->GetFrameId() << 0x12345678;
        EXPECT_EQ(WhyNoForm(bytes), swapped) << info->GetName().toStdString();
    }
    EXPECT_EQ(reasonFor("315A4B4D"), swapped);
}

TEST(DocumentContentTest, NamesJsonInWideCharacters)
{
    for (const char* hex :
         {"7B002200", "007B0022", "FFFE7B00", "FEFF007B", "FFFE00007B000000", "0000FEFF0000007B"})
        EXPECT_EQ(reasonFor(hex), QStringLiteral("The input is JSON in UTF-16 or UTF-32, expected is UTF-8."))
            << hex;
}

TEST(DocumentContentTest, ShowsHowOtherInputsBegin)
{
    EXPECT_EQ(WhyNoForm("Hello \"you\""), neither(QStringLiteral("\"Hello \\\"you\\\"\"")));
    EXPECT_EQ(WhyNoForm(QByteArray(41, 'x')),
              neither(QStringLiteral("\"%1...\"").arg(QString(40, QLatin1Char('x')))));
    // A character is cut off after 40 bytes.
    EXPECT_EQ(WhyNoForm('x' + QByteArray("\xC3\xA4").repeated(30)),
              neither(QStringLiteral("\"x%1...\"").arg(QString(19, QChar(0xE4)))));
    EXPECT_EQ(reasonFor("7F454C4602010100FF"), neither(QStringLiteral("the bytes 7F 45 4C 46 02 01 01 00")));
    EXPECT_EQ(reasonFor("FF"), neither(QStringLiteral("the bytes FF")));
}

TEST(DocumentContentTest, ReadingSaysSoIfNoFormIsGiven)
{
    EXPECT_EQ(refusalOf("Hello").GetText(), neither(QStringLiteral("\"Hello\"")));
    EXPECT_EQ(refusalOf("Hello").GetKind(), Failure::NotWellFormed);
    EXPECT_EQ(refusalOf(bytesOf("1F8B0800")).GetKind(), Failure::NotABinaryForm);
    try {
        ReadDocument("Hello", {Form::Json});
        FAIL();
    } catch (const DocumentError& error) {
        EXPECT_TRUE(error.GetText().startsWith(QStringLiteral("This is no JSON"))) << error.what();
    }
}

TEST(DocumentContentTest, AWrongRootNamesTheClosestRecord)
{
    EXPECT_TRUE(refusalOf("<PelLu300RouterInterfaceXmll/>")
                    .GetText()
                    .endsWith(QStringLiteral(" Did you mean PelLu300RouterInterfaceXml?")));
    EXPECT_TRUE(refusalOf("<dF_Param/>").GetText().endsWith(QStringLiteral(" Did you mean DF_Params?")));
    EXPECT_FALSE(refusalOf("<html/>").GetText().contains(QStringLiteral("Did you mean")));
}

TEST(DocumentContentTest, AControlCharacterInXmlHasItsPlace)
{
    const DocumentError error = refusalOf("<DF_Params>\r\n<Frequency>\xC3\xA4\x01</Frequency></DF_Params>");
    EXPECT_EQ(error.GetText(), QStringLiteral("The control character U+0001 is not allowed in XML."));
    EXPECT_EQ(error.GetPlace().line, 2);
    EXPECT_EQ(error.GetPlace().column, 13);
    // Something else is wrong in front of it.
    EXPECT_FALSE(refusalOf("<DF_Params>\n</a>\n\x01").GetText().contains(QStringLiteral("control")));
    EXPECT_EQ(FormOfContent(" <\x01>"), Form::Xml);
}

TEST(DocumentContentTest, ErrorsAboutThePartsOfABinaryFormAreKnown)
{
    // The length of the entry is wrong, the form is cut off, and a piece cannot be inflated.
    for (const char* hex : {"7F012EB8000000101F980517000000090000000000001388", "8553499A000000109B1A7AD8",
                            "4D4B5A310000000C000000080000000400000000"})
        EXPECT_TRUE(refusalOf(bytesOf(hex)).IsAboutParts()) << hex;
    EXPECT_FALSE(refusalOf(bytesOf("0000000100000000")).IsAboutParts());
    EXPECT_FALSE(refusalOf("<DF_Params>").IsAboutParts());
    EXPECT_FALSE(refusalOf("").IsAboutParts());
}
