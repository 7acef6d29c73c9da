// SPDX-License-Identifier: MIT
// Whole documents in the usual spelling are read without Qt's stream reader. Nobody can tell: these tests
// read documents in both ways and compare everything that can be seen.
//
//     PLAIN_XML_ROUNDS=100000 plain_xml_test      tries that many documents, in two minutes at most
//     PLAIN_XML_SEED=7 plain_xml_test             tries others

#include "RandomXml.h"
#include "ReadingBothWays.h"
#include "SeenSupport.h"
#include "TestSupport.h"

#include "modelkit/PlainXmlReader.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <set>
#include <string>
#include <vector>

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::IMKObject;
using MODELKIT::PlainXml;

namespace {

bool isPlain(const QByteArray& xml)
{
    return PlainXml::Find({xml.constData(), static_cast<std::size_t>(xml.size())},
                          MODELKIT::Limits().nestingDepth)
        .has_value();
}

// Reads a document in both ways, each time into a new record, which is the same.
template <class R, class Read>
void expectReadAlike(const QByteArray& xml, Random& random, const Read& read)
{
    const auto [plainly, byStream] = seenOfReadingBothWays<R>(random, read);
    ASSERT_EQ(plainly, byStream) << xml.toStdString() << '\n' << xml.toHex(' ').toStdString();
}

template <class R>
void expectReadAlikeFromAnything(const QByteArray& xml, Random& random)
{
    const auto [plainly, byStream] = seenOfBothWays<R>(xml, random);
    ASSERT_EQ(plainly, byStream) << xml.toStdString() << '\n' << xml.toHex(' ').toStdString();
}

MODELKIT::Limits randomLimits(Random& random)
{
    MODELKIT::Limits limits;
    limits.waitingTime = 0;
    if (random.oneIn(8))
        limits.nestingDepth = random.below(7) - 1;
    if (random.oneIn(8))
        limits.listItems = random.below(3);
    if (random.oneIn(30))
        limits.inputSize = random.below(300);
    if (random.oneIn(30))
        limits.attributes = random.below(3) - 1;
    return limits;
}

TEST(PlainXmlDocuments, AreReadAsByQtsReader)
{
    Random random(chosenSeed());
    RandomXml documents(random);
    const int rounds = chosenRounds();
    int plain = 0;
    std::set<int> outcomes;
    for (int i = 0; i < rounds && !HasFatalFailure(); ++i)
        useAnyClass(random, [&](auto tag) {
            using R = typename decltype(tag)::Record;
            const QByteArray xml = documents.make(R().GetObjectName().toUtf8());
            plain += isPlain(xml) ? 1 : 0;
            const MODELKIT::LimitsInScope inScope(randomLimits(random));
            expectReadAlikeFromAnything<R>(xml, random);
            outcomes.insert(IMKObject::GetLastFailure().kind);
        });
    // Otherwise the test compares Qt's reader with itself.
    EXPECT_GT(plain, rounds / 3);
    EXPECT_LT(plain, rounds);
    if (rounds >= 20000) {
        EXPECT_EQ(outcomes,
                  (std::set<int>{Failure::None, Failure::NotWellFormed, Failure::WrongRoot,
                                 Failure::DoctypeRefused, Failure::InputTooLarge, Failure::NestedTooDeep,
                                 Failure::TooManyAttributes, Failure::TooManyItems, Failure::Refused,
                                 Failure::EncodingRefused, Failure::NotWholeYet}));
    }
}

TEST(PlainXmlDocuments, AreReadAsByQtsReaderFromStringsWithSurrogates)
{
    Random random(2);
    const QString lead = QStringLiteral("<MastershipState><MasterClientID>ab");
    const QString trail = QStringLiteral("</MasterClientID></MastershipState>");
    const char16_t codes[] = {0x41,   0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xE000,
                              0xFFFD, 0xFFFE, 0xFFFF, 0xFEFF, 0x1F,   0x85};
    for (const char16_t first : codes)
        for (const char16_t second : codes)
            for (int shift = 0; shift < 5; ++shift) {
                const QString xml =
                    lead + QString(shift, QLatin1Char('x')) + QChar(first) + QChar(second) + trail;
                expectReadAlike<MastershipState>(xml.toUtf8(), random, [&xml](MastershipState& record) {
                    return record.SetXmlString(xml, false);
                });
            }
}

TEST(PlainXmlDocuments, AreReadAsByQtsReaderFromFiles)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("document.xml"));
    Random random(3);
    RandomXml documents(random);
    for (int i = 0; i < 300 && !HasFatalFailure(); ++i) {
        const QByteArray xml = documents.make("PelLu300RouterInterfaceXml");
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(xml), xml.size());
        file.close();
        expectReadAlike<PelLu300RouterInterfaceXml>(
            xml, random, [&path](PelLu300RouterInterfaceXml& record) { return record.LoadXml(path); });
    }
}

// Calls use(text) for every sequence of that many parts.
template <class Use>
void forEverySequence(const std::vector<QByteArray>& parts, int count, const Use& use,
                      const QByteArray& text = {})
{
    if (count == 0) {
        use(text);
        return;
    }
    for (const QByteArray& part : parts)
        forEverySequence(parts, count - 1, use, text + part);
}

// Line ends, references and brackets depend on what follows them.
TEST(PlainXmlDocuments, MayHaveAnySequenceOfSpecialCharactersInTexts)
{
    Random random(5);
    for (int size = 0; size <= 4; ++size)
        forEverySequence({"\r", "\n", "&#13;", "]", "&gt;", "x", "&lt;"}, size, [&](const QByteArray& text) {
            const QByteArray xml =
                "<MastershipState><MasterClientID>" + text + "</MasterClientID></MastershipState>";
            ASSERT_TRUE(isPlain(xml));
            MastershipState plainly;
            MastershipState byStream;
            ASSERT_TRUE(plainly.SetXmlBytes(xml));
            const MODELKIT::ReadingReport report;
            ASSERT_TRUE(byStream.SetXmlBytes(xml));
            ASSERT_EQ(plainly.GetMasterClientID(), byStream.GetMasterClientID())
                << text.toHex(' ').toStdString();
        });
}

TEST(PlainXmlDocuments, MayHaveAnythingAroundTheRootElement)
{
    Random random(6);
    const std::vector<QByteArray> inFront = {"", "<?xml version=\"1.0\"?>", "\xEF\xBB\xBF", "\r", "\n", " ",
                                             "x"};
    const std::vector<QByteArray> behind = {"", "\r", "\n", " ", "x", "<!-- -->", "<x/>", "&#13;"};
    for (const char* const root : {"<DF_Params/>", "<DF_Params></DF_Params>", "<DF_Params>\r</DF_Params>"})
        forEverySequence(inFront, 2, [&](const QByteArray& beginning) {
            forEverySequence(behind, 2, [&](const QByteArray& end) {
                const QByteArray xml = beginning + root + end;
                expectReadAlike<DF_Params>(xml, random,
                                           [&xml](DF_Params& record) { return record.SetXmlBytes(xml); });
            });
        });
}

TEST(PlainXmlDocuments, MayHaveAnyByteAnywhere)
{
    Random random(7);
    const QByteArray xml = "<?xml version=\"1.0\"?><DF_Params><x/> <Bandwidth>\n1</Bandwidth></DF_Params>";
    for (int at = 0; at <= xml.size() && !HasFatalFailure(); ++at)
        for (int byte = 0; byte < 256 && !HasFatalFailure(); ++byte) {
            QByteArray other = xml;
            other.insert(at, static_cast<char>(byte));
            expectReadAlike<DF_Params>(other, random,
                                       [&other](DF_Params& record) { return record.SetXmlBytes(other); });
        }
}

TEST(PlainXmlDocuments, MayHaveAnyCharacterInTexts)
{
    Random random(8);
    for (int code = 0; code < 0x10000 && !HasFatalFailure();
         code += code > 0x900 && code < 0xD700 ? 0x100 : 1) {
        const QString xml =
            QStringLiteral("<MastershipState><MasterClientID>%1</MasterClientID></MastershipState>")
                .arg(QChar(code));
        expectReadAlike<MastershipState>(
            xml.toUtf8(), random, [&xml](MastershipState& record) { return record.SetXmlString(xml, true); });
    }
}

TEST(PlainXmlDocuments, MayHaveVeryLongTextsAndNames)
{
    Random random(4);
    for (const int size : {254, 255, 256, 4095, 4096, 70000}) {
        const QByteArray name(size, 'n');
        const QByteArray xml = "<MastershipState><" + name + ">1</" + name + "><MasterClientID>" + name
                               + "&amp;</MasterClientID></MastershipState>";
        expectReadAlike<MastershipState>(xml, random,
                                         [&xml](MastershipState& record) { return record.SetXmlBytes(xml); });
    }
}

} // namespace
