// SPDX-License-Identifier: MIT
// Random edits: views are told of every change, nothing is lost, and all of it can be taken back.
#include "EventLoop.h"
#include "ModelSupport.h"

#include "models/RecordHistory.h"

#include <QtCore/QPersistentModelIndex>

#include <random>

using namespace testing_support;
using ROUTERDOCUMENTS::Validation;
using ROUTERMODELS::RecordHistory;

namespace {

class Chance
{
public:
    explicit Chance(unsigned int seed) : m_engine(seed) {}
    int below(int limit) { return static_cast<int>(m_engine() % static_cast<unsigned int>(limit)); }

private:
    std::mt19937 m_engine;
};

// All rows in order.
void collect(const QAbstractItemModel& model, const QModelIndex& parent, std::vector<QModelIndex>& all)
{
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        all.push_back(index);
        collect(model, index, all);
    }
}

QVariant anyValue(Chance& chance)
{
    switch (chance.below(8)) {
    case 0:
        return QVariant();
    case 1:
        return QString();
    case 2:
        return QStringLiteral("text %1").arg(chance.below(3));
    case 3:
        return chance.below(2) == 0;
    case 4:
        return chance.below(1000) / 4.0;
    default:
        return chance.below(10) - 2;
    }
}

bool editAnything(WatchedModel& watched, Chance& chance)
{
    RecordItemModel& model = watched.model;
    std::vector<QModelIndex> all;
    collect(model, QModelIndex(), all);
    const QModelIndex index = all[static_cast<std::size_t>(chance.below(static_cast<int>(all.size())))];
    const QModelIndex items = watched.at(chance.below(2) ? "Fragment" : "PelLu300RouterMessage/Fragment");
    const int size = model.rowCount(items);
    switch (chance.below(9)) {
    case 0:
        return model.setData(index, chance.below(3) == 0 ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    case 1:
        return model.insertRows(chance.below(size + 1), 1 + chance.below(2), items);
    case 2:
        return model.removeRows(chance.below(size + 1), 1 + chance.below(2), items);
    case 3:
        return model.moveRows(items, chance.below(size + 1), 1 + chance.below(3), items,
                              chance.below(size + 1));
    case 4:
        return model.InsertPayload(items, chance.below(size + 1), chance.below(7));
    case 5: {
        const MODELKIT::IMKObject* const record = model.FindRecord(index);
        return record && model.SetContent(index, *RecordInfo::Of(*record).Create());
    }
    default:
        return model.setData(index.siblingAtColumn(1), anyValue(chance));
    }
}

void editRandomly(const MODELKIT::IMKObject& record, unsigned int seed)
{
    SCOPED_TRACE(seed);
    Chance chance(seed);
    WatchedModel watched(record);
    RecordHistory history(watched.model);
    const QString first = Mirror::textOf(watched.model);
    int edits = 0;
    for (int i = 0; i < 120 && !::testing::Test::HasFailure(); ++i) {
        watched.model.SetValidation(chance.below(2) ? Validation::On : Validation::Off);
        std::vector<QModelIndex> all;
        collect(watched.model, QModelIndex(), all);
        const QPersistentModelIndex kept =
            all[static_cast<std::size_t>(chance.below(static_cast<int>(all.size())))];
        const QString name = kept.data().toString().section(QLatin1Char('['), 0, 0);

        const QString before = Mirror::textOf(watched.model);
        const auto steps = watched.steps.size();
        const auto refusals = watched.refusals.size();
        const bool isEdited = editAnything(watched, chance);
        watched.expectTold();
        EXPECT_LE(watched.steps.size() - steps, isEdited ? 1U : 0U);
        if (watched.steps.size() == steps)
            EXPECT_EQ(Mirror::textOf(watched.model), before);
        else
            ++edits;
        EXPECT_LE(watched.refusals.size() - refusals, isEdited ? 0 : 1);
        if (kept.isValid()) {
            EXPECT_EQ(kept.data().toString().section(QLatin1Char('['), 0, 0), name);
            EXPECT_EQ(watched.model.FindPath(watched.model.GetPath(kept)), kept);
        }
        if (chance.below(4) == 0) {
            const QString after = Mirror::textOf(watched.model);
            EXPECT_EQ(history.Undo(), edits > 0);
            watched.expectTold();
            EXPECT_EQ(history.Redo(), edits > 0);
            EXPECT_EQ(Mirror::textOf(watched.model), after);
        }
    }
    EXPECT_GT(edits, 10);
    const QString last = Mirror::textOf(watched.model);
    while (history.Undo())
        watched.expectTold();
    EXPECT_EQ(Mirror::textOf(watched.model), first);
    while (history.Redo())
        continue;
    EXPECT_EQ(Mirror::textOf(watched.model), last);
    watched.expectTold();
}

} // namespace

TEST(RandomEdits, OfADocument)
{
    for (unsigned int seed = 1; seed <= 5 && !HasFailure(); ++seed)
        editRandomly(sampleDocument(), seed);
}

TEST(RandomEdits, OfEveryKindOfRecord)
{
    for (const RecordInfo* info : RecordInfo::All())
        if (!HasFailure() && info->GetMembers().size() > 0)
            editRandomly(*info->Create(), 100);
}
