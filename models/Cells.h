// SPDX-License-Identifier: MIT
// What the cells of a RecordItemModel show. Not installed.
#pragma once

#include "models/RecordTree.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace ROUTERMODELS {

QString nameText(const RecordNode& node);
QString valueText(const RecordTree& tree, const RecordNode& node);
QString typeText(const RecordNode& node);
// What may be entered as the value; empty where nothing may.
QString hintText(const RecordNode& node);

// The value to edit: that of the member; of a choice, the position of the member that it carries, or -1.
QVariant editedValue(const RecordTree& tree, const RecordNode& node);
// The texts of the values that can be listed, by their numbers.
QStringList choicesAt(const RecordNode& node);

} // namespace ROUTERMODELS
