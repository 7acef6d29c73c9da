// SPDX-License-Identifier: MIT
#include "models/RecordHistory.h"

#include "models/RecordItemModel.h"

#include <algorithm>

namespace ROUTERMODELS {

RecordHistory::RecordHistory(RecordItemModel& model, QObject* parent) : QObject(parent), m_model(model)
{
    connect(&model, &RecordItemModel::Edited, this, &RecordHistory::add);
    connect(&model, &QAbstractItemModel::modelReset, this, &RecordHistory::forget);
}

RecordHistory::~RecordHistory() = default;

QString RecordHistory::GetUndoText() const
{
    return CanUndo() ? m_steps.at(m_done - 1).GetText() : QString();
}

QString RecordHistory::GetRedoText() const { return CanRedo() ? m_steps.at(m_done).GetText() : QString(); }

void RecordHistory::add(const RecordStep& step)
{
    m_steps.resize(m_done);
    if (m_clean > m_done)
        m_clean = -1;
    m_steps.append(step);
    ++m_done;
    shorten();
    Q_EMIT Changed();
}

bool RecordHistory::Undo() { return CanUndo() && run(false); }

bool RecordHistory::Redo() { return CanRedo() && run(true); }

bool RecordHistory::run(bool isForward)
{
    const RecordStep step = m_steps.at(isForward ? m_done : m_done - 1);
    const bool isRun = isForward ? m_model.Apply(step) : m_model.Revert(step);
    if (isRun) {
        m_done += isForward ? 1 : -1;
        Q_EMIT Changed();
    } else {
        Clear();
    }
    return isRun;
}

void RecordHistory::Clear()
{
    m_clean = IsModified() ? -1 : 0;
    m_steps.clear();
    m_done = 0;
    Q_EMIT Changed();
}

// The record of the model is another one.
void RecordHistory::forget()
{
    m_clean = m_done;
    Clear();
}

void RecordHistory::SetClean()
{
    m_clean = m_done;
    Q_EMIT Changed();
}

void RecordHistory::SetLimit(int limit)
{
    m_limit = std::max(limit, 1);
    shorten();
    Q_EMIT Changed();
}

// Forgets the oldest steps, and of those that were taken back the ones that came last.
void RecordHistory::shorten()
{
    const int excess = std::max(0, static_cast<int>(m_steps.size()) - m_limit);
    const int oldest = std::min(excess, m_done);
    m_steps.remove(0, oldest);
    m_steps.resize(std::min(static_cast<int>(m_steps.size()), m_limit));
    m_done -= oldest;
    m_clean = m_clean < oldest || m_clean - oldest > m_steps.size() ? -1 : m_clean - oldest;
}

} // namespace ROUTERMODELS
