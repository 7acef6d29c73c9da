// SPDX-License-Identifier: MIT
// Texts in the binary form: texts that UTF-8 can carry are read back unchanged, others are replaced or
// refused.

#include "modelkit/DocumentContext.h"
#include "modelkit/NotRepresentableException.h"

#include "TestSupport.h"

#include <QtCore/QTemporaryFile>

#include <vector>

using namespace testing_support;

namespace {

using MODELKIT::DocumentContext;

const QString refused = QStringLiteral("A text holds a character that the binary form cannot carry.");

QString mark() { return QString(QChar(0xFEFF)); }
QString loneSurrogate() { return QStringLiteral("a") + QChar(0xD800) + QStringLiteral("b"); }

std::vector<QString> textsWithMarks()
{
    const QString a = QStringLiteral("a");
    return {mark(),
            mark() + a,
            mark() + mark() + a,
            mark() + mark() + mark(),
            mark() + a + mark(),
            a + mark(),
            mark() + QChar(0xE9),
            mark() + QString(100, QLatin1Char('x')),
            mark() + QChar(0),
            QString(QChar(0xFEFE)),
            QString(QChar(0xFFFE)) + a};
}

PelLu300RouterInterfaceXml documentWith(const QString& address)
{
    Fragment fragment;
    fragment.GetPelVtConnectServer().SetAddress(address);
    PelLu300RouterInterfaceXml document;
    document.GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Request);
    document.GetPelLu300RouterMessage().AppendFragment(Fragment());
    document.GetPelLu300RouterMessage().AppendFragment(fragment);
    return document;
}

QString addressIn(const PelLu300RouterInterfaceXml& document, int index)
{
    PelVtConnectServer server;
    server = document.GetPelLu300RouterMessage().GetFragment().at(index).GetPelVtConnectServer();
    return server.GetAddress();
}

const char* const placeOfAddress =
    "/PelLu300RouterInterfaceXml/PelLu300RouterMessage/Fragment[2]/PelVtConnectServer/Address";

template <class Statement>
void expectRefused(Statement&& statement, const QString& path)
{
    try {
        statement();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const MODELKIT::NotRepresentableException& exception) {
        EXPECT_EQ(exception.GetText(), refused);
        EXPECT_EQ(exception.GetPlace().path, path);
    }
}

} // namespace

TEST(BinaryTexts, LeadingByteOrderMarksAreReadBack)
{
    for (const QString& value : textsWithMarks()) {
        SCOPED_TRACE(value.toUtf8().toHex().constData());
        PelVtConnectServer source;
        source.SetAddress(value);
        PelVtConnectServer target;
        readFrame(target, frameOf(source));
        EXPECT_EQ(target.GetAddress(), value);

        MastershipState state;
        state.SetMasterClientID(value);
        MastershipState read;
        readFrame(read, frameOf(state));
        EXPECT_EQ(read.GetMasterClientID(), value);
    }
}

TEST(BinaryTexts, LeadingByteOrderMarksAreReadFromAFile)
{
    PelVtConnectServer source;
    source.SetAddress(mark() + mark() + QStringLiteral("a"));
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    QDataStream stream(&file);
    source.GetBinary(stream, 0, false);
    file.seek(4);
    PelVtConnectServer target;
    target.SetBinary(stream, static_cast<int>(file.size()) - 4);
    EXPECT_EQ(target.GetAddress(), source.GetAddress());
}

TEST(BinaryTexts, LeadingByteOrderMarksAreMerged)
{
    for (const QString& value : textsWithMarks()) {
        PelLu300RouterInterfaceXml target;
        ASSERT_TRUE(target.MergeMKObject(documentWith(value)));
        EXPECT_EQ(addressIn(target, 1), value);
    }
}

TEST(BinaryTexts, ANumberBehindAByteOrderMarkIsNoNumber)
{
    // The same as in XML.
    DF_Params record;
    readFrame(record, bytes("00000012 A97DB5BE 0000000A 00000006 EFBBBF312E35"));
    EXPECT_TRUE(record.IsFrequencySet());
    EXPECT_EQ(record.GetFrequency(), 0.0);
    DF_Params fromXml;
    readXml(fromXml, QStringLiteral("<DF_Params><Frequency>") + mark()
                         + QStringLiteral("1.5</Frequency></DF_Params>"));
    EXPECT_EQ(fromXml.GetFrequency(), 0.0);
}

TEST(BinaryTexts, ALoneSurrogateIsWrittenAsAQuestionMark)
{
    PelVtConnectServer record;
    record.SetAddress(loneSurrogate());
    EXPECT_EQ(frameOf(record), bytes("0000000F 2AC271EC 00000007 00000003 613F62"));
    const DocumentContext reading(DocumentContext::Purpose::Reading);
    EXPECT_EQ(frameOf(record), bytes("0000000F 2AC271EC 00000007 00000003 613F62"));
}

TEST(BinaryTexts, ALoneSurrogateIsRefusedWhereAWholeDocumentIsWritten)
{
    for (const auto purpose : {DocumentContext::Purpose::Writing, DocumentContext::Purpose::Transfer}) {
        const DocumentContext context(purpose);
        const PelLu300RouterInterfaceXml document = documentWith(loneSurrogate());
        expectRefused([&] { frameOf(document); }, QLatin1String(placeOfAddress));
        MastershipState state;
        for (const QString& value :
             {QString(QChar(0xD800)), QString(QChar(0xDC00)), QString(QChar(0xDC00)) + QChar(0xD800),
              QString(100, QLatin1Char('x')) + QChar(0xDBFF), QString(QChar(0xD800)) + QChar(0x8000)}) {
            state.SetMasterClientID(value);
            expectRefused([&] { frameOf(state); }, QStringLiteral("/MastershipState/MasterClientID"));
        }
        const QString pair = QString(QChar(0xD83D)) + QChar(0xDE00);
        state.SetMasterClientID(pair);
        EXPECT_EQ(frameOf(state), bytes("00000010 0BCD2CF7 00000008 00000004 F09F9880"));
    }
}

TEST(BinaryTexts, NothingOfARefusedDocumentReachesAFile)
{
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    QDataStream stream(&file);
    const PelLu300RouterInterfaceXml document = documentWith(loneSurrogate());
    const DocumentContext context(DocumentContext::Purpose::Writing);
    expectRefused([&] { document.GetBinary(stream, 0, false); }, QLatin1String(placeOfAddress));
    EXPECT_EQ(file.pos(), 0);
    EXPECT_EQ(file.size(), 0);
}

TEST(BinaryTexts, ATextThatIsNotWrittenIsNotRefused)
{
    Fragment fragment;
    fragment.GetPelVtConnectServer().SetAddress(loneSurrogate());
    fragment.GetOstraInterfacePort().SetPort(1);
    const DocumentContext context(DocumentContext::Purpose::Writing);
    EXPECT_EQ(frameOf(fragment), bytes("00000018 F9E464D0 00000010 1F980517 00000008 0000000000000001"));
}
