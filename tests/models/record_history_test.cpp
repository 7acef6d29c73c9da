// SPDX-License-Identifier: MIT
// Undo and redo of edits.
#include "ModelSupport.h"

#include "models/RecordHistory.h"

#include <QtTest/QSignalSpy>

using namespace testing_support;
using ROUTERMODELS::RecordHistory;

namespace {

class History : public ::testing::Test
{
protected:
    void setPort(unsigned int port) { ASSERT_TRUE(watched.set("Port", port)); }
    QString port() const { return watched.value("Port").toString(); }

    WatchedModel watched{OstraInterfacePort()};
    RecordHistory history{watched.model};
    QSignalSpy changes{&history, &RecordHistory::Changed};
};

} // namespace

TEST_F(History, HasNothingAtFirst)
{
    EXPECT_FALSE(history.CanUndo());
    EXPECT_FALSE(history.CanRedo());
    EXPECT_FALSE(history.Undo());
    EXPECT_FALSE(history.Redo());
    EXPECT_EQ(history.GetUndoText(), QString());
    EXPECT_EQ(history.GetRedoText(), QString());
    EXPECT_FALSE(history.IsModified());
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(History, TakesEditsBackAndMakesThemAgain)
{
    setPort(1);
    setPort(2);
    EXPECT_EQ(history.GetUndoText(), "Change of Port");
    EXPECT_EQ(history.GetRedoText(), QString());
    EXPECT_TRUE(history.Undo());
    EXPECT_EQ(port(), "1");
    EXPECT_EQ(history.GetRedoText(), "Change of Port");
    EXPECT_TRUE(history.Undo());
    EXPECT_EQ(port(), QString());
    EXPECT_FALSE(history.Undo());
    EXPECT_TRUE(history.Redo());
    EXPECT_TRUE(history.Redo());
    EXPECT_FALSE(history.Redo());
    EXPECT_EQ(port(), "2");
    // Taking back is no edit of its own.
    EXPECT_EQ(watched.steps.size(), 2U);
    EXPECT_EQ(changes.count(), 6);
    watched.expectTold();
}

TEST_F(History, ForgetsWhatWasTakenBackWhenSomethingElseIsEdited)
{
    setPort(1);
    setPort(2);
    EXPECT_TRUE(history.Undo());
    setPort(3);
    EXPECT_FALSE(history.CanRedo());
    EXPECT_TRUE(history.Undo());
    EXPECT_EQ(port(), "1");
}

TEST_F(History, TellsWhetherTheRecordIsModified)
{
    setPort(1);
    EXPECT_TRUE(history.IsModified());
    history.SetClean();
    EXPECT_FALSE(history.IsModified());
    EXPECT_TRUE(history.Undo());
    EXPECT_TRUE(history.IsModified());
    EXPECT_TRUE(history.Redo());
    EXPECT_FALSE(history.IsModified());
    // The clean record does not come back.
    EXPECT_TRUE(history.Undo());
    setPort(2);
    EXPECT_TRUE(history.Undo());
    EXPECT_TRUE(history.IsModified());
    history.Clear();
    EXPECT_TRUE(history.IsModified());
    history.SetClean();
    history.Clear();
    EXPECT_FALSE(history.IsModified());
}

TEST_F(History, ForgetsTheOldestEdits)
{
    EXPECT_EQ(history.GetLimit(), 1000);
    for (unsigned int i = 1; i <= 5; ++i)
        setPort(i);
    history.SetLimit(3);
    EXPECT_TRUE(history.Undo());
    EXPECT_TRUE(history.Undo());
    EXPECT_TRUE(history.Undo());
    EXPECT_FALSE(history.Undo());
    EXPECT_EQ(port(), "2");
    EXPECT_TRUE(history.IsModified());
    history.SetLimit(0);
    EXPECT_EQ(history.GetLimit(), 1);
    EXPECT_TRUE(history.Redo());
    EXPECT_EQ(port(), "3");
    EXPECT_FALSE(history.CanRedo());
    setPort(7);
    EXPECT_TRUE(history.Undo());
    EXPECT_FALSE(history.Undo());
}

TEST_F(History, DoesNotTakeForgottenEditsForClean)
{
    setPort(1);
    setPort(2);
    history.SetClean();
    EXPECT_TRUE(history.Undo());
    EXPECT_TRUE(history.Undo());
    history.SetLimit(1);
    EXPECT_TRUE(history.Redo());
    EXPECT_EQ(port(), "1");
    EXPECT_TRUE(history.IsModified());
    EXPECT_TRUE(history.Undo());
    setPort(3);
    EXPECT_TRUE(history.IsModified());
}

TEST_F(History, BeginsAnewWithAnotherRecord)
{
    setPort(1);
    watched.model.SetRecord(OstraInterfacePort());
    EXPECT_FALSE(history.CanUndo());
    EXPECT_FALSE(history.IsModified());
}

TEST_F(History, ForgetsStepsThatDoNotFitAnyMore)
{
    WatchedModel message((PelLu300RouterMessage()));
    RecordHistory edits(message.model);
    ASSERT_TRUE(message.model.InsertPayload(message.at("Fragment"), 0, 0));
    ASSERT_TRUE(message.model.InsertPayload(message.at("Fragment"), 1, 0));
    ASSERT_TRUE(message.model.Revert(message.steps[1]));
    ASSERT_TRUE(message.model.Revert(message.steps[0]));
    EXPECT_FALSE(edits.Undo());
    EXPECT_FALSE(edits.CanUndo());
    EXPECT_TRUE(edits.IsModified());
    EXPECT_EQ(message.model.rowCount(message.at("Fragment")), 0);
}
