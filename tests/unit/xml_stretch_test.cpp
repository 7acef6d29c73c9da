// SPDX-License-Identifier: MIT
// A payload inside a fragment is passed to the stream writer in one piece where that gives the same bytes. A
// payload alone is written in single calls; the tests compare the two.

#include "TestSupport.h"

#include <QtCore/QBuffer>

using namespace testing_support;

namespace {

PelVtConnectServer serverAt(const QString& address)
{
    PelVtConnectServer server;
    server.SetAddress(address);
    server.SetPort(5000);
    return server;
}

Fragment fragmentOf(const PelVtConnectServer& server)
{
    Fragment fragment;
    fragment.SetPelVtConnectServer(server);
    return fragment;
}

// The output of a writer on a byte device, and whether it had an error.
struct Written
{
    QByteArray bytes;
    bool hasError = false;
};

bool operator==(const Written& a, const Written& b) { return a.bytes == b.bytes && a.hasError == b.hasError; }

void PrintTo(const Written& written, std::ostream* out)
{
    *out << written.bytes.constData() << (written.hasError ? " with error" : "");
}

template <class Write>
Written written(const Write& write)
{
    Written result;
    QXmlStreamWriter writer(&result.bytes);
    write(writer);
    result.hasError = writer.hasError();
    return result;
}

template <class Prepare>
void expectSameAsSingleCalls(const QString& address, const Prepare& prepare)
{
    const PelVtConnectServer server = serverAt(address);
    const Fragment fragment = fragmentOf(server);
    const Written inOnePiece = written([&](QXmlStreamWriter& writer) {
        prepare(writer);
        fragment.GetXml(writer);
    });
    const Written inSingleCalls = written([&](QXmlStreamWriter& writer) {
        prepare(writer);
        writer.writeStartElement(QStringLiteral("Fragment"));
        server.GetXml(writer);
        writer.writeEndElement();
    });
    EXPECT_EQ(inOnePiece, inSingleCalls);
}

QVector<QString> texts()
{
    QVector<QString> result{QString(),
                            empty(),
                            QStringLiteral("192.168.1.1"),
                            QStringLiteral("a<b"),
                            QStringLiteral("a>b"),
                            QStringLiteral("a&b"),
                            QStringLiteral("a\"b"),
                            QStringLiteral("a'b"),
                            QStringLiteral("a]]>b"),
                            QString::fromUtf8("\xc3\xa9\xe6\xbc\xa2"),
                            QString::fromUtf8("\xf0\x9f\x93\xa1"),
                            QString(QChar(0xD83D)),
                            QString(QChar(0xDCE1)) + QStringLiteral("x"),
                            QString(QChar(0xFFFD)),
                            QString(QChar(0xFFFE)),
                            QString(QChar(0xFFFF)),
                            QString(600, QLatin1Char('x'))};
    for (int code = 0; code < 0x20; ++code)
        result.append(QStringLiteral("a") + QChar(static_cast<ushort>(code)) + QStringLiteral("b"));
    for (const int code : {0x7F, 0x80, 0x85, 0x9F, 0xA0, 0x2028, 0xD7FF, 0xE000, 0xFEFF})
        result.append(QStringLiteral("a") + QChar(static_cast<ushort>(code)) + QStringLiteral("b"));
    return result;
}

TEST(XmlStretch, GivesTheBytesOfSingleCallsForEveryText)
{
    for (const QString& text : texts()) {
        SCOPED_TRACE(text.toUtf8().toHex(' ').toStdString());
        expectSameAsSingleCalls(text, [](QXmlStreamWriter&) {});
    }
}

TEST(XmlStretch, GivesTheBytesOfSingleCallsWhileTheWriterFormats)
{
    for (const QString& text : texts()) {
        SCOPED_TRACE(text.toUtf8().toHex(' ').toStdString());
        expectSameAsSingleCalls(text, [](QXmlStreamWriter& writer) { writer.setAutoFormatting(true); });
    }
}

TEST(XmlStretch, GivesTheBytesOfSingleCallsInsideOtherElements)
{
    expectSameAsSingleCalls(QStringLiteral("192.168.1.1"), [](QXmlStreamWriter& writer) {
        writer.writeStartDocument();
        writer.writeStartElement(QStringLiteral("urn:example"), QStringLiteral("Outer"));
        writer.writeNamespace(QStringLiteral("urn:other"), QStringLiteral("o"));
        writer.writeAttribute(QStringLiteral("a"), QStringLiteral("1"));
    });
}

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
TEST(XmlStretch, GivesTheBytesOfSingleCallsInOtherEncodings)
{
    for (const char* codec : {"ISO-8859-1", "UTF-16", "ISO-2022-JP", "Shift_JIS"})
        for (const QString& text : texts()) {
            SCOPED_TRACE(codec);
            SCOPED_TRACE(text.toUtf8().toHex(' ').toStdString());
            expectSameAsSingleCalls(text, [codec](QXmlStreamWriter& writer) { writer.setCodec(codec); });
        }
}
#endif

TEST(XmlStretch, GivesTheTextOfSingleCallsToAStringToo)
{
    for (const QString& text : texts()) {
        SCOPED_TRACE(text.toUtf8().toHex(' ').toStdString());
        const PelVtConnectServer server = serverAt(text);
        EXPECT_EQ(xmlOf(fragmentOf(server)),
                  QStringLiteral("<Fragment>") + xmlOf(server) + QStringLiteral("</Fragment>"));
    }
}

TEST(XmlStretch, AnElementWithoutContentHasOneTag)
{
    Fragment fragment;
    fragment.SetDF_Params(DF_Params());
    EXPECT_EQ(xmlOf(fragment), QStringLiteral("<Fragment><DF_Params/></Fragment>"));
}

TEST(XmlStretch, NumbersAreWrittenAsTextsAre)
{
    for (const double value :
         {0.0, -0.0, 0.005, 0.015, 0.03125, 98500000.25, -1.005, 9007199254740993.0, 1e300}) {
        Fragment fragment;
        fragment.GetDF_Params().SetFrequency(value);
        EXPECT_EQ(xmlOf(fragment), QStringLiteral("<Fragment>") + xmlOf(fragment.GetDF_Params())
                                       + QStringLiteral("</Fragment>"));
    }
}

TEST(XmlStretch, LeavesTheWriterAsSingleCallsDo)
{
    const PelVtConnectServer server = serverAt(QStringLiteral("192.168.1.1"));
    const auto closing = [](QXmlStreamWriter& writer) {
        writer.setAutoFormatting(true);
        writer.writeEmptyElement(QStringLiteral("Empty"));
        writer.writeTextElement(QStringLiteral("Text"), QStringLiteral("x"));
        writer.writeEndDocument();
    };
    const Written inOnePiece = written([&](QXmlStreamWriter& writer) {
        writer.writeStartElement(QStringLiteral("Outer"));
        fragmentOf(server).GetXml(writer);
        closing(writer);
    });
    const Written inSingleCalls = written([&](QXmlStreamWriter& writer) {
        writer.writeStartElement(QStringLiteral("Outer"));
        writer.writeStartElement(QStringLiteral("Fragment"));
        server.GetXml(writer);
        writer.writeEndElement();
        closing(writer);
    });
    EXPECT_EQ(inOnePiece, inSingleCalls);
}

TEST(XmlStretch, AnErrorOfTheDeviceReachesTheWriter)
{
    QBuffer readOnly;
    readOnly.open(QIODevice::ReadOnly);
    QXmlStreamWriter writer(&readOnly);
    fragmentOf(serverAt(QStringLiteral("192.168.1.1"))).GetXml(writer);
    EXPECT_TRUE(writer.hasError());
}

} // namespace
