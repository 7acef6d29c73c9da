// SPDX-License-Identifier: MIT
// What there is to translate, taken from the tables of the records: a new enumerator is in it by itself.
#pragma once

#include "routerinterface/RecordInfo.h"

#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QVector>

namespace translations {

// The contexts and the texts. The lists of display names (GetGUITypes() and its sisters) are looked up in the
// context of QObject, and what a class translates by its own tr() in a context of the class.
inline QVector<QPair<QString, QString>> displayNames()
{
    using namespace PELLU300ROUTERINTERFACEXML;

    QVector<QPair<QString, QString>> general;
    QVector<QPair<QString, QString>> ofClasses;
    for (const RecordInfo* record : RecordInfo::All())
        for (const MemberInfo* member : record->GetMembers()) {
            if (record->IsChoice())
                general.append({"QObject", member->GetName()});
            for (const QString& name : member->GetNames()) {
                general.append({"QObject", name});
                ofClasses.append({"PELLU300ROUTERINTERFACEXML::" + record->GetName(), name});
            }
        }
    return general + ofClasses;
}

} // namespace translations
