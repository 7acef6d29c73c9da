// SPDX-License-Identifier: MIT
/// \file
/// Any record as an item model, for views and editors.
#pragma once

#include "models/Export.h"
#include "models/RecordStep.h"

#include "documents/Validation.h"
#include "modelkit/IMKObject.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QModelIndex>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <memory>

namespace ROUTERMODELS {

/// A record as a tree of rows that can be edited. The only row at the top is the record itself. Below a
/// record are its members, below a list its items, and below a choice such as a fragment the member that it
/// carries.
///
/// | Column | What it shows | What is edited there |
/// |---|---|---|
/// | NameColumn | the name, and a check mark that tells whether the member is set | set and not set |
/// | ValueColumn | the value, what is set in a record, the number of items, the payload | values, payloads |
/// | TypeColumn | the type in words | |
///
/// Edits obey the rules of the record's setters, as far as SetValidation() tells. An edit that a record
/// refuses changes nothing and emits Refused(). An edit below a record that is not set also sets that one.
/// An edit that changes nothing is no edit: it succeeds and emits no signal.
///
/// Names of enumerators and payloads are translated as by the records' own `GetGUITypes()` and its sisters.
/// Texts are safe to display: control characters are escaped, and long ones are truncated.
///
/// Like any item model, it is used by one thread, and nobody may edit it from within one of its signals
/// except Edited() and Refused(). `std::bad_alloc` passes through; after that the model must be given a
/// record anew.
class ROUTERMODELS_EXPORT RecordItemModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    /// The columns.
    enum Column : int
    {
        NameColumn,  ///< the name of the row, and whether it is set
        ValueColumn, ///< the value
        TypeColumn,  ///< the type in words
        ColumnCount  ///< how many there are
    };

    /// What the rows tell besides the roles of Qt. All columns of a row tell the same.
    enum Role : int
    {
        /// `bool`: whether the member is set. Always true for items and for the record itself.
        IsSetRole = Qt::UserRole,
        /// `QString`: see GetPath().
        PathRole,
        /// `int`: how the value is edited, an Editor.
        EditorRole,
        /// `QStringList`: the display texts of all values, if they can be listed. The value to edit is the
        /// position of its text. In a choice, the values are its members, and -1 stands for none.
        ChoicesRole
    };

    /// How a value is edited.
    enum Editor : int
    {
        NoEditor,      ///< there is no value
        IntegerEditor, ///< a number from 0 to 4294967295
        DecimalEditor, ///< a number
        TextEditor,    ///< a text
        ListEditor,    ///< one of ChoicesRole
        PayloadEditor  ///< one of ChoicesRole, or none
    };

    /// An empty document.
    explicit RecordItemModel(QObject* parent = nullptr);
    /// A model of the content of \a record, see SetRecord().
    /// \param parent deletes the model, as with any QObject.
    explicit RecordItemModel(const MODELKIT::IMKObject& record, QObject* parent = nullptr);
    ~RecordItemModel() override;

    /// \name The record
    /// @{

    /// Resets the model. It keeps the content of the record from now on, not the record: a derived class, the
    /// name of the object, its validation flag and its logger do not count.
    /// \throws std::bad_cast when the object is no record of the record library.
    void SetRecord(const MODELKIT::IMKObject& record);
    /// The record as it is now. Valid until the model changes. To write or to check it, assign it to a record
    /// of your own, because even that changes the settings of a record.
    const MODELKIT::IMKObject& GetRecord() const;
    /// The record at the row, valid in the same way; null when a value or a list is there.
    const MODELKIT::IMKObject* FindRecord(const QModelIndex& index) const;

    /// Whether setters refuse what records refuse while validation is on. Off at first.
    void SetValidation(ROUTERDOCUMENTS::Validation validation);
    /// See SetValidation().
    ROUTERDOCUMENTS::Validation GetValidation() const;

    /// @}
    /// \name Paths
    /// @{

    /// The path of the row as Difference.h and PathPattern.h have it:
    /// "PelLu300RouterMessage/Fragment[2]/DF_Params/Frequency". Empty for an invalid index.
    QString GetPath(const QModelIndex& index) const;
    /// The row at such a path, or at one of a MODELKIT::Place, which begins with "/"; invalid when there is
    /// none.
    QModelIndex FindPath(const QString& path) const;

    /// @}
    /// \name Editing
    /// Values, payloads and check marks are edited with setData(), items of lists also with the functions of
    /// QAbstractItemModel. All return false when the edit was refused or is not possible there.
    /// @{

    /// Replaces the content of the record at \a index by that of another one, and sets it.
    /// \throws std::bad_cast when the content is of another class.
    bool SetContent(const QModelIndex& index, const MODELKIT::IMKObject& content);
    /// Inserts a copy of the item in a list.
    /// \param row from 0 to the number of items.
    /// \throws std::bad_cast when the item is of another class.
    bool InsertItem(const QModelIndex& list, int row, const MODELKIT::IMKObject& item);
    /// Inserts an item that carries an empty payload in a list.
    /// \param row as for InsertItem().
    /// \param payload the number of the payload in ChoicesRole of an item: the position of a member in its
    /// choice.
    bool InsertPayload(const QModelIndex& list, int row, int payload);

    /// Takes an edit of this model back. The steps made after it must have been taken back before. No rules
    /// are applied, because the model had that content before.
    /// \return false, changing nothing, when the step does not fit the record.
    bool Revert(const RecordStep& step);
    /// Makes an edit again that was taken back, in the same way.
    bool Apply(const RecordStep& step);

    /// @}

    /// Tells views that all texts may have changed. Call it when translations were installed or removed.
    void Retranslate();

    /// \name What a QAbstractItemModel has
    /// @{

    /// The cell; see there.
    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    /// The row above.
    QModelIndex parent(const QModelIndex& child) const override;
    using QObject::parent;
    /// The number of rows below.
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    /// ColumnCount, below the first column.
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    /// What a cell shows.
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    /// The names of the columns, translated in the context of this class.
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    /// What can be done with a cell. A list without items cannot be set by its check mark.
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// The roles with their names for QML.
    QHash<int, QByteArray> roleNames() const override;

    /// Edits a value or chooses a payload with Qt::EditRole in the ValueColumn, and sets or unsets a member
    /// with Qt::CheckStateRole in the NameColumn. What is taken for a value is described at MemberInfo; for a
    /// payload it is the number or the name of the member, and -1 or an empty text for none. A payload keeps
    /// what it held when the fragment carried it before. A member that becomes set by its check mark has its
    /// default, or else the first value that its setter accepts.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    /// Inserts empty items in a list. While validation is on, records refuse fragments without payload: see
    /// InsertItem() and InsertPayload().
    bool insertRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;
    /// Removes items of a list.
    bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;
    /// Moves items within a list.
    bool moveRows(const QModelIndex& sourceParent, int sourceRow, int count,
                  const QModelIndex& destinationParent, int destinationChild) override;

    /// @}

Q_SIGNALS:
    /// An edit was refused, and nothing has changed.
    /// \param path the path of the row, see GetPath().
    /// \param reason the text of the record's exception; of what is no payload, a sentence that says so.
    void Refused(const QString& path, const QString& reason);
    /// An edit was made, but not by Apply() or Revert().
    void Edited(const ROUTERMODELS::RecordStep& step);

private:
    class Machine;

    std::unique_ptr<Machine> m_machine;
};

} // namespace ROUTERMODELS
