// SPDX-License-Identifier: MIT
// A class derived from a record may hand its settings down in its own way, exempt records that it owns, or be
// lenient in its check. The records that it owns follow their own settings and rules in every operation.

#include "TestSupport.h"

#include "modelkit/ReadingReport.h"

#include <QtCore/QStringList>

#include <functional>
#include <memory>
#include <utility>

using namespace testing_support;
using MODELKIT::Logger;

namespace {

using LoggerPointer = std::shared_ptr<Logger>;
using Document = PelLu300RouterInterfaceXml;
using Message = PelLu300RouterMessage;

// A record whose check always passes.
template <class R>
struct Lenient : R
{
    using R::Check;
    void Check(bool) const override {}
};

// A record that does not hand its settings down.
template <class R>
struct Keeping : R
{
    void SetValidate(bool validate) const override { MODELKIT::IMKObject::SetValidate(validate); }
    void SetLogger(LoggerPointer logger) const override { MODELKIT::IMKObject::SetLogger(logger); }
};

// Exempts the second item from validation and logging.
struct Exempting : Message
{
    void SetValidate(bool validate) const override
    {
        Message::SetValidate(validate);
        if (GetFragment().size() > 1)
            GetFragment().at(1).SetValidate(false);
    }
    void SetLogger(LoggerPointer logger) const override
    {
        Message::SetLogger(logger);
        if (GetFragment().size() > 1)
            GetFragment().at(1).SetLogger(nullptr);
    }
};

// A record whose check switches validation off.
template <class R>
struct Relenting : R
{
    using R::Check;
    void Check(bool) const override { this->SetValidate(false); }
};

// A record whose check always passes and whose HasData() switches validation off.
template <class R>
struct LateRelenting : Lenient<R>
{
    bool HasData() const override
    {
        this->SetValidate(false);
        return true;
    }
};

Fragment badFragment()
{
    Fragment fragment;
    fragment.GetMastershipState().SetState(static_cast<MastershipState::State>(9));
    return fragment;
}

Fragment goodFragment()
{
    Fragment fragment;
    fragment.GetOstraInterfacePort().SetPort(1);
    return fragment;
}

void fill(Document& document)
{
    document.GetPelLu300RouterMessage().SetType(Message::Event);
    for (const Fragment& fragment : {goodFragment(), goodFragment(), badFragment()})
        document.GetPelLu300RouterMessage().AppendFragment(fragment);
}

void fill(Message& message)
{
    message.SetType(Message::Event);
    for (const Fragment& fragment : {goodFragment(), goodFragment(), badFragment()})
        message.AppendFragment(fragment);
}

struct Outcome
{
    QString text;
    QString path;
};

Outcome outcomeOf(const std::function<void()>& operation)
{
    try {
        operation();
    } catch (const ModelKitException& exception) {
        return {exception.GetText(), exception.GetPlace().path};
    }
    return {QStringLiteral("nothing was thrown"), QString()};
}

const QString noType = QStringLiteral("PelLu300RouterMessage: Please set Type properly.");
const QString badState = QStringLiteral("MastershipState: Please set State properly.");

template <class R>
void expectWritingFails(const R& record, const QString& text, const char* path)
{
    for (const bool asXml : {true, false}) {
        SCOPED_TRACE(asXml ? "XML" : "binary");
        const Outcome outcome = outcomeOf([&] {
            if (asXml)
                xmlOf(record);
            else
                frameOf(record);
        });
        EXPECT_EQ(outcome.text, text);
        EXPECT_EQ(outcome.path, QLatin1String(path));
    }
}

} // namespace

// --- writing ------------------------------------------------------------------------------------

TEST(DerivedRecords, AMessageChecksItselfBelowADocumentThatDoesNot)
{
    Lenient<Document> document;
    document.GetPelLu300RouterMessage().SetMessageID(1);
    document.SetValidate(true);
    expectWritingFails(document, noType, "/PelLu300RouterInterfaceXml/PelLu300RouterMessage");
    document.SetValidate(false);
    EXPECT_EQ(xmlOf(document),
              QStringLiteral("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type></Type>"
                             "<MessageID>1</MessageID></PelLu300RouterMessage>"
                             "</PelLu300RouterInterfaceXml>"));
}

TEST(DerivedRecords, APayloadChecksItselfBelowADocumentOrMessageThatDoesNot)
{
    Lenient<Document> document;
    fill(document);
    document.SetValidate(true);
    expectWritingFails(document, badState,
                       "/PelLu300RouterInterfaceXml/PelLu300RouterMessage/Fragment[3]/MastershipState");
    Lenient<Message> message;
    fill(message);
    message.SetValidate(true);
    expectWritingFails(message, badState, "/PelLu300RouterMessage/Fragment[3]/MastershipState");
}

TEST(DerivedRecords, SettingsThatADocumentDoesNotHandDownDoNotMatter)
{
    Keeping<Document> document;
    fill(document);
    document.SetValidate(true);
    document.SetLogger(std::make_shared<Logger>());
    const QString xml = xmlOf(document);
    EXPECT_TRUE(xml.contains(QLatin1String("</MastershipState>")));
    EXPECT_FALSE(frameOf(document).isEmpty());
    EXPECT_FALSE(document.GetPelLu300RouterMessage().GetValidate());
    EXPECT_EQ(document.GetPelLu300RouterMessage().GetLogger(), nullptr);
}

TEST(DerivedRecords, AMessageWithValidationBelowADocumentWithoutUsesItsOwn)
{
    Keeping<Document> document;
    fill(document);
    const auto logger = std::make_shared<Logger>();
    document.GetPelLu300RouterMessage().SetValidate(true);
    document.GetPelLu300RouterMessage().SetLogger(logger);
    // The message hands its own settings down, also to an item that was changed afterwards.
    document.GetPelLu300RouterMessage().GetFragment()[2].SetValidate(false);
    document.GetPelLu300RouterMessage().GetFragment()[2].ResetLogger();
    expectWritingFails(document, badState,
                       "/PelLu300RouterInterfaceXml/PelLu300RouterMessage/Fragment[3]/MastershipState");
    const Fragment& last = std::as_const(document).GetPelLu300RouterMessage().GetFragment().at(2);
    EXPECT_TRUE(last.GetValidate());
    EXPECT_TRUE(last.GetMastershipState().GetValidate());
    EXPECT_EQ(last.GetLogger(), logger);
    EXPECT_EQ(last.GetMastershipState().GetLogger(), logger);
}

TEST(DerivedRecords, AnItemThatIsExemptIsNotCheckedWhenItIsWritten)
{
    Exempting message;
    message.SetType(Message::Event);
    message.AppendFragment(goodFragment());
    message.AppendFragment(Fragment());
    message.SetLogger(std::make_shared<Logger>());
    message.SetValidate(true);
    // Under validation an item without data would be left out, but this item is exempt.
    EXPECT_EQ(xmlOf(message),
              QStringLiteral("<PelLu300RouterMessage><Type>Event</Type><Fragment><OstraInterfacePort><Port>1"
                             "</Port></OstraInterfacePort></Fragment><Fragment/></PelLu300RouterMessage>"));
    EXPECT_TRUE(frameOf(message).endsWith(bytes("00000000")));
    EXPECT_FALSE(std::as_const(message).GetFragment().at(1).GetValidate());
    EXPECT_EQ(std::as_const(message).GetFragment().at(1).GetLogger(), nullptr);
    EXPECT_NE(std::as_const(message).GetFragment().at(0).GetLogger(), nullptr);
}

TEST(DerivedRecords, AFlagThatCheckOrHasDataChangesTakesEffect)
{
    Relenting<Document> relenting;
    fill(relenting);
    LateRelenting<Message> late;
    fill(late);
    for (const bool asXml : {true, false}) {
        relenting.SetValidate(true);
        late.SetValidate(true);
        EXPECT_NO_THROW(asXml ? void(xmlOf(relenting)) : void(frameOf(relenting)));
        EXPECT_NO_THROW(asXml ? void(xmlOf(late)) : void(frameOf(late)));
        EXPECT_FALSE(relenting.GetPelLu300RouterMessage().GetValidate());
    }
    // A fragment without data is written all the same, because validation is off by then.
    Relenting<Fragment> fragment;
    fragment.SetValidate(true);
    EXPECT_EQ(xmlOf(fragment), QStringLiteral("<Fragment/>"));
    fragment.SetValidate(true);
    EXPECT_EQ(frameOf(fragment), bytes("00000000"));
}

TEST(DerivedRecords, WriteTheSameAsTheirBase)
{
    Document plain;
    Lenient<Document> derived;
    fill(plain);
    fill(derived);
    for (Document* document : {&plain, static_cast<Document*>(&derived)})
        document->GetPelLu300RouterMessage().GetFragment().removeLast();
    plain.SetValidate(true);
    derived.SetValidate(true);
    EXPECT_EQ(xmlOf(derived), xmlOf(plain));
    EXPECT_EQ(frameOf(derived), frameOf(plain));
}

TEST(DerivedRecords, AreMergedWhateverTheirFlags)
{
    Keeping<Document> source;
    fill(source);
    source.SetValidate(true);
    source.GetPelLu300RouterMessage().SetValidate(true);
    Keeping<Document> target;
    EXPECT_TRUE(target.MergeMKObject(source));
    EXPECT_EQ(std::as_const(target).GetPelLu300RouterMessage().GetFragment().size(), 3);
}

// --- checking -----------------------------------------------------------------------------------

TEST(DerivedRecords, ACheckHandsDownTheSettingsOfEachRecord)
{
    Keeping<Document> document;
    fill(document);
    const auto logger = std::make_shared<Logger>();
    document.GetPelLu300RouterMessage().SetLogger(logger);
    document.GetPelLu300RouterMessage().SetValidate(true);
    document.GetPelLu300RouterMessage().GetFragment()[0].SetValidate(false);
    document.GetPelLu300RouterMessage().GetFragment()[0].SetLogger(nullptr);
    document.Check();
    const Fragment& first = std::as_const(document).GetPelLu300RouterMessage().GetFragment().at(0);
    EXPECT_TRUE(first.GetValidate());
    EXPECT_EQ(first.GetLogger(), logger);
    EXPECT_EQ(first.GetOstraInterfacePort().GetLogger(), logger);
}

TEST(DerivedRecords, ThePlaceOfAFailedCheckHasEveryStepOnce)
{
    Keeping<Document> document;
    document.GetPelLu300RouterMessage();
    const Outcome outcome = outcomeOf([&] { document.Check(); });
    EXPECT_EQ(outcome.text, noType);
    EXPECT_EQ(outcome.path, QStringLiteral("/PelLu300RouterInterfaceXml/PelLu300RouterMessage"));
}

// --- reading ------------------------------------------------------------------------------------

namespace {

const char* const unknownType = "<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Nonsense</Type>"
                                "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>";
const QString badType =
    QStringLiteral("enum is not valid (classname=PelLu300RouterMessage,membername=m_type)");

QByteArray frameWithUnknownType()
{
    const QByteArray type = bytes("E1D9E008 0000000C 00000008") + "Nonsense";
    return bytes("0000001C 9B1A7AD8 00000014") + type;
}

} // namespace

TEST(DerivedRecords, AMessageIsReadByItsOwnFlag)
{
    for (const bool flag : {false, true})
        for (const bool asXml : {false, true}) {
            Keeping<Document> document;
            document.GetPelLu300RouterMessage().SetValidate(flag);
            document.SetValidate(!flag);
            const Outcome outcome = outcomeOf([&] {
                if (asXml)
                    readXml(document, QLatin1String(unknownType));
                else
                    readFrame(document, frameWithUnknownType());
            });
            EXPECT_EQ(outcome.text, flag ? badType : QStringLiteral("nothing was thrown"));
            EXPECT_EQ(document.GetPelLu300RouterMessage().GetValidate(), flag);
        }
}

TEST(DerivedRecords, AMessageHandsItsOwnSettingsDownWhileItIsRead)
{
    const auto logger = std::make_shared<Logger>();
    for (const bool asXml : {false, true}) {
        Keeping<Document> document;
        fill(document);
        document.GetPelLu300RouterMessage().SetLogger(logger);
        document.GetPelLu300RouterMessage().GetFragment()[0].SetLogger(nullptr);
        document.GetPelLu300RouterMessage().GetFragment()[0].SetValidate(true);
        if (asXml)
            readXml(document, QStringLiteral("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Fragment/>"
                                             "<MessageID>1</MessageID><Fragment/></PelLu300RouterMessage>"
                                             "</PelLu300RouterInterfaceXml>"));
        else
            readFrame(document, bytes("00000008 9B1A7AD8 00000000"));
        const QVector<Fragment>& items = std::as_const(document).GetPelLu300RouterMessage().GetFragment();
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(items.at(i).GetLogger(), logger);
            EXPECT_FALSE(items.at(i).GetValidate());
        }
        EXPECT_EQ(items.at(0).GetOstraInterfacePort().GetLogger(), logger);
        if (asXml) {
            ASSERT_EQ(items.size(), 5);
            EXPECT_EQ(items.at(3).GetLogger(), logger);
            EXPECT_EQ(items.at(4).GetLogger(), nullptr);
        }
    }
}

TEST(DerivedRecords, AnItemThatIsExemptStaysSoWhileTheListIsRead)
{
    Exempting message;
    message.SetValidate(true);
    message.SetLogger(std::make_shared<Logger>());
    const QString item = QStringLiteral("<Fragment><DF_Params/></Fragment>");
    readXml(message, QStringLiteral("<PelLu300RouterMessage>") + item + item + item
                         + QStringLiteral("<MessageID>1</MessageID></PelLu300RouterMessage>"));
    const QVector<Fragment>& items = std::as_const(message).GetFragment();
    ASSERT_EQ(items.size(), 3);
    EXPECT_TRUE(items.at(0).GetValidate());
    EXPECT_FALSE(items.at(1).GetValidate());
    EXPECT_TRUE(items.at(2).GetValidate());
    EXPECT_EQ(items.at(1).GetLogger(), nullptr);
    EXPECT_NE(items.at(2).GetLogger(), nullptr);
}

TEST(DerivedRecords, PlacesInABinaryFormAreThoseOfTheirBase)
{
    // The payload of the second item has a wrong length.
    const QByteArray frame = bytes("0000003C 9B1A7AD8 00000034 61023A90 0000002C 00000002"
                                   "00000008 BE2DFF74 00000000"
                                   "00000018 F9E464D0 0000000F 1F980517 00000008 0000000000000001");
    const auto placeIn = [&](Document& document) {
        try {
            readFrame(document, frame);
        } catch (const BinaryParsingException& exception) {
            return exception.GetPlace();
        }
        return MODELKIT::Place();
    };
    Document plain;
    Keeping<Document> derived;
    const MODELKIT::Place expected = placeIn(plain);
    const MODELKIT::Place place = placeIn(derived);
    EXPECT_EQ(expected.path, QStringLiteral("/PelLu300RouterInterfaceXml/PelLu300RouterMessage/Fragment[2]/"
                                            "OstraInterfacePort"));
    EXPECT_GT(expected.offset, 0);
    EXPECT_EQ(place.path, expected.path);
    EXPECT_EQ(place.offset, expected.offset);
}

TEST(DerivedRecords, AReportNamesTheSamePlaces)
{
    const auto reportOf = [](Document& document, const QByteArray& bytesOf) {
        MODELKIT::ReadingReport report;
        QByteArray form = bytesOf;
        EXPECT_TRUE(document.SetBinaryRepresentation(form));
        QStringList lines;
        for (const auto& entry : report.GetEntries())
            lines += QString::number(entry.place.offset) + entry.place.path + QLatin1Char(' ') + entry.text;
        return lines;
    };
    const QByteArray form = bytes("8553499A 00000030 9B1A7AD8 00000028 61023A90 00000020 00000002"
                                  "00000008 BE2DFF74 00000000"
                                  "0000000C 00000001 00000004 00000000");
    Document plain;
    Keeping<Document> derived;
    const QStringList expected = reportOf(plain, form);
    ASSERT_EQ(expected.size(), 3);
    EXPECT_TRUE(expected.first().contains(QLatin1String("/Fragment[2] The entry with tag 0x00000001")));
    EXPECT_EQ(reportOf(derived, form), expected);
}
