// SPDX-License-Identifier: MIT
#include "editors/RecordDelegate.h"

#include "documents/Text.h"
#include "models/RecordItemModel.h"

#include <QtCore/QLocale>
#include <QtCore/QRegularExpression>
#include <QtGui/QDoubleValidator>
#include <QtGui/QRegularExpressionValidator>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>

#include <limits>

namespace ROUTEREDITORS {

using ROUTERMODELS::RecordItemModel;

namespace {

// Set in a list when somebody has chosen, even what it showed before, and the model does not know it yet.
const char* const chosenProperty = "RecordDelegateChosen";

QLineEdit* newLine(QWidget* parent, int editor)
{
    auto* const line = new QLineEdit(parent);
    line->setFrame(false);
    // A line truncates longer texts without a word.
    line->setMaxLength(std::numeric_limits<int>::max());
    if (editor == RecordItemModel::IntegerEditor) {
        line->setValidator(
            new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]+")), line));
    } else if (editor == RecordItemModel::DecimalEditor) {
        auto* const validator = new QDoubleValidator(line);
        // The cells show numbers in the same way.
        validator->setLocale(QLocale::c());
        line->setValidator(validator);
    }
    return line;
}

// The texts of the values begin behind the text for none, if there is one.
int firstValue(const QModelIndex& index)
{
    return index.data(RecordItemModel::EditorRole).toInt() == RecordItemModel::PayloadEditor ? 1 : 0;
}

QString lineText(const QModelIndex& index)
{
    const QVariant value = index.data(Qt::EditRole);
    return index.data(RecordItemModel::EditorRole).toInt() == RecordItemModel::DecimalEditor
               ? ROUTERDOCUMENTS::Exactly(value.toDouble())
               : value.toString();
}

} // namespace

RecordDelegate::RecordDelegate(QObject* parent) : QStyledItemDelegate(parent) {}

RecordDelegate::~RecordDelegate() = default;

QWidget* RecordDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                      const QModelIndex& index) const
{
    const int editor = index.data(RecordItemModel::EditorRole).toInt();
    if (editor == RecordItemModel::NoEditor)
        return nullptr;
    if (editor != RecordItemModel::ListEditor && editor != RecordItemModel::PayloadEditor)
        return newLine(parent, editor);
    auto* const list = new QComboBox(parent);
    if (firstValue(index) == 1)
        list->addItem(tr("(none)"));
    list->addItems(index.data(RecordItemModel::ChoicesRole).toStringList());
    auto* const delegate = const_cast<RecordDelegate*>(this);
    connect(list, QOverload<int>::of(&QComboBox::activated), delegate, [delegate, list] {
        list->setProperty(chosenProperty, true);
        Q_EMIT delegate->commitData(list);
    });
    return list;
}

void RecordDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    // Views call this whenever the cell changes, even while somebody types.
    if (auto* const list = qobject_cast<QComboBox*>(editor)) {
        if (!list->property(chosenProperty).toBool())
            list->setCurrentIndex(index.data(Qt::EditRole).toInt() + firstValue(index));
    } else if (auto* const line = qobject_cast<QLineEdit*>(editor)) {
        if (!line->isModified())
            line->setText(lineText(index));
    }
}

void RecordDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const
{
    if (auto* const list = qobject_cast<QComboBox*>(editor)) {
        if (!list->property(chosenProperty).toBool())
            return;
        // From here on the list shows again what the model has, which may refuse the value.
        list->setProperty(chosenProperty, false);
        model->setData(index, list->currentIndex() - firstValue(index));
        setEditorData(list, index);
    } else if (const auto* const line = qobject_cast<QLineEdit*>(editor)) {
        if (line->isModified())
            model->setData(index, line->text());
    }
}

void RecordDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    const QVariant isSet = index.data(RecordItemModel::IsSetRole);
    if (isSet.isValid() && !isSet.toBool())
        option->palette.setColor(QPalette::Text, option->palette.color(QPalette::Disabled, QPalette::Text));
}

} // namespace ROUTEREDITORS
