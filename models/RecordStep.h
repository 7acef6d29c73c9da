// SPDX-License-Identifier: MIT
/// \file
/// One edit of a record, with what was there before and after it.
#pragma once

#include "models/Export.h"

#include "modelkit/IMKObject.h"

#include <QtCore/QMetaType>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <memory>

namespace ROUTERMODELS {

/// One edit that a RecordItemModel has made. RecordItemModel::Revert() takes it back and
/// RecordItemModel::Apply() makes it again. Copies are cheap: they share what they hold.
class ROUTERMODELS_EXPORT RecordStep
{
public:
    /// What was edited.
    enum class Kind
    {
        Nothing,   ///< a step made by the default constructor
        Value,     ///< a value was set, changed or unset
        Content,   ///< a record has other content: a payload was chosen, a record or a list set or unset
        Insertion, ///< items were inserted in a list
        Removal,   ///< items were removed from a list
        Move       ///< items have another place in their list
    };

    /// A step that changes nothing, of kind Nothing.
    RecordStep();

    /// What was edited.
    Kind GetKind() const;
    /// The path of what was edited, as RecordItemModel::GetPath() gives it; of items, that of their list.
    const QString& GetPath() const;
    /// The edit in a few words for people, such as "Change of Frequency", translated in the context
    /// "ROUTERMODELS::RecordStep".
    QString GetText() const;

    /// The value before the edit, if its kind is Value; invalid if the member was not set.
    const QVariant& GetValueBefore() const;
    /// The value after the edit, if its kind is Value; invalid if the member is not set.
    const QVariant& GetValueAfter() const;
    /// The record before the edit, if its kind is Content; otherwise null. It may be one around the record
    /// that was edited: one that an edit below it has set. Valid as long as the step or a copy of it lives.
    const MODELKIT::IMKObject* GetRecordBefore() const;
    /// The record after the edit, in the same way.
    const MODELKIT::IMKObject* GetRecordAfter() const;

private:
    friend class RecordItemModel;
    friend class StepMaker;
    struct Data;

    explicit RecordStep(std::shared_ptr<const Data> data);

    std::shared_ptr<const Data> m_data;
};

} // namespace ROUTERMODELS

Q_DECLARE_METATYPE(ROUTERMODELS::RecordStep)
