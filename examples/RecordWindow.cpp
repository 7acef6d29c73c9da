// SPDX-License-Identifier: MIT
#include "RecordWindow.h"

#include "documents/DocumentCheck.h"
#include "documents/Text.h"
#include "editors/RecordDelegate.h"
#include "routerinterface/Fragment.h"
#include "routerinterface/RecordInfo.h"

// Part of Qt Widgets or Qt Gui.
#include <QAction>
#include <QtGui/QFont>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QTreeView>

using namespace PELLU300ROUTERINTERFACEXML;
using ROUTERDOCUMENTS::DocumentError;
using ROUTERDOCUMENTS::Validation;
using ROUTERMODELS::RecordHistory;
using ROUTERMODELS::RecordItemModel;

RecordWindow::RecordWindow(const MODELKIT::IMKObject& record) : m_model(record)
{
    makeViews();
    makeTools();
    connect(&m_history, &RecordHistory::Changed, this, [this] { update(); });
    connect(&m_model, &RecordItemModel::Refused, this, [this](const QString& path, const QString& reason) {
        statusBar()->showMessage(ROUTERDOCUMENTS::Printable(path + QStringLiteral(": ") + reason));
    });
    connect(m_errors, &QListWidget::itemClicked, this, [this](const QListWidgetItem* error) {
        m_tree->setCurrentIndex(m_model.FindPath(error->data(Qt::UserRole).toString()));
    });
    update();
    resize(900, 460);
}

void RecordWindow::makeViews()
{
    m_tree = new QTreeView;
    m_tree->setModel(&m_model);
    m_tree->setItemDelegate(new ROUTEREDITORS::RecordDelegate(m_tree));
    m_tree->setAlternatingRowColors(true);
    m_tree->expandToDepth(4);
    m_tree->header()->resizeSection(RecordItemModel::NameColumn, 270);
    m_tree->header()->resizeSection(RecordItemModel::ValueColumn, 130);

    m_xml = new QPlainTextEdit;
    m_xml->setReadOnly(true);
    m_xml->setLineWrapMode(QPlainTextEdit::NoWrap);
    QFont font = m_xml->font();
    font.setFamily(QStringLiteral("monospace"));
    font.setStyleHint(QFont::Monospace);
    m_xml->setFont(font);
    m_errors = new QListWidget;
    m_errors->setMaximumHeight(90);

    auto* const right = new QSplitter(Qt::Vertical);
    right->addWidget(m_xml);
    right->addWidget(m_errors);
    auto* const both = new QSplitter;
    both->addWidget(m_tree);
    both->addWidget(right);
    both->setSizes({510, 390});
    setCentralWidget(both);
    statusBar();
}

void RecordWindow::makeTools()
{
    QToolBar* const tools = addToolBar(QStringLiteral("Edit"));
    auto* const payloads = new QMenu(this);
    const QStringList names = Fragment::GetGUIChoiceFragments();
    for (int i = 0; i < names.size(); ++i)
        payloads->addAction(names.at(i), this, [this, i] { addPayload(i); });
    auto* const add = new QToolButton;
    add->setText(QStringLiteral("Add fragment"));
    add->setMenu(payloads);
    add->setPopupMode(QToolButton::InstantPopup);
    tools->addWidget(add);
    tools->addAction(QStringLiteral("Remove"), this, [this] { removeItem(); });
    tools->addAction(QStringLiteral("Up"), this, [this] { moveItem(-1); });
    tools->addAction(QStringLiteral("Down"), this, [this] { moveItem(1); });
    tools->addSeparator();
    m_undo = tools->addAction(QStringLiteral("Undo"), this, [this] { m_history.Undo(); });
    m_redo = tools->addAction(QStringLiteral("Redo"), this, [this] { m_history.Redo(); });
    m_undo->setShortcut(QKeySequence::Undo);
    m_redo->setShortcut(QKeySequence::Redo);
    tools->addSeparator();
    QAction* const rules = tools->addAction(QStringLiteral("Refuse wrong values"));
    rules->setCheckable(true);
    connect(rules, &QAction::toggled, this,
            [this](bool isOn) { m_model.SetValidation(isOn ? Validation::On : Validation::Off); });
    rules->setChecked(true);
}

void RecordWindow::addPayload(int payload)
{
    const QModelIndex list = m_model.FindPath(QStringLiteral("PelLu300RouterMessage/Fragment"));
    const int row = m_model.rowCount(list);
    if (m_model.InsertPayload(list, row, payload)) {
        const QModelIndex item = m_model.index(row, 0, list);
        m_tree->expandRecursively(item);
        m_tree->setCurrentIndex(item);
    }
}

// The row of the list item that is selected or that holds what is selected; invalid if there is none.
static QModelIndex itemAround(QModelIndex index, const QModelIndex& list)
{
    while (index.isValid() && index.parent() != list)
        index = index.parent();
    return index.siblingAtColumn(0);
}

void RecordWindow::removeItem()
{
    const QModelIndex list = m_model.FindPath(QStringLiteral("PelLu300RouterMessage/Fragment"));
    const QModelIndex item = itemAround(m_tree->currentIndex(), list);
    if (item.isValid())
        m_model.removeRow(item.row(), list);
}

void RecordWindow::moveItem(int by)
{
    const QModelIndex list = m_model.FindPath(QStringLiteral("PelLu300RouterMessage/Fragment"));
    const QModelIndex item = itemAround(m_tree->currentIndex(), list);
    if (item.isValid())
        m_model.moveRow(list, item.row(), list, by < 0 ? item.row() - 1 : item.row() + 2);
}

void RecordWindow::update()
{
    m_undo->setEnabled(m_history.CanUndo());
    m_redo->setEnabled(m_history.CanRedo());
    m_undo->setToolTip(m_history.GetUndoText());
    m_redo->setToolTip(m_history.GetRedoText());
    statusBar()->clearMessage();

    const RecordInfo& info = RecordInfo::Of(m_model.GetRecord());
    const auto record = info.Create();
    info.Assign(*record, m_model.GetRecord());
    const QString xml = record->GetXmlString();
    m_errors->clear();
    if (xml.isNull()) {
        m_xml->clear();
        m_errors->addItem(ROUTERDOCUMENTS::Printable(record->GetLastFailure().GetSentence()));
    } else {
        m_xml->setPlainText(ROUTERDOCUMENTS::ShowableXml(xml));
        showErrors(xml.toUtf8());
    }
}

void RecordWindow::showErrors(const QByteArray& xml)
{
    const auto checked = ROUTERDOCUMENTS::CheckDocument(xml);
    for (const DocumentError& error : checked.errors) {
        const QString& path = error.GetPlace().path;
        auto* const item = new QListWidgetItem(ROUTERDOCUMENTS::Printable(error.GetText()), m_errors);
        item->setData(Qt::UserRole, path);
        item->setToolTip(ROUTERDOCUMENTS::Printable(path));
        item->setForeground(Qt::red);
    }
    if (checked.errors.empty())
        m_errors->addItem(QStringLiteral("The record is valid."));
}
