// SPDX-License-Identifier: MIT
// A window to look at a record and to edit it: the tree, the XML, and what is wrong.
#pragma once

#include "models/RecordHistory.h"
#include "models/RecordItemModel.h"

#include <QtWidgets/QMainWindow>

class QAction;
class QListWidget;
class QPlainTextEdit;
class QToolBar;
class QTreeView;

class RecordWindow : public QMainWindow
{
public:
    explicit RecordWindow(const MODELKIT::IMKObject& record);

    ROUTERMODELS::RecordItemModel& Model() { return m_model; }

private:
    void makeTools();
    void makeViews();
    void addPayload(int payload);
    void removeItem();
    void moveItem(int by);
    // Brings everything up to date but the tree, which does so itself.
    void update();
    void showErrors(const QByteArray& xml);

    ROUTERMODELS::RecordItemModel m_model;
    ROUTERMODELS::RecordHistory m_history{m_model};
    QTreeView* m_tree = nullptr;
    QPlainTextEdit* m_xml = nullptr;
    QListWidget* m_errors = nullptr;
    QAction* m_undo = nullptr;
    QAction* m_redo = nullptr;
};
