// SPDX-License-Identifier: MIT
// The example with the window: what it shows and does. The picture of it in docs/ is made here, too.
#include "RecordWindow.h"
#include "TestSupport.h"
#include "WidgetSupport.h"

#include "documents/Document.h"

// Part of Qt Widgets or Qt Gui.
#include <QAction>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtGui/QImage>
#include <QtTest/QTest>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QTreeView>

using namespace testing_support;
using ROUTERMODELS::RecordItemModel;

namespace {

class Window : public ::testing::Test
{
protected:
    void SetUp() override
    {
        window.setWindowTitle(QStringLiteral("request-tuning.xml"));
        window.show();
        QCoreApplication::processEvents();
    }

    static std::unique_ptr<MODELKIT::IMKObject> example()
    {
        QFile file(projectPath("examples/documents/request-tuning.xml"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return ROUTERDOCUMENTS::ReadDocument(file.readAll()).record;
    }

    QModelIndex at(const char* path, int column = RecordItemModel::NameColumn)
    {
        return window.Model().FindPath(text(path)).siblingAtColumn(column);
    }
    bool set(const char* path, const QVariant& value)
    {
        return window.Model().setData(at(path, RecordItemModel::ValueColumn), value);
    }
    QAction& action(const char* name)
    {
        for (QAction* action : window.findChildren<QAction*>())
            if (action->text() == text(name))
                return *action;
        throw std::runtime_error(name);
    }
    QTreeView& tree() { return *window.findChild<QTreeView*>(); }
    QListWidget& errors() { return *window.findChild<QListWidget*>(); }
    QString xml() { return window.findChild<QPlainTextEdit*>()->toPlainText(); }

    RecordWindow window{*example()};
};

// How dark the darkest point is, from 0 for black to 255.
int darkest(const QImage& image, const QRect& part)
{
    int least = 255;
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x)
            least = std::min(least, qGray(image.pixel(x, y)));
    return least;
}

} // namespace

TEST_F(Window, ShowsTheTreeTheXmlAndThatItIsValid)
{
    const QString written = example()->GetXmlString();
    EXPECT_EQ(xml().trimmed(), written.trimmed());
    ASSERT_EQ(errors().count(), 1);
    EXPECT_EQ(errors().item(0)->text(), "The record is valid.");
    for (const char* path :
         {"PelLu300RouterMessage/Type", "PelLu300RouterMessage/Fragment[1]/DF_Params/Frequency"}) {
        ASSERT_TRUE(at(path).isValid()) << path;
        EXPECT_TRUE(tree().isExpanded(at(path).parent())) << path;
    }
    EXPECT_FALSE(action("Undo").isEnabled());
}

TEST_F(Window, FollowsEditsAndTakesThemBack)
{
    const QString before = xml();
    ASSERT_TRUE(set("PelLu300RouterMessage/Fragment[1]/DF_Params/Frequency", 12));
    EXPECT_TRUE(xml().contains("<Frequency>12.00</Frequency>"));
    EXPECT_EQ(action("Undo").toolTip(), "Change of Frequency");
    action("Undo").trigger();
    EXPECT_EQ(xml(), before);
    EXPECT_FALSE(action("Undo").isEnabled());
    action("Redo").trigger();
    EXPECT_TRUE(xml().contains("<Frequency>12.00</Frequency>"));
}

TEST_F(Window, AddsRemovesAndMovesFragments)
{
    const auto payloads = [this] {
        QStringList names;
        const QModelIndex list = at("PelLu300RouterMessage/Fragment");
        for (int row = 0; row < window.Model().rowCount(list); ++row)
            names += window.Model().index(row, 1, list).data().toString();
        return names;
    };
    const QStringList before = payloads();
    action("AcquireMastership").trigger();
    EXPECT_EQ(payloads(), before + QStringList("AcquireMastership"));
    action("Up").trigger();
    EXPECT_EQ(payloads(), QStringList("AcquireMastership") + before);
    action("Up").trigger();
    action("Down").trigger();
    EXPECT_EQ(payloads(), before + QStringList("AcquireMastership"));
    action("Remove").trigger();
    EXPECT_EQ(payloads(), before);
    tree().setCurrentIndex(at("PelLu300RouterMessage"));
    action("Remove").trigger();
    action("Down").trigger();
    EXPECT_EQ(payloads(), before);
}

TEST_F(Window, TellsWhatIsWrongAndWhere)
{
    EXPECT_FALSE(set("PelLu300RouterMessage/Type", 9));
    EXPECT_TRUE(
        window.statusBar()->currentMessage().startsWith("PelLu300RouterMessage/Type: enum is not valid"));
    action("Refuse wrong values").trigger();
    ASSERT_TRUE(set("PelLu300RouterMessage/Type", 9));
    ASSERT_EQ(errors().count(), 1);
    EXPECT_TRUE(errors().item(0)->text().startsWith("enum is not valid"))
        << errors().item(0)->text().toStdString();
    Q_EMIT errors().itemClicked(errors().item(0));
    EXPECT_EQ(tree().currentIndex(), at("PelLu300RouterMessage/Type"));
}

TEST_F(Window, TellsWhyThereIsNoXml)
{
    action("PelVtConnectServer").trigger();
    ASSERT_TRUE(set("PelLu300RouterMessage/Fragment[2]/PelVtConnectServer/Address", QString(QChar(1))));
    EXPECT_EQ(xml(), QString());
    ASSERT_EQ(errors().count(), 1);
    EXPECT_FALSE(errors().item(0)->text().isEmpty());
}

TEST_F(Window, LooksAsInTheDocumentation)
{
    tree().setCurrentIndex(
        at("PelLu300RouterMessage/Fragment[1]/DF_Params/Frequency", RecordItemModel::ValueColumn));
    ASSERT_TRUE(window.Model().setData(at("PelLu300RouterMessage/Fragment[1]/DF_Params/PanoramaSpan"),
                                       Qt::Unchecked, Qt::CheckStateRole));
    action("OstraInterfacePort").trigger();
    QCoreApplication::processEvents();
    const QImage picture = window.grab().toImage().convertToFormat(QImage::Format_RGB32);
    ASSERT_TRUE(picture.convertToFormat(QImage::Format_Indexed8, Qt::ThresholdDither)
                    .save(QStringLiteral("record-window.png"), "PNG", 0));

    // The names of members that are not set are grey. Without a font, no name is drawn.
    if (hasFonts()) {
        const auto nameOf = [&](const char* path) {
            QRect cell = tree().visualRect(at(path));
            // Not the check mark.
            cell.setLeft(cell.left() + cell.height() + 4);
            return cell.translated(tree().viewport()->mapTo(&window, QPoint(0, 0)));
        };
        const int set = darkest(picture, nameOf("PelLu300RouterMessage/Fragment[1]/DF_Params/Bandwidth"));
        const int unset =
            darkest(picture, nameOf("PelLu300RouterMessage/Fragment[1]/DF_Params/PanoramaSpan"));
        EXPECT_LT(set, 80);
        EXPECT_GT(unset, set + 40);
        EXPECT_LT(unset, 220);
    }

    const QString committed = projectPath("docs/record-window.png");
    QImage shown;
    ASSERT_TRUE(shown.load(committed)) << "Make it: cmake --build BUILD --target update_window_picture";
    EXPECT_EQ(shown.size(), picture.size());
    EXPECT_LT(QFile(committed).size(), 100 * 1024);
}
