// SPDX-License-Identifier: MIT
// Whole documents are written without Qt's stream writer. Nobody can tell: these tests write random records
// in both ways and compare everything that can be seen.
//
//     PLAIN_XML_ROUNDS=100000 plain_xml_writing_test      tries that many records, in two minutes at most
//     PLAIN_XML_SEED=7 plain_xml_writing_test             tries others

#include "RandomXml.h"
#include "SeenSupport.h"
#include "TestSupport.h"
#include "WritingBothWays.h"

#include "modelkit/PlainXmlWriter.h"

#include <set>
#include <string>

using namespace testing_support;
using MODELKIT::Declare;
using MODELKIT::Failure;
using MODELKIT::IMKObject;
using MODELKIT::PlainXmlWriter;
using MODELKIT::XmlLayout;

namespace {

template <class R>
void expectWrittenAlike(const R& record, const Loggers& loggers)
{
    for (const auto& [plainly, byStream] : seenOfWritingBothWays(record, loggers))
        ASSERT_EQ(plainly, byStream);
}

TEST(PlainXmlDocuments, AreWrittenAsByQtsWriter)
{
    Random random(chosenSeed());
    const int rounds = chosenRounds() / 10;
    std::set<int> outcomes;
    for (int i = 0; i < rounds && !HasFatalFailure(); ++i)
        useAnyClass(random, [&](auto tag) {
            typename decltype(tag)::Record record;
            const Loggers loggers;
            if (!random.oneIn(20))
                fillAtRandom(record, random, loggers, unusualText);
            if (random.oneIn(20))
                renameAtRandom(record, random);
            record.SetValidate(random.oneIn(2));
            expectWrittenAlike(record, loggers);
            outcomes.insert(IMKObject::GetLastFailure().kind);
        });
    if (rounds >= 2000) {
        EXPECT_EQ(outcomes, (std::set<int>{Failure::None, Failure::NotRepresentable, Failure::Refused,
                                           Failure::NothingToWrite}));
    }
}

TEST(PlainXmlDocuments, AreWrittenAsByQtsWriterWithAnyCharacter)
{
    const Loggers loggers;
    for (int code = 0; code < 0x10000 && !HasFatalFailure();
         code += code > 0x900 && code < 0xD700 ? 0x100 : 1) {
        PelVtConnectServer record;
        record.SetAddress(QLatin1Char('a') + QString(QChar(code)));
        expectWrittenAlike(record, loggers);
    }
}

TEST(PlainXmlWriter, LeavesTooLargeDocumentsToTheStreamWriter)
{
    const QByteArray beginning = "<?xml version=\"1.0\"?><x><a>";
    const QByteArray end = "</a><b>7</b></x>\n";
    constexpr int maximalSize = 2000;
    bool hasWritten = false;
    bool hasRefused = false;
    for (int size = 0; size < 2 * maximalSize; ++size) {
        PlainXmlWriter writer(XmlLayout::Compact, Declare::Version, maximalSize);
        writer.startElement(QStringLiteral("x"));
        writer.textElement(QLatin1String("a"), [&] {
            for (int i = 0; i < size; ++i)
                writer.put("y");
        });
        writer.textElement(QLatin1String("b"), [&] { writer.put("7"); });
        writer.endElement(QStringLiteral("x"));
        const QByteArray document = beginning + QByteArray(size, 'y') + end;
        const QByteArray written = writer.takeDocument();
        ASSERT_EQ(written, document.size() <= maximalSize ? document : QByteArray()) << size;
        (written.isNull() ? hasRefused : hasWritten) = true;
    }
    EXPECT_TRUE(hasWritten);
    EXPECT_TRUE(hasRefused);
}

} // namespace
