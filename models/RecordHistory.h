// SPDX-License-Identifier: MIT
/// \file
/// Undo and redo for a RecordItemModel.
#pragma once

#include "models/Export.h"
#include "models/RecordStep.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVector>

namespace ROUTERMODELS {

class RecordItemModel;

/// The edits of a RecordItemModel, to take them back and to make them again. It forgets them when the model
/// is given another record.
class ROUTERMODELS_EXPORT RecordHistory : public QObject
{
    Q_OBJECT

public:
    /// Keeps the edits that the model makes from now on. The model must live longer than the history.
    /// \param parent deletes the history, as with any QObject.
    explicit RecordHistory(RecordItemModel& model, QObject* parent = nullptr);
    ~RecordHistory() override;

    /// Whether there is an edit to take back.
    bool CanUndo() const { return m_done > 0; }
    /// Whether there is an edit to make again.
    bool CanRedo() const { return m_done < m_steps.size(); }
    /// The edit that Undo() takes back, in a few words; empty when there is none.
    QString GetUndoText() const;
    /// The edit that Redo() makes again, in a few words; empty when there is none.
    QString GetRedoText() const;

    /// Takes the last edit back.
    /// \return false when there is none, or when it does not fit because steps were made with
    /// RecordItemModel::Apply() or Revert() without this history. Then the history is empty.
    bool Undo();
    /// Makes the edit again that was taken back last, in the same way.
    bool Redo();
    /// Forgets all edits. Whether the record is modified stays as it is.
    void Clear();

    /// Whether the record differs from what it was at the last SetClean() or, before one, at first, as far as
    /// the edits tell.
    bool IsModified() const { return m_clean != m_done; }
    /// Call it when the record was saved.
    void SetClean();

    /// How many edits are kept, at least one; the oldest are forgotten first. 1000 unless changed.
    int GetLimit() const { return m_limit; }
    /// See GetLimit().
    void SetLimit(int limit);

Q_SIGNALS:
    /// What the functions above tell may have changed.
    void Changed();

private:
    void add(const RecordStep& step);
    void forget();
    void shorten();
    bool run(bool isForward);

    RecordItemModel& m_model;
    QVector<RecordStep> m_steps;
    // How many steps are made, those behind them being taken back; how many were made when the record was
    // clean, or -1 when that does not come back.
    int m_done = 0;
    int m_clean = 0;
    int m_limit = 1000;
};

} // namespace ROUTERMODELS
