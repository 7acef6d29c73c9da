// SPDX-License-Identifier: MIT
// Editing through a RecordItemModel: values, check marks, payloads, items; what is refused; persistent
// indexes.
#include "EventLoop.h"
#include "ModelSupport.h"

#include <QtCore/QPersistentModelIndex>
#include <QtTest/QSignalSpy>

#include <typeinfo>

using namespace testing_support;
using ROUTERDOCUMENTS::Validation;

namespace {

const char* const list = "PelLu300RouterMessage/Fragment";

PelLu300RouterMessage messageIn(const WatchedModel& watched)
{
    const auto copy = watched.copy();
    return dynamic_cast<PelLu300RouterInterfaceXml&>(*copy).GetPelLu300RouterMessage();
}

// The payloads of the fragments.
QString payloadsIn(const WatchedModel& watched)
{
    QString payloads;
    const PelLu300RouterMessage message = messageIn(watched);
    for (const Fragment& fragment : message.GetFragment())
        payloads += fragment.ChoiceFragmentToName(fragment.GetChoiceFragment()).left(1);
    return payloads;
}

class Editing : public ::testing::Test
{
protected:
    // Nothing has changed, and nobody was told of a change.
    void expectUnchanged(const QStringList& refusals)
    {
        EXPECT_EQ(watched.refusals, refusals);
        EXPECT_EQ(changes.count(), 0);
        EXPECT_TRUE(watched.steps.empty());
        EXPECT_EQ(*dynamic_cast<PelLu300RouterInterfaceXml*>(watched.copy().get()), sampleDocument());
        watched.expectTold();
    }

    // Each edit can be taken back and made again.
    void TearDown() override
    {
        watched.expectTold();
        const QString after = watched.xml();
        for (auto step = watched.steps.rbegin(); step != watched.steps.rend(); ++step)
            EXPECT_TRUE(watched.model.Revert(*step));
        EXPECT_EQ(*dynamic_cast<PelLu300RouterInterfaceXml*>(watched.copy().get()), sampleDocument());
        watched.expectTold();
        for (const RecordStep& step : watched.steps)
            EXPECT_TRUE(watched.model.Apply(step));
        EXPECT_EQ(watched.xml(), after);
        watched.expectTold();
    }

    WatchedModel watched{sampleDocument()};
    QSignalSpy changes{&watched.model, &QAbstractItemModel::dataChanged};
};

} // namespace

TEST_F(Editing, SetsValuesOfEveryKind)
{
    EXPECT_TRUE(watched.set("PelLu300RouterMessage/Type", 2));
    EXPECT_TRUE(watched.set("PelLu300RouterMessage/MessageID", "7"));
    EXPECT_TRUE(watched.set("PelLu300RouterMessage/Fragment[1]/DF_Params/Bandwidth", 0.5));
    EXPECT_TRUE(watched.set("PelLu300RouterMessage/Fragment[2]/MastershipState/MasterClientID", ""));
    EXPECT_TRUE(watched.set("PelLu300RouterMessage/Fragment[3]/AcquireMastership/Success", false));
    const PelLu300RouterMessage message = messageIn(watched);
    EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Event);
    EXPECT_EQ(message.GetMessageID(), 7U);
    EXPECT_EQ(message.GetFragment()[0].GetDF_Params().GetBandwidth(), 0.5);
    EXPECT_FALSE(message.GetFragment()[2].GetAcquireMastership().GetSuccess());
    ASSERT_EQ(watched.steps.size(), 5U);
    const RecordStep& step = watched.steps[0];
    EXPECT_EQ(step.GetKind(), RecordStep::Kind::Value);
    EXPECT_EQ(step.GetPath(), "PelLu300RouterMessage/Type");
    EXPECT_EQ(step.GetText(), "Change of Type");
    EXPECT_EQ(step.GetValueBefore(), 1);
    EXPECT_EQ(step.GetValueAfter(), 2);
    EXPECT_FALSE(watched.steps[1].GetValueBefore().isValid());
    EXPECT_EQ(watched.steps[1].GetValueAfter(), 7U);
}

TEST_F(Editing, MakesNoStepOfWhatChangesNothing)
{
    EXPECT_TRUE(watched.set("PelLu300RouterMessage/Type", "Reply"));
    EXPECT_TRUE(watched.check("PelLu300RouterMessage/Type", true));
    EXPECT_TRUE(watched.check("PelLu300RouterMessage/MessageID", false));
    EXPECT_TRUE(watched.set("PelLu300RouterMessage/Fragment[1]", "DF_Params"));
    expectUnchanged({});
}

TEST_F(Editing, RefusesWhatIsNoValueAndChangesNothing)
{
    EXPECT_FALSE(watched.set("PelLu300RouterMessage/MessageID", "seven"));
    EXPECT_FALSE(watched.set("PelLu300RouterMessage/MessageID", QVariant()));
    EXPECT_FALSE(watched.set("PelLu300RouterMessage/Type", "Replay"));
    EXPECT_FALSE(watched.set("PelLu300RouterMessage/Fragment[1]", "Nothing"));
    EXPECT_FALSE(watched.set("PelLu300RouterMessage/Fragment[1]", 7));
    EXPECT_FALSE(watched.set("PelLu300RouterMessage/Fragment[1]", QVariant()));
    PelLu300RouterMessage message;
    const RecordInfo& info = RecordInfo::Of(message);
    const auto refusal = [&](const char* name, const QVariant& value) {
        return thrownBy<OutOfRangeException>([&] { info.FindMember(text(name))->SetValue(message, value); })
            .GetText();
    };
    expectUnchanged({"PelLu300RouterMessage/MessageID: " + refusal("MessageID", "seven"),
                     "PelLu300RouterMessage/MessageID: " + refusal("MessageID", QVariant()),
                     "PelLu300RouterMessage/Type: " + refusal("Type", "Replay"),
                     "PelLu300RouterMessage/Fragment[1]: \"Nothing\" is no payload of Fragment.",
                     "PelLu300RouterMessage/Fragment[1]: \"7\" is no payload of Fragment.",
                     "PelLu300RouterMessage/Fragment[1]: \"\" is no payload of Fragment."});
}

TEST_F(Editing, ObeysTheRulesOfTheSettersWhileValidationIsOn)
{
    watched.model.SetValidation(Validation::On);
    EXPECT_EQ(watched.model.GetValidation(), Validation::On);
    EXPECT_FALSE(watched.set("PelLu300RouterMessage/Type", 3));
    EXPECT_FALSE(watched.set("PelLu300RouterMessage/Fragment[2]/MastershipState/MasterClientID", QString()));
    EXPECT_FALSE(watched.model.insertRow(0, watched.at(list)));
    EXPECT_FALSE(watched.model.InsertItem(watched.at(list), 3, Fragment()));
    EXPECT_FALSE(watched.model.SetContent(watched.at("PelLu300RouterMessage/Fragment[1]"), Fragment()));
    const QString incomplete =
        ": PelLu300RouterMessage: Tried to append not completely defined or invalid item Fragment.";
    expectUnchanged(
        {"PelLu300RouterMessage/Type: enum is not valid "
         "(classname=PelLu300RouterMessage,membername=m_type)",
         "PelLu300RouterMessage/Fragment[2]/MastershipState/MasterClientID: MastershipState: Please "
         "set MasterClientID properly.",
         list + incomplete, list + incomplete, "PelLu300RouterMessage/Fragment[1]" + incomplete});
}

TEST_F(Editing, TakesAnyNumberWhileValidationIsOff)
{
    EXPECT_TRUE(watched.set("PelLu300RouterMessage/Type", 3));
    EXPECT_TRUE(watched.set("PelLu300RouterMessage/Fragment[2]/MastershipState/MasterClientID", QString()));
    EXPECT_TRUE(watched.model.insertRow(0, watched.at(list)));
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Type"), "3");
    // What was allowed is also allowed to come back when it would be refused now.
    watched.model.SetValidation(Validation::On);
}

TEST_F(Editing, DoesNotCareForTheValidationFlagOfItsRecord)
{
    EXPECT_TRUE(watched.set("PelLu300RouterMessage/Type", 3));
    EXPECT_TRUE(watched.set("PelLu300RouterMessage/Type", 0));
    watched.model.GetRecord().SetValidate(true);
}

TEST_F(Editing, SetsAndUnsetsByCheckMarks)
{
    EXPECT_TRUE(watched.check("PelLu300RouterMessage/MessageID", true));
    EXPECT_EQ(watched.value("PelLu300RouterMessage/MessageID"), "0");
    EXPECT_TRUE(watched.check("PelLu300RouterMessage/Type", false));
    EXPECT_FALSE(messageIn(watched).IsTypeSet());
    EXPECT_TRUE(watched.check("PelLu300RouterMessage/Fragment[1]/DF_Params", false));
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Fragment[1]"), "DF_Params");
    EXPECT_FALSE(messageIn(watched).GetFragment()[0].IsDF_ParamsSet());
    EXPECT_TRUE(watched.check("PelLu300RouterMessage/Fragment[1]/DF_Params", true));
    EXPECT_TRUE(watched.check(list, false));
    EXPECT_EQ(watched.model.rowCount(watched.at(list)), 0);
    EXPECT_FALSE(watched.check(list, true));
    EXPECT_TRUE(watched.check("PelLu300RouterMessage", false));
    EXPECT_EQ(watched.xml(), "<PelLu300RouterInterfaceXml/>");
    EXPECT_TRUE(watched.check("PelLu300RouterMessage", true));
    EXPECT_EQ(watched.steps.back().GetKind(), RecordStep::Kind::Content);
    EXPECT_EQ(watched.refusals, QStringList());
}

TEST_F(Editing, GivesWhatIsSetByItsMarkAValueThatTheSetterAccepts)
{
    watched.model.SetValidation(Validation::On);
    EXPECT_TRUE(watched.check("PelLu300RouterMessage/Type", false));
    EXPECT_TRUE(watched.check("PelLu300RouterMessage/Type", true));
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Type"), "Request");
    const char* const client = "PelLu300RouterMessage/Fragment[2]/MastershipState/MasterClientID";
    EXPECT_TRUE(watched.check(client, false));
    EXPECT_TRUE(watched.value(client, Qt::EditRole).toString().isNull());
    EXPECT_TRUE(watched.check(client, true));
    EXPECT_EQ(watched.value(client, Qt::EditRole), empty());
    EXPECT_FALSE(watched.value(client, Qt::EditRole).toString().isNull());
    EXPECT_EQ(watched.refusals, QStringList());
}

TEST_F(Editing, ChoosesPayloadsAndKeepsWhatTheyHeld)
{
    const char* const first = "PelLu300RouterMessage/Fragment[1]";
    EXPECT_TRUE(watched.set(first, "OstraInterfacePort"));
    EXPECT_EQ(watched.value(first), "OstraInterfacePort");
    EXPECT_TRUE(watched.set("PelLu300RouterMessage/Fragment[1]/OstraInterfacePort/Port", 5));
    EXPECT_FALSE(watched.at("PelLu300RouterMessage/Fragment[1]/DF_Params").isValid());
    EXPECT_TRUE(watched.set(first, -1));
    EXPECT_EQ(watched.model.rowCount(watched.at(first)), 0);
    EXPECT_TRUE(watched.set(first, 6));
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Fragment[1]/DF_Params/Frequency"), "98500000");
    EXPECT_TRUE(watched.set(first, empty()));
    EXPECT_EQ(watched.value(first, Qt::EditRole), -1);
    EXPECT_EQ(watched.steps.size(), 5U);
    EXPECT_EQ(watched.steps[0].GetText(), "Change of Fragment[1]");
    EXPECT_EQ(*dynamic_cast<const Fragment*>(watched.steps[0].GetRecordBefore()),
              sampleDocument().GetPelLu300RouterMessage().GetFragment()[0]);
}

TEST_F(Editing, InsertsRemovesAndMovesItems)
{
    RecordItemModel& model = watched.model;
    EXPECT_TRUE(model.insertRows(1, 2, watched.at(list)));
    EXPECT_EQ(payloadsIn(watched), "DMA");
    EXPECT_EQ(messageIn(watched).GetFragment().size(), 5);
    EXPECT_TRUE(model.removeRows(1, 2, watched.at(list)));
    EXPECT_TRUE(model.InsertItem(watched.at(list), 3, withPort(8)));
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Fragment[4]/OstraInterfacePort/Port"), "8");
    EXPECT_TRUE(model.InsertPayload(watched.at(list), 0, Fragment::RouterVtServerPort));
    EXPECT_EQ(payloadsIn(watched), "RDMAO");
    const QModelIndex parent = watched.at(list);
    EXPECT_TRUE(model.moveRows(parent, 0, 2, parent, 5));
    EXPECT_EQ(payloadsIn(watched), "MAORD");
    EXPECT_TRUE(model.moveRow(parent, 4, parent, 0));
    EXPECT_EQ(payloadsIn(watched), "DMAOR");
    EXPECT_TRUE(model.moveRows(parent, 1, 3, parent, 0));
    EXPECT_EQ(payloadsIn(watched), "MAODR");
    EXPECT_TRUE(model.moveRows(parent, 0, 1, parent, 3));
    EXPECT_EQ(payloadsIn(watched), "AOMDR");
    EXPECT_TRUE(model.removeRow(4, parent));
    EXPECT_EQ(watched.model.index(2, 0, parent).data(), "Fragment[3]");
    QStringList texts;
    for (const RecordStep& step : watched.steps)
        texts += step.GetText().section(QLatin1Char(' '), 0, 1);
    EXPECT_EQ(texts, (QStringList{"Insertion in", "Removal from", "Insertion in", "Insertion in", "Move in",
                                  "Move in", "Move in", "Move in", "Removal from"}));
}

TEST_F(Editing, FillsTheListOfAnUnsetMessage)
{
    EXPECT_TRUE(watched.check("PelLu300RouterMessage", false));
    EXPECT_TRUE(watched.model.InsertPayload(watched.at(list), 0, Fragment::DF_Params));
    EXPECT_EQ(watched.xml(),
              "<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type></Type><Fragment><DF_Params/>"
              "</Fragment></PelLu300RouterMessage></PelLu300RouterInterfaceXml>");
    EXPECT_EQ(watched.steps.back().GetPath(), list);
}

TEST_F(Editing, SetsTheRecordsAroundWhatIsEdited)
{
    watched.model.SetValidation(Validation::On);
    EXPECT_TRUE(watched.check("PelLu300RouterMessage", false));
    EXPECT_FALSE(watched.set("PelLu300RouterMessage/Type", 9));
    EXPECT_FALSE(watched.model.insertRow(0, watched.at(list)));
    // A refused edit sets nothing.
    EXPECT_EQ(watched.xml(), "<PelLu300RouterInterfaceXml/>");
    EXPECT_EQ(watched.steps.size(), 1U);
    EXPECT_TRUE(watched.set("PelLu300RouterMessage/Type", 2));
    EXPECT_TRUE(watched.value("PelLu300RouterMessage", RecordItemModel::IsSetRole).toBool());
    EXPECT_EQ(watched.steps.back().GetKind(), RecordStep::Kind::Content);
    EXPECT_EQ(watched.steps.back().GetPath(), "PelLu300RouterMessage/Type");
}

TEST_F(Editing, ReplacesTheContentOfRecords)
{
    PelLu300RouterInterfaceXml other;
    other.GetPelLu300RouterMessage().SetMessageID(9);
    other.GetPelLu300RouterMessage().AppendFragment(withPort(1));
    DF_Params params;
    params.SetBandwidth(3);
    EXPECT_TRUE(watched.model.SetContent(watched.at("PelLu300RouterMessage/Fragment[1]/DF_Params"), params));
    EXPECT_TRUE(watched.model.SetContent(watched.at("PelLu300RouterMessage/Fragment[2]"), withPort(4)));
    EXPECT_TRUE(watched.model.SetContent(watched.at("PelLu300RouterInterfaceXml"), other));
    EXPECT_EQ(*dynamic_cast<PelLu300RouterInterfaceXml*>(watched.copy().get()), other);
    EXPECT_TRUE(watched.check("PelLu300RouterMessage", false));
    EXPECT_TRUE(
        watched.model.SetContent(watched.at("PelLu300RouterMessage"), messageIn(WatchedModel(other))));
    EXPECT_FALSE(watched.model.SetContent(watched.at(list), other));
    EXPECT_FALSE(watched.model.SetContent(QModelIndex(), other));
    EXPECT_THROW(watched.model.SetContent(watched.at("PelLu300RouterMessage"), other), std::bad_cast);
    EXPECT_THROW(watched.model.InsertItem(watched.at(list), 0, other), std::bad_cast);
    EXPECT_EQ(watched.steps.size(), 5U);
}

TEST_F(Editing, IsPossibleOnlyWhereItMakesSense)
{
    RecordItemModel& model = watched.model;
    const QModelIndex items = watched.at(list);
    const QModelIndex message = watched.at("PelLu300RouterMessage");
    EXPECT_FALSE(watched.set("PelLu300RouterMessage", 1));
    EXPECT_FALSE(watched.set(list, 1));
    EXPECT_FALSE(watched.check("PelLu300RouterMessage/Fragment[1]", false));
    EXPECT_FALSE(watched.check("PelLu300RouterInterfaceXml", false));
    EXPECT_FALSE(model.setData(watched.at("PelLu300RouterMessage/Type"), 0));
    EXPECT_FALSE(model.setData(watched.at("PelLu300RouterMessage/Type", 1), 0, Qt::DisplayRole));
    EXPECT_FALSE(model.setData(QModelIndex(), 0));
    EXPECT_FALSE(model.insertRow(0, message));
    EXPECT_FALSE(model.insertRow(0));
    EXPECT_FALSE(model.insertRow(4, items));
    EXPECT_FALSE(model.insertRows(0, 0, items));
    EXPECT_FALSE(model.InsertItem(items, -1, withPort(1)));
    EXPECT_FALSE(model.InsertItem(items, 4, withPort(1)));
    EXPECT_FALSE(model.InsertItem(message, 0, withPort(1)));
    EXPECT_FALSE(model.InsertPayload(items, 0, 7));
    EXPECT_FALSE(model.InsertPayload(items, 0, -1));
    EXPECT_FALSE(model.InsertPayload(message, 0, 0));
    EXPECT_FALSE(model.removeRow(0, message));
    EXPECT_FALSE(model.removeRow(0));
    EXPECT_FALSE(model.removeRows(2, 2, items));
    EXPECT_FALSE(model.removeRows(-1, 1, items));
    EXPECT_FALSE(model.moveRows(items, 0, 1, message, 0));
    EXPECT_FALSE(model.moveRows(items, 0, 1, items, 1));
    EXPECT_FALSE(model.moveRows(items, 2, 2, items, 0));
    EXPECT_FALSE(model.moveRows(items, 0, 1, items, 4));
    EXPECT_FALSE(model.moveRows(message, 0, 1, message, 2));
    expectUnchanged({});
}

TEST_F(Editing, KeepsPersistentIndexesAtTheirMembers)
{
    RecordItemModel& model = watched.model;
    const QPersistentModelIndex frequency =
        watched.at("PelLu300RouterMessage/Fragment[1]/DF_Params/Frequency", 1);
    const QPersistentModelIndex state = watched.at("PelLu300RouterMessage/Fragment[2]/MastershipState/State");
    const QPersistentModelIndex success =
        watched.at("PelLu300RouterMessage/Fragment[3]/AcquireMastership/Success");
    EXPECT_TRUE(model.insertRow(0, watched.at(list)));
    EXPECT_EQ(model.GetPath(frequency), "PelLu300RouterMessage/Fragment[2]/DF_Params/Frequency");
    EXPECT_EQ(frequency.column(), 1);
    EXPECT_EQ(frequency.data(), "98500000");
    EXPECT_TRUE(model.moveRow(watched.at(list), 1, watched.at(list), 4));
    EXPECT_EQ(model.GetPath(frequency), "PelLu300RouterMessage/Fragment[4]/DF_Params/Frequency");
    EXPECT_EQ(model.GetPath(state), "PelLu300RouterMessage/Fragment[2]/MastershipState/State");
    EXPECT_TRUE(model.removeRow(1, watched.at(list)));
    EXPECT_FALSE(state.isValid());
    EXPECT_EQ(model.GetPath(success), "PelLu300RouterMessage/Fragment[2]/AcquireMastership/Success");
    EXPECT_TRUE(watched.set("PelLu300RouterMessage/Fragment[3]", "OstraInterfacePort"));
    EXPECT_FALSE(frequency.isValid());
    EXPECT_TRUE(watched.set("PelLu300RouterMessage/Type", 0));
    EXPECT_TRUE(success.isValid());
    // A whole content keeps the rows that it also has.
    EXPECT_TRUE(model.SetContent(watched.at("PelLu300RouterInterfaceXml"), *watched.copy()));
    EXPECT_EQ(model.GetPath(success), "PelLu300RouterMessage/Fragment[2]/AcquireMastership/Success");
    EXPECT_TRUE(watched.check(list, false));
    EXPECT_FALSE(success.isValid());
}

TEST_F(Editing, TellsViewsThatAskForRowsOnlyWhenOthersGo)
{
    // Nobody has asked for rows of this model before.
    RecordItemModel model(sampleDocument());
    QString shown;
    QObject::connect(&model, &QAbstractItemModel::rowsAboutToBeRemoved, [&] {
        if (shown.isNull())
            shown = Mirror::textOf(model);
    });
    const QModelIndex root = model.index(0, 0);
    const QModelIndex message = model.index(0, 0, root);
    const QModelIndex items = model.index(2, 0, message);
    EXPECT_EQ(model.rowCount(model.index(1, 0, items)), 1);
    PelLu300RouterInterfaceXml other;
    for (int i = 0; i < 3; ++i)
        other.GetPelLu300RouterMessage().AddFragment().GetReleaseMastership();
    EXPECT_TRUE(model.SetContent(root, other));
    EXPECT_FALSE(shown.isNull());
    EXPECT_EQ(Mirror::textOf(model), Mirror::textOf(RecordItemModel(other)));
}

TEST_F(Editing, RefusesStepsThatDoNotFit)
{
    ASSERT_TRUE(watched.set("PelLu300RouterMessage/Fragment[3]/AcquireMastership/Success", false));
    ASSERT_TRUE(watched.set("PelLu300RouterMessage/Fragment[3]", 0));
    ASSERT_TRUE(watched.model.insertRows(3, 2, watched.at(list)));
    ASSERT_TRUE(watched.model.moveRow(watched.at(list), 4, watched.at(list), 0));
    ASSERT_TRUE(watched.model.removeRow(4, watched.at(list)));
    ASSERT_EQ(watched.steps.size(), 5U);
    const auto runs = [&](RecordItemModel& model, bool isForward) {
        QString results;
        for (const RecordStep& step : watched.steps)
            results += QString::number(isForward ? model.Apply(step) : model.Revert(step));
        return results;
    };
    PelLu300RouterInterfaceXml unset;
    PelLu300RouterInterfaceXml shorter;
    shorter.GetPelLu300RouterMessage().AppendFragment(withPort(1));
    for (const MODELKIT::IMKObject* record :
         std::initializer_list<const MODELKIT::IMKObject*>{&unset, &shorter}) {
        WatchedModel other(*record);
        const QString before = other.xml();
        EXPECT_EQ(runs(other.model, true), "00000");
        EXPECT_EQ(runs(other.model, false), "00000");
        EXPECT_EQ(other.xml(), before);
        EXPECT_TRUE(other.model.Apply(RecordStep()));
    }
    WatchedModel params((DF_Params()));
    EXPECT_EQ(runs(params.model, true), "00000");
    EXPECT_EQ(RecordStep().GetKind(), RecordStep::Kind::Nothing);
    EXPECT_EQ(RecordStep().GetText(), QString());
}

TEST(EditingDefaults, EditsBelowADefaultThatHoldsItems)
{
    // The message is not set, but its default has content, which views show.
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage standard = messageIn(WatchedModel(sampleDocument()));
    document.SetDefaultPelLu300RouterMessage(standard);
    document.ResetPelLu300RouterMessage();
    const auto expectUndone = [&](const std::function<bool(WatchedModel&)>& edit) {
        WatchedModel watched(document);
        ASSERT_EQ(watched.model.rowCount(watched.at(list)), 3);
        const QString before = Mirror::textOf(watched.model);
        EXPECT_TRUE(edit(watched));
        watched.expectTold();
        EXPECT_TRUE(watched.value("PelLu300RouterMessage", RecordItemModel::IsSetRole).toBool());
        ASSERT_EQ(watched.steps.size(), 1U);
        EXPECT_TRUE(watched.model.Revert(watched.steps[0]));
        EXPECT_EQ(Mirror::textOf(watched.model), before);
        watched.expectTold();
    };
    expectUndone([](WatchedModel& watched) { return watched.model.removeRows(0, 2, watched.at(list)); });
    expectUndone([](WatchedModel& watched) {
        return watched.model.moveRow(watched.at(list), 0, watched.at(list), 3)
               && watched.value(list) == "[3]";
    });
    expectUndone([](WatchedModel& watched) { return watched.model.insertRow(1, watched.at(list)); });
    expectUndone([](WatchedModel& watched) { return watched.check("PelLu300RouterMessage/Type", false); });
    expectUndone([](WatchedModel& watched) {
        return watched.set("PelLu300RouterMessage/Fragment[1]/DF_Params/Frequency", 1);
    });
}
