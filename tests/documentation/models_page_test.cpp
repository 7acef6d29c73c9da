// SPDX-License-Identifier: MIT
// The samples of docs/models.md.

#include "Said.h"
#include "TestSupport.h"
#include "WidgetSupport.h"

//! [what is included]
#include "editors/RecordDelegate.h"
#include "models/RecordHistory.h"
#include "models/RecordItemModel.h"

using namespace ROUTERMODELS;
using namespace PELLU300ROUTERINTERFACEXML;
//! [what is included]

// Part of Qt Widgets or Qt Gui.
#include <QUndoStack>
#include <QtWidgets/QTreeView>

using namespace testing_support;

namespace {

class ModelsPage : public ::testing::Test
{
protected:
    static PelLu300RouterInterfaceXml tuning()
    {
        PelLu300RouterInterfaceXml document;
        PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
        message.SetType(PelLu300RouterMessage::Request);
        message.AddFragment().GetDF_Params().SetFrequency(98.5e6);
        return document;
    }

    const Said said;
    PelLu300RouterInterfaceXml document = tuning();
};

} // namespace

TEST_F(ModelsPage, ShowsARecordInAView)
{
    QTreeView view;
    //! [a view]
    RecordItemModel model(document);
    view.setModel(&model);
    view.setItemDelegate(new ROUTEREDITORS::RecordDelegate(&view));
    view.expandAll();
    //! [a view]
    EXPECT_TRUE(view.isExpanded(model.FindPath("PelLu300RouterMessage/Fragment[1]")));
    //! [what was edited]
    PelLu300RouterInterfaceXml edited;
    edited = dynamic_cast<const PelLu300RouterInterfaceXml&>(model.GetRecord());
    //! [what was edited]
    EXPECT_EQ(edited, document);
}

TEST_F(ModelsPage, Edits)
{
    RecordItemModel model(document);
    //! [editing]
    model.SetValidation(ROUTERDOCUMENTS::Validation::On);
    QObject::connect(&model, &RecordItemModel::Refused, [](const QString& path, const QString& reason) {
        qWarning().noquote() << path << "was not changed:" << reason;
    });
    const QModelIndex type = model.FindPath("PelLu300RouterMessage/Type");
    model.setData(type.siblingAtColumn(RecordItemModel::ValueColumn), "Event");
    model.setData(type.siblingAtColumn(RecordItemModel::ValueColumn), 7);
    model.setData(type, Qt::Unchecked, Qt::CheckStateRole);
    //! [editing]
    EXPECT_EQ(Said::texts(), QStringList("PelLu300RouterMessage/Type was not changed: enum is not valid "
                                         "(classname=PelLu300RouterMessage,membername=m_type)"));
    EXPECT_FALSE(type.data(RecordItemModel::IsSetRole).toBool());
}

TEST_F(ModelsPage, EditsItemsAndPayloads)
{
    RecordItemModel model(document);
    //! [items]
    const QModelIndex list = model.FindPath("PelLu300RouterMessage/Fragment");
    model.InsertPayload(list, 0, Fragment::AcquireMastership);
    Fragment port;
    port.GetOstraInterfacePort().SetPort(4711);
    model.InsertItem(list, model.rowCount(list), port);
    model.moveRow(list, 2, list, 0);
    model.removeRow(1, list);
    const QModelIndex item = model.index(0, RecordItemModel::ValueColumn, list);
    model.setData(item, "MastershipState");
    //! [items]
    EXPECT_EQ(model.rowCount(list), 2);
    EXPECT_EQ(item.data(), "MastershipState");
    EXPECT_EQ(model.index(1, 1, list).data(), "DF_Params");
}

TEST_F(ModelsPage, TakesEditsBack)
{
    RecordItemModel model(document);
    //! [undo]
    RecordHistory history(model);
    const QModelIndex list = model.FindPath("PelLu300RouterMessage/Fragment");
    model.removeRow(0, list);
    qInfo().noquote() << history.GetUndoText();
    history.Undo();
    //! [undo]
    EXPECT_EQ(Said::texts(), QStringList("Removal from Fragment"));
    EXPECT_EQ(dynamic_cast<const PelLu300RouterInterfaceXml&>(model.GetRecord()), document);
}

namespace {

//! [undo stack]
class RecordCommand : public QUndoCommand
{
public:
    RecordCommand(RecordItemModel& model, const RecordStep& step)
        : QUndoCommand(step.GetText()), m_model(model), m_step(step)
    {}

    void undo() override
    {
        m_model.Revert(m_step);
        m_isMade = false;
    }
    void redo() override
    {
        // A stack also calls this for an edit that has just been made.
        if (!m_isMade)
            m_model.Apply(m_step);
        m_isMade = true;
    }

private:
    RecordItemModel& m_model;
    RecordStep m_step;
    bool m_isMade = true;
};
//! [undo stack]

} // namespace

TEST_F(ModelsPage, WorksWithAnUndoStack)
{
    RecordItemModel model(document);
    QUndoStack stack;
    //! [filling the stack]
    QObject::connect(&model, &RecordItemModel::Edited, [&model, &stack](const RecordStep& step) {
        stack.push(new RecordCommand(model, step));
    });
    //! [filling the stack]
    const QModelIndex type = model.FindPath("PelLu300RouterMessage/Type").siblingAtColumn(1);
    ASSERT_TRUE(model.setData(type, "Event"));
    EXPECT_EQ(stack.undoText(), "Change of Type");
    EXPECT_EQ(type.data(), "Event");
    stack.undo();
    EXPECT_EQ(type.data(), "Request");
    stack.redo();
    EXPECT_EQ(type.data(), "Event");
    EXPECT_EQ(stack.count(), 1);
}
