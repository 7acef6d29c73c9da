// SPDX-License-Identifier: MIT
// The samples of docs/records.md, and the statements of that page about references, places and loggers.

#include "Said.h"
#include "TestSupport.h"

#include "modelkit/LogSinks.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>

using namespace testing_support;
using MODELKIT::Logger;

namespace {

PelLu300RouterInterfaceXml sample()
{
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Event);
    message.SetMessageID(1);
    Fragment fragment;
    fragment.GetOstraInterfacePort().SetPort(5000);
    message.AppendFragment(fragment);
    return document;
}

unsigned int messageID(const PelLu300RouterInterfaceXml& document)
{
    return document.GetPelLu300RouterMessage().GetMessageID();
}

unsigned int port(const PelLu300RouterMessage& message)
{
    return message.GetFragment().first().GetOstraInterfacePort().GetPort();
}

// The place of the exception that the statement throws: path, line and offset.
template <class Statement>
QString placeOf(Statement&& statement)
{
    try {
        statement();
    } catch (const MKException& exception) {
        const MODELKIT::Place& place = exception.GetPlace();
        return QStringLiteral("%1 line %2 offset %3").arg(place.path).arg(place.line).arg(place.offset);
    }
    return QStringLiteral("nothing was thrown");
}

} // namespace

// --- members --------------------------------------------------------------------------------------

TEST(RecordsPage, AReceiverAsksForTheChoice)
{
    const Said said;
    const PelLu300RouterInterfaceXml document = [] {
        PelLu300RouterInterfaceXml received = sample();
        Fragment other;
        other.GetDF_Params();
        received.GetPelLu300RouterMessage().AppendFragment(other);
        return received;
    }();
    QVector<unsigned int> ports;
    {
        PelLu300RouterMessage message;
        //! [filling an item in its place]
        message.AddFragment().GetDF_Params().SetFrequency(98.5e6);
        //! [filling an item in its place]
        EXPECT_EQ(message.GetFragment()[0].GetDF_Params().GetFrequency(), 98.5e6);
    }
    const auto connectTo = [&ports](unsigned int number) { ports.append(number); };
    //! [asking for the choice]
    const PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    for (const Fragment& fragment : message.GetFragment()) {
        switch (fragment.GetChoiceFragment()) {
        case Fragment::OstraInterfacePort:
            connectTo(fragment.GetOstraInterfacePort().GetPort());
            break;
        default:
            qInfo() << fragment.ChoiceFragmentToName(fragment.GetChoiceFragment());
        }
    }
    //! [asking for the choice]
    EXPECT_EQ(ports, QVector<unsigned int>{5000});
    EXPECT_EQ(said.texts(), QStringList(QStringLiteral("\"DF_Params\"")));
}

// --- references -----------------------------------------------------------------------------------

TEST(RecordsPage, AReferenceThatIsOlderThanTheCopyIsWrong)
{
    PelLu300RouterInterfaceXml document = sample();
    //! [a reference that is older than the copy]
    // Wrong: the reference is older than the copy.
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    PelLu300RouterInterfaceXml sent;
    sent = document;
    message.SetMessageID(2); // changes both
    document.Check();        // document moves to data of its own, message stays with sent
    message.SetMessageID(3); // changes sent only
    //! [a reference that is older than the copy]
    EXPECT_EQ(messageID(document), 2U);
    EXPECT_EQ(messageID(sent), 3U);
}

TEST(RecordsPage, AReferenceThatIsTakenAfterTheCopyIsRight)
{
    PelLu300RouterInterfaceXml document = sample();
    //! [a reference that is taken after the copy]
    PelLu300RouterInterfaceXml sent;
    sent = document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetMessageID(2); // changes document only
    //! [a reference that is taken after the copy]
    EXPECT_EQ(messageID(document), 2U);
    EXPECT_EQ(messageID(sent), 1U);
}

TEST(RecordsPage, AnOldReferenceChangesBothAlsoFromTwoLevelsBelow)
{
    PelLu300RouterInterfaceXml document = sample();
    Fragment& fragment = document.GetPelLu300RouterMessage().GetFragment().first();
    PelLu300RouterInterfaceXml sent;
    sent = document;
    fragment.GetOstraInterfacePort().SetPort(2);
    EXPECT_EQ(port(document.GetPelLu300RouterMessage()), 2U);
    EXPECT_EQ(port(sent.GetPelLu300RouterMessage()), 2U);
}

TEST(RecordsPage, SettingARecordAsAMemberIsAnAssignment)
{
    PelLu300RouterMessage message = sample().GetPelLu300RouterMessage();
    Fragment& fragment = message.GetFragment().first();
    PelLu300RouterInterfaceXml document;
    document.SetPelLu300RouterMessage(message);
    fragment.GetOstraInterfacePort().SetPort(2);
    EXPECT_EQ(port(message), 2U);
    EXPECT_EQ(port(document.GetPelLu300RouterMessage()), 2U);
}

TEST(RecordsPage, AListTakenByValueSharesItsItems)
{
    PelLu300RouterMessage message = sample().GetPelLu300RouterMessage();
    Fragment& fragment = message.GetFragment().first();
    const QVector<Fragment> items = message.GetFragment();
    fragment.GetOstraInterfacePort().SetPort(2);
    EXPECT_EQ(items.first().GetOstraInterfacePort().GetPort(), 2U);
    EXPECT_EQ(port(message), 2U);
}

TEST(RecordsPage, CopyConstructionAndAppendingShareNothingAtAnyLevel)
{
    PelLu300RouterInterfaceXml document = sample();
    Fragment& fragment = document.GetPelLu300RouterMessage().GetFragment().first();
    OstraInterfacePort& payload = fragment.GetOstraInterfacePort();
    const PelLu300RouterInterfaceXml copy = document;
    PelLu300RouterMessage other;
    other.AppendFragment(fragment);
    payload.SetPort(2);
    EXPECT_EQ(port(document.GetPelLu300RouterMessage()), 2U);
    EXPECT_EQ(port(copy.GetPelLu300RouterMessage()), 5000U);
    EXPECT_EQ(port(other), 5000U);
}

// --- exceptions -----------------------------------------------------------------------------------

TEST(RecordsPage, ASlotCatchesWhatIsThrown)
{
    int argc = 1;
    char name[] = "test";
    char* argv[] = {name, nullptr};
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("document.xml"));
    const Said said;
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    document.GetPelLu300RouterMessage();
    QTimer timer;
    //! [a slot that catches]
    QObject::connect(&timer, &QTimer::timeout, &timer, [&document, path] {
        try {
            if (!document.SaveXml(path))
                qWarning().noquote() << MODELKIT::IMKObject::GetLastFailure().GetSentence();
        } catch (const std::exception& exception) {
            qWarning() << exception.what();
        }
    });
    //! [a slot that catches]
    QObject::connect(&timer, &QTimer::timeout, &timer, [] { QCoreApplication::exit(); });
    timer.start(0);
    QCoreApplication::exec();
    EXPECT_EQ(said.texts(), QStringList(QStringLiteral("PelLu300RouterMessage: Please set Type properly.")));
}

TEST(RecordsPage, WhatIsThrownHasThePlaceThatIsKnown)
{
    const QString wrong = QStringLiteral("<MastershipState>\n<State>Big</State></MastershipState>");
    const QString none = QStringLiteral(" line 0 offset -1");
    const QString path = QStringLiteral("/MastershipState");
    const auto badState = static_cast<MastershipState::State>(9);
    MastershipState state;
    MastershipState bad;
    bad.SetState(badState);
    QByteArray form = bad.GetBinaryRepresentationAsQByteArray();
    const QByteArray cutFrame = bytes("1F980517 00000008 00000000");
    bad.SetValidate(true);
    state.SetValidate(true);

    EXPECT_EQ(placeOf([&] { state.SetXmlString(wrong, false); }), path + "/State line 2 offset -1");
    EXPECT_EQ(placeOf([&] { bad.Check(); }), path + none);
    EXPECT_EQ(placeOf([&] { xmlOf(bad); }), path + none);
    EXPECT_EQ(placeOf([&] { frameOf(bad); }), path + none);
    EXPECT_EQ(placeOf([&] { bad.GetXmlString(); }), path + none);
    EXPECT_EQ(placeOf([&] {
                  OstraInterfacePort cut;
                  QDataStream stream(cutFrame);
                  cut.SetBinary(stream, 12);
              }),
              QStringLiteral("/OstraInterfacePort line 0 offset 12"));
    EXPECT_EQ(placeOf([&] { state.SetState(badState); }), none);
    EXPECT_EQ(placeOf([&] { readXml(state, wrong); }), none);
    EXPECT_EQ(placeOf([&] { Fragment().InitChoice(static_cast<Fragment::ChoiceFragment>(-1)); }), none);
    PelLu300RouterMessage message;
    message.SetValidate(true);
    EXPECT_EQ(placeOf([&] { message.AppendFragment(Fragment()); }), none);
}

// --- logger ---------------------------------------------------------------------------------------

TEST(RecordsPage, ALoggerTakesTheReasonsOfFailures)
{
    const Said said;
    const QString path = QStringLiteral("missing.xml");
    PelLu300RouterInterfaceXml document;
    //! [a logger]
    document.SetLogger(std::make_shared<MODELKIT::Logger>(std::make_shared<MODELKIT::QtLogSink>()));
    document.LoadXml(path); // when it fails, the reason is logged
    //! [a logger]
    EXPECT_EQ(said.texts(), QStringList(QStringLiteral(
                                "missing.xml: The file cannot be read: No such file or directory.")));
}

TEST(RecordsPage, ALoggerIsHandedDownAtOnceAndToWhatComesLaterAtTheNextOperation)
{
    const auto logger = std::make_shared<Logger>();
    PelLu300RouterInterfaceXml document = sample();
    document.SetLogger(logger);
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    EXPECT_EQ(message.GetFragment().first().GetOstraInterfacePort().GetLogger(), logger);

    Fragment later;
    later.SetLogger(std::make_shared<Logger>());
    message.AppendFragment(later);
    EXPECT_EQ(message.GetFragment().last().GetLogger(), nullptr);
    message.SetLogger(std::make_shared<Logger>());
    document.Check();
    EXPECT_EQ(message.GetLogger(), logger);
    EXPECT_EQ(message.GetFragment().last().GetLogger(), logger);
}

TEST(RecordsPage, ACopyHasNoLoggerAtAnyDepthAndWhatIsAssignedFollowsLater)
{
    const auto logger = std::make_shared<Logger>();
    PelLu300RouterInterfaceXml document = sample();
    document.SetLogger(logger);
    PelLu300RouterInterfaceXml copy(document);
    PelLu300RouterInterfaceXml assigned;
    assigned = document;
    const PelLu300RouterInterfaceXml& copied = copy;
    EXPECT_EQ(copied.GetLogger(), nullptr);
    EXPECT_EQ(copied.GetPelLu300RouterMessage().GetLogger(), nullptr);
    const PelLu300RouterInterfaceXml& given = assigned;
    EXPECT_EQ(given.GetLogger(), nullptr);
    EXPECT_EQ(given.GetPelLu300RouterMessage().GetLogger(), logger);
    given.Check();
    EXPECT_EQ(given.GetPelLu300RouterMessage().GetLogger(), nullptr);
    EXPECT_EQ(document.GetPelLu300RouterMessage().GetLogger(), logger);
}

TEST(RecordsPage, ResetLoggerLetsGoOfTheRecordsOwnOnly)
{
    auto logger = std::make_shared<Logger>();
    const std::weak_ptr<Logger> watched = logger;
    PelLu300RouterInterfaceXml document = sample();
    document.SetLogger(std::move(logger));
    document.ResetLogger();
    EXPECT_EQ(document.GetLogger(), nullptr);
    EXPECT_FALSE(watched.expired());
    document.Check();
    EXPECT_TRUE(watched.expired());
}

TEST(RecordsPage, SettingNoLoggerLetsGoOfItEverywhere)
{
    auto logger = std::make_shared<Logger>();
    const std::weak_ptr<Logger> watched = logger;
    const PelLu300RouterInterfaceXml document = sample();
    document.SetLogger(std::move(logger));
    document.SetLogger(nullptr);
    EXPECT_TRUE(watched.expired());
}

TEST(RecordsPage, CheckingAndWritingLogNothing)
{
    const auto sink = std::make_shared<MODELKIT::MemoryLogSink>();
    PelLu300RouterMessage message;
    message.SetValidate(true);
    message.SetLogger(std::make_shared<Logger>(sink));
    EXPECT_THROW(message.Check(), OutOfRangeException);
    EXPECT_THROW(xmlOf(message), OutOfRangeException);
    EXPECT_THROW(message.SetType(static_cast<PelLu300RouterMessage::Type>(9)), OutOfRangeException);
    EXPECT_TRUE(sink->GetEntries().isEmpty());
    EXPECT_THROW(message.GetXmlString(), OutOfRangeException);
    EXPECT_EQ(sink->GetEntries().size(), 1);
}

// --- any record -----------------------------------------------------------------------------------

TEST(RecordsPage, RecordInfoDescribesAnyRecord)
{
    const Said said;
    DF_Params record;
    record.SetFrequency(98.5e6);
    //! [working on any record]
    const RecordInfo& info = RecordInfo::Of(record);
    for (const MemberInfo* member : info.GetMembers())
        if (member->IsSet(record) && member->GetKind() == MemberInfo::Decimal)
            qInfo() << member->GetName() << member->GetValue(record).toDouble();
    //! [working on any record]
    EXPECT_EQ(said.texts(), QStringList(QStringLiteral("\"Frequency\" 9.85e+07")));
}

//! [refusing what is no value]
void edit(MODELKIT::IMKObject& record, const MemberInfo& member, const QVariant& typed)
{
    try {
        member.SetValue(record, typed);
    } catch (const OutOfRangeException& exception) {
        qWarning() << exception.GetText();
        if (!exception.GetClosest().isEmpty())
            qWarning() << "Did you mean" << exception.GetClosest();
    }
}
//! [refusing what is no value]

TEST(RecordsPage, AnEditorSaysWhatMayHaveBeenMeant)
{
    const Said said;
    MastershipState record;
    edit(record, *RecordInfo::Of(record).FindMember(QStringLiteral("State")), QStringLiteral("MasterPresnt"));
    EXPECT_FALSE(record.IsStateSet());
    ASSERT_EQ(said.texts().size(), 2);
    EXPECT_EQ(said.texts().at(1), QStringLiteral("Did you mean \"MasterPresent\""));
}
