// SPDX-License-Identifier: MIT
// The samples and statements of docs/copies.md.

#include "PageSamples.h"
#include "Said.h"
#include "ShownOnPage.h"

#include <utility>
#include <vector>

using namespace testing_support;

TEST(CopiesPage, BothKindsOfCopiesAreIndependent)
{
    const Said said;
    PelLu300RouterInterfaceXml document = sample();
    //! [copies]
    PelLu300RouterInterfaceXml copy(document); // has data of its own at once
    PelLu300RouterInterfaceXml sent;
    sent = document; // shares the data until one of the two is accessed
    document.GetPelLu300RouterMessage().SetMessageID(2);
    const auto number = [](const PelLu300RouterInterfaceXml& any) {
        return QString::number(any.GetPelLu300RouterMessage().GetMessageID());
    };
    qInfo().noquote() << number(document) + " and " + number(copy) + ", " + number(document) + " and "
                             + number(sent);
    //! [copies]
    EXPECT_EQ(Said::texts().join(QLatin1Char('\n')), shownOn("docs/copies.md", QStringLiteral("2 and 1")));
}

TEST(CopiesPage, AContainerTakesADocumentByMoving)
{
    PelLu300RouterInterfaceXml document = sample();
    const PelLu300RouterMessage* const message = &document.GetPelLu300RouterMessage();
    //! [moving into a container]
    std::vector<PelLu300RouterInterfaceXml> received;
    received.push_back(std::move(document)); // the document is empty now
    //! [moving into a container]
    EXPECT_EQ(&received.front().GetPelLu300RouterMessage(), message);
    EXPECT_FALSE(document.IsInitialized()); // NOLINT(bugprone-use-after-move)
}

TEST(CopiesPage, AReferenceThatIsOlderThanTheCopyIsWrong)
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

TEST(CopiesPage, AReferenceThatIsTakenAfterTheCopyIsRight)
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

TEST(CopiesPage, AnOldReferenceChangesBothAlsoFromTwoLevelsBelow)
{
    PelLu300RouterInterfaceXml document = sample();
    Fragment& fragment = document.GetPelLu300RouterMessage().GetFragment().first();
    PelLu300RouterInterfaceXml sent;
    sent = document;
    fragment.GetOstraInterfacePort().SetPort(2);
    EXPECT_EQ(port(document.GetPelLu300RouterMessage()), 2U);
    EXPECT_EQ(port(sent.GetPelLu300RouterMessage()), 2U);
}

TEST(CopiesPage, SettingARecordAsAMemberIsAnAssignment)
{
    PelLu300RouterMessage message = sample().GetPelLu300RouterMessage();
    Fragment& fragment = message.GetFragment().first();
    PelLu300RouterInterfaceXml document;
    document.SetPelLu300RouterMessage(message);
    fragment.GetOstraInterfacePort().SetPort(2);
    EXPECT_EQ(port(message), 2U);
    EXPECT_EQ(port(document.GetPelLu300RouterMessage()), 2U);
}

TEST(CopiesPage, AListTakenByValueSharesItsItems)
{
    PelLu300RouterMessage message = sample().GetPelLu300RouterMessage();
    Fragment& fragment = message.GetFragment().first();
    const QVector<Fragment> items = message.GetFragment();
    fragment.GetOstraInterfacePort().SetPort(2);
    EXPECT_EQ(items.first().GetOstraInterfacePort().GetPort(), 2U);
    EXPECT_EQ(port(message), 2U);
}

TEST(CopiesPage, CopyConstructionAndAppendingShareNothingAtAnyLevel)
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
