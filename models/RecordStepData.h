// SPDX-License-Identifier: MIT
// What a RecordStep holds. Not installed.
#pragma once

#include "models/RecordStep.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QVector>

#include <memory>
#include <vector>

namespace ROUTERMODELS {

struct RecordStep::Data
{
    Kind kind = Kind::Nothing;
    // Of what was edited, for people.
    QString path;
    QString name;
    // The rows from the root to the value, the list, or the record whose content is another one.
    QVector<int> place;
    // Of a value or a list.
    const PELLU300ROUTERINTERFACEXML::MemberInfo* member = nullptr;

    QVariant valueBefore;
    QVariant valueAfter;
    std::unique_ptr<const MODELKIT::IMKObject> recordBefore;
    std::unique_ptr<const MODELKIT::IMKObject> recordAfter;

    // The items, from that row on; for a move, their number and the row of the first one afterwards.
    std::vector<std::unique_ptr<const MODELKIT::IMKObject>> items;
    int row = 0;
    int count = 0;
    int to = 0;
};

} // namespace ROUTERMODELS
