// SPDX-License-Identifier: MIT
// A RecordItemModel under watch, and short ways to its cells.
#pragma once

#include "TestSupport.h"

#include "models/RecordItemModel.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QStringList>
#include <QtTest/QAbstractItemModelTester>

#include <algorithm>
#include <memory>
#include <vector>

namespace testing_support {

using ROUTERMODELS::RecordItemModel;
using ROUTERMODELS::RecordStep;

// What a view shows that believes only the signals of the model.
class Mirror
{
public:
    explicit Mirror(const QAbstractItemModel& model) : m_model(model)
    {
        reset();
        QObject::connect(&model, &QAbstractItemModel::modelReset, &m_context, [this] { reset(); });
        QObject::connect(&model, &QAbstractItemModel::dataChanged, &m_context,
                         [this](const QModelIndex& first, const QModelIndex& last) {
                             for (int row = first.row(); row <= last.row(); ++row)
                                 for (int column = first.column(); column <= last.column(); ++column)
                                     at(first.parent()).rows[std::size_t(row)].cells[column] =
                                         cellAt(first.sibling(row, column));
                         });
        QObject::connect(&model, &QAbstractItemModel::rowsInserted, &m_context,
                         [this](const QModelIndex& parent, int first, int last) {
                             auto& rows = at(parent).rows;
                             for (int row = first; row <= last; ++row)
                                 rows.insert(rows.begin() + row, read(m_model.index(row, 0, parent)));
                         });
        QObject::connect(&model, &QAbstractItemModel::rowsRemoved, &m_context,
                         [this](const QModelIndex& parent, int first, int last) {
                             auto& rows = at(parent).rows;
                             rows.erase(rows.begin() + first, rows.begin() + last + 1);
                         });
        QObject::connect(
            &model, &QAbstractItemModel::rowsMoved, &m_context,
            [this](const QModelIndex& parent, int first, int last, const QModelIndex&, int to) {
                auto& rows = at(parent).rows;
                if (to > last)
                    std::rotate(rows.begin() + first, rows.begin() + last + 1, rows.begin() + to);
                else
                    std::rotate(rows.begin() + to, rows.begin() + first, rows.begin() + last + 1);
            });
    }

    // Every row and all that its cells show, a line for each.
    QString text() const { return textOf(m_root, 0); }
    static QString textOf(const QAbstractItemModel& model) { return Mirror(model).text(); }

private:
    struct Row
    {
        QStringList cells;
        std::vector<Row> rows;
    };

    static QString cellAt(const QModelIndex& index)
    {
        QStringList texts;
        for (const int role : {int(Qt::DisplayRole), int(Qt::EditRole), int(Qt::CheckStateRole),
                               int(RecordItemModel::IsSetRole), int(RecordItemModel::EditorRole)})
            texts += index.data(role).toString();
        return texts.join(QLatin1Char('|')) + QString::number(int(index.flags()));
    }

    Row read(const QModelIndex& index) const
    {
        Row row;
        if (index.isValid())
            for (int column = 0; column < m_model.columnCount(index.parent()); ++column)
                row.cells += cellAt(index.siblingAtColumn(column));
        for (int i = 0; i < m_model.rowCount(index); ++i)
            row.rows.push_back(read(m_model.index(i, 0, index)));
        return row;
    }

    Row& at(const QModelIndex& index)
    {
        return index.isValid() ? at(index.parent()).rows.at(std::size_t(index.row())) : m_root;
    }

    static QString textOf(const Row& row, int depth)
    {
        QString text =
            QString(depth * 2, QLatin1Char(' ')) + row.cells.join(QStringLiteral(" ; ")) + QLatin1Char('\n');
        for (const Row& below : row.rows)
            text += textOf(below, depth + 1);
        return text;
    }

    void reset() { m_root = read(QModelIndex()); }

    const QAbstractItemModel& m_model;
    QObject m_context;
    Row m_root;
};

// A model that ends the test program when it breaks the rules of item models. It keeps what it has told.
class WatchedModel
{
public:
    explicit WatchedModel(const MODELKIT::IMKObject& record) : model(record), mirror(model)
    {
        QObject::connect(&model, &RecordItemModel::Refused,
                         [this](const QString& path, const QString& reason) {
                             refusals += path + QStringLiteral(": ") + reason;
                         });
        QObject::connect(&model, &RecordItemModel::Edited,
                         [this](const RecordStep& step) { steps.push_back(step); });
    }

    QModelIndex at(const char* path, int column = RecordItemModel::NameColumn) const
    {
        return model.FindPath(text(path)).siblingAtColumn(column);
    }
    QVariant value(const char* path, int role = Qt::DisplayRole) const
    {
        return at(path, RecordItemModel::ValueColumn).data(role);
    }
    bool set(const char* path, const QVariant& value)
    {
        return model.setData(at(path, RecordItemModel::ValueColumn), value);
    }
    bool check(const char* path, bool isSet)
    {
        return model.setData(at(path), isSet ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
    }
    QString xml() const { return xmlOf(*copy()); }
    // The record, to look at.
    std::unique_ptr<MODELKIT::IMKObject> copy() const
    {
        const RecordInfo& info = RecordInfo::Of(model.GetRecord());
        auto record = info.Create();
        info.Assign(*record, model.GetRecord());
        return record;
    }
    // Expects that views show what a new model of the same record would.
    void expectTold() const { EXPECT_EQ(mirror.text(), Mirror::textOf(RecordItemModel(model.GetRecord()))); }

    RecordItemModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    Mirror mirror;
    QStringList refusals;
    std::vector<RecordStep> steps;
};

// A message with three fragments.
inline PelLu300RouterInterfaceXml sampleDocument()
{
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Reply);
    message.AddFragment().GetDF_Params().SetFrequency(98.5e6);
    class MastershipState& state = message.AddFragment().GetMastershipState();
    state.SetState(MastershipState::RouterIsMaster);
    state.SetMasterClientID(QStringLiteral("a\nb"));
    message.AddFragment().GetAcquireMastership().SetSuccess(true);
    return document;
}

} // namespace testing_support
