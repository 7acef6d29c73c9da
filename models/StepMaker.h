// SPDX-License-Identifier: MIT
// Edits that somebody wants as steps that can be made. Not installed.
#pragma once

#include "models/RecordStep.h"
#include "models/RecordTree.h"

#include <QtCore/QVariant>

#include <functional>
#include <optional>
#include <vector>

namespace ROUTERMODELS {

// Makes steps, and changes nothing itself. Each edit is first tried on a new record of the class, under the
// rules of its setters. So a step can be made without an exception of a record, and a refused edit has not
// set any record on its way.
//
// The functions throw an MKException when a record refuses the edit. They return no value when nothing would
// change.
class StepMaker
{
public:
    using Wanted = std::optional<RecordStep>;

    StepMaker(RecordTree& tree, bool validate) : m_tree(tree), m_validate(validate) {}

    Wanted setValue(const RecordNode& node, const QVariant& value) const;
    // Sets a member to what an editor begins with, or makes it unset.
    Wanted setPresent(const RecordNode& node, bool isPresent) const;
    // A null member chooses none.
    Wanted choose(const RecordNode& node, const PELLU300ROUTERINTERFACEXML::MemberInfo* payload) const;
    // Throws std::bad_cast when the content is of another class.
    Wanted setContent(const RecordNode& node, const MODELKIT::IMKObject& content) const;

    using Items = std::vector<std::unique_ptr<const MODELKIT::IMKObject>>;
    // Throws std::bad_cast when an item is of another class.
    Wanted insertItems(const RecordNode& list, int row, Items items) const;
    Wanted removeItems(const RecordNode& list, int row, int count) const;
    // To: the row of the first item afterwards.
    Wanted moveItems(const RecordNode& list, int row, int count, int to) const;

private:
    using Change = std::function<void(MODELKIT::IMKObject&)>;

    std::unique_ptr<MODELKIT::IMKObject> newRecord(const PELLU300ROUTERINTERFACEXML::RecordInfo& info) const;
    static std::shared_ptr<RecordStep::Data> newStep(RecordStep::Kind kind, const RecordNode& node);
    RecordStep changeOf(const RecordNode& changed, const RecordNode& record, const Change& change) const;

    RecordTree& m_tree;
    bool m_validate;
};

} // namespace ROUTERMODELS
