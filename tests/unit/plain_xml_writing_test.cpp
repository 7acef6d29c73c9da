// SPDX-License-Identifier: MIT
// Whole documents are written without Qt's stream writer. Nobody can tell: these tests write random records
// in both ways and compare everything that can be seen.
//
// Qt's writer writes records of derived classes.
//
//     PLAIN_XML_ROUNDS=100000 plain_xml_writing_test      tries that many records, in two minutes at most
//     PLAIN_XML_SEED=7 plain_xml_writing_test             tries others

#include "RandomXml.h"
#include "SeenSupport.h"
#include "TestSupport.h"

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
struct Derived : R
{
    using R::SetObjectName;
};

QString unusualText(Random& random)
{
    if (random.oneIn(20))
        return QString();
    const char16_t codes[] = {'a',   'b',    '<',    '>',    '&',    '"',    '\'',   '\r',
                              '\n',  '\t',   ']',    0x7F,   0x80,   0x85,   0xE9,   0x7FF,
                              0x800, 0x20AC, 0x2028, 0xD7FF, 0xE000, 0xFDD0, 0xFEFF, 0xFFFD};
    const char32_t pairs[] = {0x10000, 0x1F600, 0x1FFFE, 0x10FFFF};
    const char16_t forbidden[] = {0, 1, 0xB, 0xC, 0x1F, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xFFFE, 0xFFFF};
    QString text = QLatin1String("");
    for (int size = random.oneIn(50) ? 3000 : random.below(6); size > 0; --size)
        text += random.oneIn(8) ? QString::fromUcs4(&random.of(pairs), 1) : QString(QChar(random.of(codes)));
    if (random.oneIn(12))
        text.insert(random.below(static_cast<int>(text.size()) + 1), QChar(random.of(forbidden)));
    return text;
}

template <class R>
void expectWrittenAlike(const R& record, const Loggers& loggers)
{
    const auto seen = [&](IMKObject& object, const auto& write) {
        loggers.sink->Clear();
        return seenOfOperation(loggers, [&] { return write(object); });
    };
    const auto expectAlike = [&](const auto& write) {
        // One that writes in its own way, and one that is exactly a record.
        R plainly;
        Derived<R> derived;
        plainly = record;
        derived.R::operator=(record);
        derived.SetObjectName(record.GetObjectName());
        (plainly.*(&Derived<R>::SetObjectName))(record.GetObjectName());
        for (IMKObject* const object :
             {static_cast<IMKObject*>(&plainly), static_cast<IMKObject*>(&derived)}) {
            object->SetLogger(loggers.ofOwner);
            object->SetValidate(record.GetValidate());
        }
        ASSERT_EQ(seen(plainly, write), seen(derived, write));
        // What is left of the record.
        std::string after;
        std::string expected;
        appendSeen(after, plainly, loggers);
        appendSeen(expected, derived, loggers);
        ASSERT_EQ(after, expected);
    };
    expectAlike([](IMKObject& object) { return object.GetXmlString(); });
    expectAlike([](IMKObject& object) { return object.GetCompactXmlString(); });
    for (const auto layout : {XmlLayout::Indented, XmlLayout::Compact})
        expectAlike([layout](IMKObject& object) { return object.GetXmlBytes(layout); });
}

// Gives some record, at any depth, another name.
void renameAtRandom(IMKObject& record, Random& random)
{
    const QString names[] = {QStringLiteral("Renamed"),
                             QStringLiteral("a.b-c_1"),
                             QStringLiteral("a:b"),
                             QString::fromUtf8("N\xC3\xA9"),
                             QString(),
                             QStringLiteral("1")};
    constexpr auto rename = &Derived<DF_Params>::SetObjectName;
    const RecordInfo& info = RecordInfo::Of(record);
    if (random.oneIn(3))
        (record.*rename)(random.of(names));
    for (const MemberInfo* member : info.GetMembers()) {
        if (member->GetKind() == MemberInfo::Record && member->IsSet(record))
            renameAtRandom(member->EditRecord(record), random);
        if (member->GetKind() == MemberInfo::List)
            for (int i = 0; i < member->CountItems(record); ++i)
                renameAtRandom(member->EditItem(record, i), random);
    }
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
