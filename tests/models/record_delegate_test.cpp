// SPDX-License-Identifier: MIT
// Editing in a view, with the keys that a user presses.
#include "ModelSupport.h"
#include "WidgetSupport.h"

#include "editors/RecordDelegate.h"

#include <QtCore/QIdentityProxyModel>
#include <QtTest/QTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTreeView>

using namespace testing_support;
using ROUTERDOCUMENTS::Validation;
using ROUTEREDITORS::RecordDelegate;

namespace {

// Shows how the delegate would draw a cell.
class OpenDelegate : public RecordDelegate
{
public:
    QColor colorOf(const QTreeView& view, const QModelIndex& index) const
    {
        QStyleOptionViewItem option;
        option.palette = view.palette();
        initStyleOption(&option, index);
        return option.palette.color(QPalette::Active, QPalette::Text);
    }
};

class Delegate : public ::testing::Test
{
protected:
    void SetUp() override
    {
        proxy.setSourceModel(&watched.model);
        view.setModel(&proxy);
        view.setItemDelegate(&delegate);
        view.expandAll();
        view.show();
    }
    void TearDown() override { watched.expectTold(); }

    QModelIndex at(const char* path) const
    {
        return proxy.mapFromSource(watched.at(path, RecordItemModel::ValueColumn));
    }

    // Opens the editor of a value.
    template <class Editor>
    Editor* edit(const char* path)
    {
        view.setCurrentIndex(at(path));
        if (!view.indexWidget(at(path)))
            view.edit(at(path));
        auto* const editor = qobject_cast<Editor*>(view.indexWidget(at(path)));
        EXPECT_NE(editor, nullptr) << path;
        return editor;
    }

    // Qt commits and closes only from the event loop.
    static void press(QWidget* editor, Qt::Key key)
    {
        QTest::keyClick(editor, key);
        QCoreApplication::processEvents();
    }

    // Replaces the text of a value and presses a key.
    void type(const char* path, const char* typed, Qt::Key end = Qt::Key_Return)
    {
        auto* const line = edit<QLineEdit>(path);
        ASSERT_NE(line, nullptr);
        line->selectAll();
        if (*typed)
            QTest::keyClicks(line, QString::fromUtf8(typed));
        else
            QTest::keyClick(line, Qt::Key_Delete);
        press(line, end);
    }

    // Chooses in a list as by a click, and closes it.
    void choose(const char* path, int position)
    {
        auto* const list = edit<QComboBox>(path);
        ASSERT_NE(list, nullptr);
        list->setCurrentIndex(position);
        Q_EMIT list->activated(position);
        chosen = list->currentIndex();
        press(list, Qt::Key_Return);
    }

    WatchedModel watched{sampleDocument()};
    QIdentityProxyModel proxy;
    OpenDelegate delegate;
    QTreeView view;
    int chosen = -1;
};

const char* const frequency = "PelLu300RouterMessage/Fragment[1]/DF_Params/Frequency";
const char* const bandwidth = "PelLu300RouterMessage/Fragment[1]/DF_Params/Bandwidth";
const char* const number = "PelLu300RouterMessage/MessageID";
const char* const client = "PelLu300RouterMessage/Fragment[2]/MastershipState/MasterClientID";

} // namespace

TEST_F(Delegate, EditsNumbersInALine)
{
    EXPECT_EQ(edit<QLineEdit>(frequency)->text(), "98500000");
    type(frequency, "1.5e3");
    EXPECT_EQ(watched.value(frequency, Qt::EditRole), 1500.0);
    type(number, "4294967295");
    EXPECT_EQ(watched.value(number, Qt::EditRole), 4294967295U);
    // Letters do not arrive.
    type(number, "x1y2");
    EXPECT_EQ(watched.value(number), "12");
    EXPECT_EQ(watched.refusals, QStringList());
}

TEST_F(Delegate, TellsTheReasonOfARefusedNumber)
{
    type(number, "4294967296");
    EXPECT_EQ(watched.value(number, RecordItemModel::IsSetRole), false);
    ASSERT_EQ(watched.refusals.size(), 1);
    EXPECT_TRUE(watched.refusals[0].startsWith("PelLu300RouterMessage/MessageID: "));
}

TEST_F(Delegate, EditsTextsAsTheyAre)
{
    EXPECT_EQ(edit<QLineEdit>(client)->text(), "a\nb");
    const QString text(100000, QLatin1Char('x'));
    ASSERT_TRUE(watched.set(client, text));
    auto* const line = edit<QLineEdit>(client);
    ASSERT_NE(line, nullptr);
    QTest::keyClick(line, Qt::Key_End);
    QTest::keyClick(line, 'y');
    press(line, Qt::Key_Return);
    EXPECT_EQ(watched.value(client, Qt::EditRole), QString(text + QLatin1Char('y')));
    type(client, "");
    EXPECT_EQ(watched.value(client, Qt::EditRole), empty());
    EXPECT_EQ(watched.value(client, RecordItemModel::IsSetRole), true);
}

TEST_F(Delegate, SetsNothingByOpeningAnEditor)
{
    for (const char* path : {bandwidth, number, client}) {
        auto* const line = edit<QLineEdit>(path);
        ASSERT_NE(line, nullptr);
        press(line, Qt::Key_Return);
    }
    for (const char* path : {"PelLu300RouterMessage/Type", "PelLu300RouterMessage/Fragment[1]"}) {
        auto* const list = edit<QComboBox>(path);
        ASSERT_NE(list, nullptr);
        press(list, Qt::Key_Return);
    }
    type(bandwidth, "7", Qt::Key_Escape);
    EXPECT_TRUE(watched.steps.empty());
}

TEST_F(Delegate, ChoosesEnumeratorsAndTruthValuesInAList)
{
    const auto* const list = edit<QComboBox>("PelLu300RouterMessage/Type");
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->count(), 3);
    EXPECT_EQ(list->currentText(), "Reply");
    choose("PelLu300RouterMessage/Type", 2);
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Type"), "Event");
    choose("PelLu300RouterMessage/Fragment[3]/AcquireMastership/Success", 0);
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Fragment[3]/AcquireMastership/Success"), "false");
    // A value that is not set can be chosen although the list shows it already.
    ASSERT_TRUE(watched.check("PelLu300RouterMessage/Fragment[3]/AcquireMastership/Success", false));
    choose("PelLu300RouterMessage/Fragment[3]/AcquireMastership/Success", 0);
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Fragment[3]/AcquireMastership/Success",
                            RecordItemModel::IsSetRole),
              true);
}

TEST_F(Delegate, ShowsNoChoiceWhereThereIsNone)
{
    ASSERT_TRUE(watched.check("PelLu300RouterMessage/Type", false));
    const auto* const list = edit<QComboBox>("PelLu300RouterMessage/Type");
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->currentIndex(), -1);
}

TEST_F(Delegate, ChoosesPayloads)
{
    const char* const fragment = "PelLu300RouterMessage/Fragment[1]";
    const auto* const list = edit<QComboBox>(fragment);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->count(), 8);
    EXPECT_EQ(list->currentText(), "DF_Params");
    choose(fragment, 1);
    EXPECT_EQ(watched.value(fragment), "MastershipState");
    choose(fragment, 0);
    EXPECT_EQ(watched.value(fragment, Qt::EditRole), -1);
    EXPECT_EQ(chosen, 0);
}

TEST_F(Delegate, ShowsAgainWhatTheModelHasAfterARefusal)
{
    // A proxy that refuses everything.
    struct Refusing : QIdentityProxyModel
    {
        bool setData(const QModelIndex&, const QVariant&, int) override { return false; }
    } refusing;
    refusing.setSourceModel(&watched.model);
    QComboBox list;
    const std::unique_ptr<QWidget> editor(
        delegate.createEditor(nullptr, {}, at("PelLu300RouterMessage/Type")));
    auto& types = dynamic_cast<QComboBox&>(*editor);
    const QModelIndex type = refusing.mapFromSource(watched.at("PelLu300RouterMessage/Type", 1));
    delegate.setEditorData(&types, type);
    types.setCurrentIndex(0);
    Q_EMIT types.activated(0);
    delegate.setModelData(&types, &refusing, type);
    EXPECT_EQ(types.currentText(), "Reply");
    EXPECT_TRUE(watched.steps.empty());
}

TEST_F(Delegate, KeepsWhatSomebodyTypesWhileTheCellChanges)
{
    auto* const line = edit<QLineEdit>(frequency);
    ASSERT_NE(line, nullptr);
    ASSERT_TRUE(watched.set(frequency, 1));
    EXPECT_EQ(line->text(), "1");
    line->selectAll();
    QTest::keyClicks(line, "22");
    ASSERT_TRUE(watched.set(frequency, 3));
    EXPECT_EQ(line->text(), "22");
    press(line, Qt::Key_Return);
    EXPECT_EQ(watched.value(frequency), "22");
}

TEST_F(Delegate, HasNoEditorWhereThereIsNoValue)
{
    for (const char* path : {"PelLu300RouterMessage", "PelLu300RouterMessage/Fragment"})
        EXPECT_EQ(delegate.createEditor(&view, {}, at(path)), nullptr) << path;
}

TEST_F(Delegate, GreysWhatIsNotSet)
{
    const QColor set = delegate.colorOf(view, at(frequency));
    const QColor unset = delegate.colorOf(view, at(bandwidth));
    EXPECT_EQ(set, view.palette().color(QPalette::Active, QPalette::Text));
    EXPECT_EQ(unset, view.palette().color(QPalette::Disabled, QPalette::Text));
    EXPECT_NE(set, unset);
}
