// SPDX-License-Identifier: MIT
#include "models/RecordStepData.h"

#include <QtCore/QCoreApplication>

#include <utility>

namespace ROUTERMODELS {

namespace {

QString translated(const char* text) { return QCoreApplication::translate("ROUTERMODELS::RecordStep", text); }

} // namespace

RecordStep::RecordStep() : RecordStep(std::make_shared<const Data>()) {}

RecordStep::RecordStep(std::shared_ptr<const Data> data) : m_data(std::move(data)) {}

RecordStep::Kind RecordStep::GetKind() const { return m_data->kind; }
const QString& RecordStep::GetPath() const { return m_data->path; }
const QVariant& RecordStep::GetValueBefore() const { return m_data->valueBefore; }
const QVariant& RecordStep::GetValueAfter() const { return m_data->valueAfter; }
const MODELKIT::IMKObject* RecordStep::GetRecordBefore() const { return m_data->recordBefore.get(); }
const MODELKIT::IMKObject* RecordStep::GetRecordAfter() const { return m_data->recordAfter.get(); }

QString RecordStep::GetText() const
{
    switch (m_data->kind) {
    case Kind::Nothing:
        break;
    case Kind::Value:
    case Kind::Content:
        return translated(QT_TRANSLATE_NOOP("ROUTERMODELS::RecordStep", "Change of %1")).arg(m_data->name);
    case Kind::Insertion:
        return translated(QT_TRANSLATE_NOOP("ROUTERMODELS::RecordStep", "Insertion in %1")).arg(m_data->name);
    case Kind::Removal:
        return translated(QT_TRANSLATE_NOOP("ROUTERMODELS::RecordStep", "Removal from %1")).arg(m_data->name);
    case Kind::Move:
        return translated(QT_TRANSLATE_NOOP("ROUTERMODELS::RecordStep", "Move in %1")).arg(m_data->name);
    }
    return QString();
}

} // namespace ROUTERMODELS
