// SPDX-License-Identifier: MIT
// What happens behind a RecordItemModel: making steps in its record, and telling views of it. Not installed.
#pragma once

#include "models/RecordItemModel.h"
#include "models/RecordStepData.h"
#include "models/StepMaker.h"

#include <functional>
#include <memory>
#include <optional>

namespace ROUTERMODELS {

class RecordItemModel::Machine
{
public:
    Machine(RecordItemModel& model, const MODELKIT::IMKObject& record)
        : m_model(model), m_tree(std::make_unique<RecordTree>(record))
    {}

    void setRecord(const MODELKIT::IMKObject& record);
    RecordTree& tree() { return *m_tree; }

    // Null for an invalid index.
    static RecordNode* nodeOf(const QModelIndex& index)
    {
        return static_cast<RecordNode*>(index.internalPointer());
    }
    QModelIndex indexOf(const RecordNode& node, int column = NameColumn) const;

    // Makes the step that is wanted. False if a record refuses it.
    bool edit(const RecordNode& node, const std::function<StepMaker::Wanted(const StepMaker&)>& wanted);
    // Makes a step or takes it back. False if it does not fit the record.
    bool run(const RecordStep& step, bool isForward);
    void refuse(const RecordNode& node, const QString& reason);
    void retranslate();

    ROUTERDOCUMENTS::Validation validation = ROUTERDOCUMENTS::Validation::Off;

private:
    using Items = StepMaker::Items;

    bool fits(const RecordStep::Data& step, bool isForward, RecordNode* node);
    bool fitsList(const RecordStep::Data& step, bool isForward, RecordNode& list);

    void changeValue(RecordNode& node, const QVariant& value);
    void changeContent(RecordNode& node, const MODELKIT::IMKObject& content);
    void insertItems(RecordNode& list, int row, const Items& items);
    void removeItems(RecordNode& list, int row, int count);
    void moveItems(RecordNode& list, int row, int count, int to);

    bool shrink(RecordNode& node, const MODELKIT::IMKObject& future);
    bool shrinkList(RecordNode& list, const MODELKIT::IMKObject& future);
    void grow(RecordNode& node);
    void removeRowsOf(RecordNode& parent, int row, int count);
    void insertRowsOf(RecordNode& parent, int row, int count);

    void tellNumbers(RecordNode& list, int from);
    void tellRow(const RecordNode& node);
    void tellWithOwners(const RecordNode& node);
    void tellBelow(const RecordNode& node);

    RecordItemModel& m_model;
    std::unique_ptr<RecordTree> m_tree;
};

} // namespace ROUTERMODELS
