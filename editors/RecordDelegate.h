// SPDX-License-Identifier: MIT
/// \file
/// Editors for the values of a RecordItemModel in Qt's item views.
#pragma once

#include "editors/Export.h"

#include <QtWidgets/QStyledItemDelegate>

namespace ROUTEREDITORS {

/// Edits the cells of a RecordItemModel, also through proxy models: numbers and texts in a line, enumerators,
/// truth values and payloads in a list. Rows of members that are not set are grey.
///
/// An editor that was only opened and closed changes nothing, so it does not set a member. What a record
/// refuses is told by RecordItemModel::Refused(), and the cell keeps its value.
class ROUTEREDITORS_EXPORT RecordDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// A delegate for all columns.
    explicit RecordDelegate(QObject* parent = nullptr);
    ~RecordDelegate() override;

    /// A line or a list, as RecordItemModel::EditorRole tells; null where there is no value.
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    /// Shows the value in the editor, unless somebody has begun to edit it.
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    /// Gives the value to the model if somebody has edited it.
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

protected:
    /// Greys what is not set.
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

} // namespace ROUTEREDITORS
