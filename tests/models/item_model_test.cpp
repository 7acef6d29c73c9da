// SPDX-License-Identifier: MIT
// What a RecordItemModel shows of a record: rows, cells, roles, paths, translations.
#include "EventLoop.h"
#include "ModelSupport.h"

#include <QtCore/QTranslator>

#include <typeinfo>

using namespace testing_support;

namespace {

QStringList namesBelow(const WatchedModel& watched, const QModelIndex& parent)
{
    QStringList names;
    for (int row = 0; row < watched.model.rowCount(parent); ++row)
        names += watched.model.index(row, 0, parent).data().toString();
    return names;
}

QStringList namesBelow(const WatchedModel& watched, const char* path)
{
    return namesBelow(watched, watched.at(path));
}

} // namespace

TEST(ItemModel, HasTheRecordAtTheTopAndItsMembersBelow)
{
    const WatchedModel watched(sampleDocument());
    EXPECT_EQ(namesBelow(watched, QModelIndex()), QStringList("PelLu300RouterInterfaceXml"));
    EXPECT_EQ(namesBelow(watched, "PelLu300RouterInterfaceXml"), QStringList("PelLu300RouterMessage"));
    EXPECT_EQ(namesBelow(watched, "PelLu300RouterMessage"), (QStringList{"Type", "MessageID", "Fragment"}));
    EXPECT_EQ(namesBelow(watched, "PelLu300RouterMessage/Fragment"),
              (QStringList{"Fragment[1]", "Fragment[2]", "Fragment[3]"}));
    EXPECT_EQ(namesBelow(watched, "PelLu300RouterMessage/Fragment[2]"), QStringList("MastershipState"));
    EXPECT_EQ(namesBelow(watched, "PelLu300RouterMessage/Fragment[2]/MastershipState"),
              (QStringList{"State", "MasterClientID"}));
    EXPECT_EQ(namesBelow(watched, "PelLu300RouterMessage/Type"), QStringList());
    EXPECT_TRUE(watched.at("PelLu300RouterMessage/Type").flags().testFlag(Qt::ItemNeverHasChildren));
}

TEST(ItemModel, ShowsAnyRecord)
{
    for (const RecordInfo* info : RecordInfo::All()) {
        const WatchedModel watched(*info->Create());
        EXPECT_EQ(namesBelow(watched, QModelIndex()), QStringList(info->GetName()));
        const int members = info->IsChoice() ? 0 : static_cast<int>(info->GetMembers().size());
        EXPECT_EQ(watched.model.rowCount(watched.model.index(0, 0)), members)
            << info->GetName().toStdString();
        watched.expectTold();
    }
    const WatchedModel none((RecordItemModel().GetRecord()));
    EXPECT_EQ(namesBelow(none, QModelIndex()), QStringList("PelLu300RouterInterfaceXml"));
}

TEST(ItemModel, ShowsValuesOfEveryKind)
{
    const WatchedModel watched(sampleDocument());
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Type"), "Reply");
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Type", Qt::EditRole), 1);
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Fragment"), "[3]");
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Fragment[1]/DF_Params/Frequency"), "98500000");
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Fragment[1]/DF_Params/Frequency", Qt::EditRole), 98.5e6);
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Fragment[1]/DF_Params"), "{Frequency: 98500000}");
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Fragment[1]"), "DF_Params");
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Fragment[1]", Qt::EditRole), 6);
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Fragment[3]/AcquireMastership/Success"), "true");
    // Safe to display, and as it is to edit.
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Fragment[2]/MastershipState/MasterClientID"), "a\\nb");
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Fragment[2]/MastershipState/MasterClientID", Qt::EditRole),
              "a\nb");
    EXPECT_EQ(watched.at("PelLu300RouterMessage/Type", RecordItemModel::TypeColumn).data(), "enumeration");
    EXPECT_EQ(watched.at("PelLu300RouterMessage/Fragment", RecordItemModel::TypeColumn).data(), "list");
    EXPECT_EQ(watched.at("PelLu300RouterMessage/Fragment[1]", RecordItemModel::TypeColumn).data(), "record");
}

TEST(ItemModel, DisplaysLongTextsTruncated)
{
    PelVtConnectServer server;
    server.SetAddress(QString(100000, QLatin1Char('x')));
    const WatchedModel watched(server);
    EXPECT_LT(watched.value("Address").toString().size(), 1000);
    EXPECT_EQ(watched.value("Address", Qt::EditRole).toString().size(), 100000);
    EXPECT_LT(watched.value("PelVtConnectServer").toString().size(), 1000);
}

TEST(ItemModel, ShowsNoValueOfUnsetMembersButTheirDefaults)
{
    DF_Params params;
    params.SetDefaultBandwidth(2);
    const WatchedModel watched(params);
    EXPECT_EQ(watched.value("Frequency"), QString());
    EXPECT_EQ(watched.value("Bandwidth"), "2");
    EXPECT_EQ(watched.value("Bandwidth", RecordItemModel::IsSetRole), false);
    const WatchedModel message((PelLu300RouterMessage()));
    EXPECT_EQ(message.value("Type"), QString());
    EXPECT_EQ(message.value("Fragment"), QString());
    const WatchedModel fragment((Fragment()));
    EXPECT_EQ(fragment.value("Fragment"), QString());
    EXPECT_EQ(fragment.value("Fragment", Qt::EditRole), -1);
}

TEST(ItemModel, MarksWhatIsSet)
{
    const WatchedModel watched(sampleDocument());
    const auto mark = [&](const char* path) { return watched.at(path).data(Qt::CheckStateRole); };
    EXPECT_EQ(mark("PelLu300RouterMessage"), Qt::Checked);
    EXPECT_EQ(mark("PelLu300RouterMessage/Type"), Qt::Checked);
    EXPECT_EQ(mark("PelLu300RouterMessage/MessageID"), Qt::Unchecked);
    EXPECT_EQ(watched.value("PelLu300RouterMessage/MessageID", RecordItemModel::IsSetRole), false);
    EXPECT_EQ(mark("PelLu300RouterMessage/Fragment"), Qt::Checked);
    EXPECT_FALSE(mark("PelLu300RouterMessage/Fragment[1]").isValid());
    EXPECT_FALSE(mark("PelLu300RouterInterfaceXml").isValid());
    EXPECT_FALSE(watched.value("PelLu300RouterMessage/Type", Qt::CheckStateRole).isValid());
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Fragment[1]", RecordItemModel::IsSetRole), true);
    // An empty list cannot be set.
    const WatchedModel message((PelLu300RouterMessage()));
    EXPECT_FALSE(message.at("Fragment").flags().testFlag(Qt::ItemIsUserCheckable));
    EXPECT_TRUE(message.at("Type").flags().testFlag(Qt::ItemIsUserCheckable));
    EXPECT_TRUE(watched.at("PelLu300RouterMessage/Fragment").flags().testFlag(Qt::ItemIsUserCheckable));
}

TEST(ItemModel, TellsEditorsWhatTheyNeed)
{
    const WatchedModel watched(sampleDocument());
    const auto editor = [&](const char* path) { return watched.value(path, RecordItemModel::EditorRole); };
    EXPECT_EQ(editor("PelLu300RouterMessage"), RecordItemModel::NoEditor);
    EXPECT_EQ(editor("PelLu300RouterMessage/Type"), RecordItemModel::ListEditor);
    EXPECT_EQ(editor("PelLu300RouterMessage/MessageID"), RecordItemModel::IntegerEditor);
    EXPECT_EQ(editor("PelLu300RouterMessage/Fragment"), RecordItemModel::NoEditor);
    EXPECT_EQ(editor("PelLu300RouterMessage/Fragment[1]"), RecordItemModel::PayloadEditor);
    EXPECT_EQ(editor("PelLu300RouterMessage/Fragment[1]/DF_Params/Bandwidth"),
              RecordItemModel::DecimalEditor);
    EXPECT_EQ(editor("PelLu300RouterMessage/Fragment[2]/MastershipState/MasterClientID"),
              RecordItemModel::TextEditor);
    const auto choices = [&](const char* path) { return watched.value(path, RecordItemModel::ChoicesRole); };
    EXPECT_EQ(choices("PelLu300RouterMessage/Type"), (QStringList{"Request", "Reply", "Event"}));
    EXPECT_EQ(choices("PelLu300RouterMessage/Fragment[1]"), Fragment::GetChoiceFragments());
    EXPECT_EQ(choices("PelLu300RouterMessage/Fragment[3]/AcquireMastership/Success"),
              (QStringList{"false", "true"}));
    EXPECT_EQ(choices("PelLu300RouterMessage/MessageID"), QStringList());
    EXPECT_EQ(watched.value("PelLu300RouterMessage/MessageID", Qt::ToolTipRole),
              "a whole number from 0 to 4294967295");
    const auto isEditable = [&](const char* path) {
        return watched.at(path, RecordItemModel::ValueColumn).flags().testFlag(Qt::ItemIsEditable);
    };
    EXPECT_TRUE(isEditable("PelLu300RouterMessage/Type"));
    EXPECT_TRUE(isEditable("PelLu300RouterMessage/Fragment[1]"));
    EXPECT_FALSE(isEditable("PelLu300RouterMessage"));
    EXPECT_FALSE(isEditable("PelLu300RouterMessage/Fragment"));
    EXPECT_FALSE(watched.at("PelLu300RouterMessage/Type").flags().testFlag(Qt::ItemIsEditable));
    EXPECT_EQ(watched.model.roleNames().value(RecordItemModel::ChoicesRole), QByteArray("choices"));
}

TEST(ItemModel, FindsRowsByTheirPaths)
{
    const WatchedModel watched(sampleDocument());
    const RecordItemModel& model = watched.model;
    const QModelIndex state = watched.at("PelLu300RouterMessage/Fragment[2]/MastershipState/State");
    ASSERT_TRUE(state.isValid());
    EXPECT_EQ(model.GetPath(state), "PelLu300RouterMessage/Fragment[2]/MastershipState/State");
    EXPECT_EQ(state.data(RecordItemModel::PathRole), model.GetPath(state));
    EXPECT_EQ(model.GetPath(model.index(0, 0)), "PelLu300RouterInterfaceXml");
    EXPECT_EQ(model.GetPath(watched.at("PelLu300RouterMessage/Fragment")), "PelLu300RouterMessage/Fragment");
    EXPECT_EQ(model.GetPath(QModelIndex()), QString());
    // The paths of exceptions and failures.
    EXPECT_EQ(
        watched.at("/PelLu300RouterInterfaceXml/PelLu300RouterMessage/Fragment[2]/MastershipState/State"),
        state);
    EXPECT_EQ(model.GetPath(watched.at("/PelLu300RouterInterfaceXml/PelLu300RouterMessage/Fragment")),
              "PelLu300RouterMessage/Fragment[1]");
    EXPECT_EQ(watched.at("/PelLu300RouterInterfaceXml"), model.index(0, 0));
    for (const char* nowhere :
         {"", "/", "Nothing", "PelLu300RouterMessage/Fragment[0]", "PelLu300RouterMessage/Fragment[4]",
          "PelLu300RouterMessage/Fragment[x]", "PelLu300RouterMessage/Fragment[1",
          "PelLu300RouterMessage/Type[1]", "PelLu300RouterMessage/Fragment/DF_Params",
          "PelLu300RouterMessage/Fragment[2]/DF_Params", "/PelLu300RouterMessage",
          "PelLu300RouterMessage/Type/Type"})
        EXPECT_FALSE(watched.at(nowhere).isValid()) << nowhere;
}

TEST(ItemModel, FindsRecords)
{
    const WatchedModel watched(sampleDocument());
    const MODELKIT::IMKObject* const params =
        watched.model.FindRecord(watched.at("PelLu300RouterMessage/Fragment[1]/DF_Params"));
    ASSERT_NE(params, nullptr);
    EXPECT_EQ(dynamic_cast<const DF_Params&>(*params).GetFrequency(), 98.5e6);
    EXPECT_EQ(watched.model.FindRecord(watched.model.index(0, 0)), &watched.model.GetRecord());
    EXPECT_EQ(watched.model.FindRecord(watched.at("PelLu300RouterMessage/Type")), nullptr);
    EXPECT_EQ(watched.model.FindRecord(watched.at("PelLu300RouterMessage/Fragment")), nullptr);
    EXPECT_EQ(watched.model.FindRecord(QModelIndex()), nullptr);
}

TEST(ItemModel, HoldsContentOfItsOwn)
{
    PelLu300RouterInterfaceXml document = sampleDocument();
    WatchedModel watched(document);
    document.GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Event);
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Type"), "Reply");
    EXPECT_TRUE(watched.set("PelLu300RouterMessage/Type", "Request"));
    EXPECT_EQ(document.GetPelLu300RouterMessage().GetType(), PelLu300RouterMessage::Event);
    watched.model.SetRecord(document);
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Type"), "Event");
    watched.expectTold();
}

TEST(ItemModel, StaysAsItIsWhenGivenNoRecord)
{
    struct Foreign : MODELKIT::IMKObject
    {
        bool HasData() const override { return true; }
        void Reset() override {}
        void Check(bool) const override {}
        void Check() const override {}
        void GetXml(QXmlStreamWriter&) const override {}
        bool GetBinary(QDataStream&, int, bool) const override { return false; }
        void SetBinary(QDataStream&, int) override {}
        void ProcessXmlStartElement(QXmlStreamReader&) override {}
    };
    WatchedModel watched(sampleDocument());
    EXPECT_THROW(watched.model.SetRecord(Foreign()), std::bad_cast);
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Type"), "Reply");
    EXPECT_THROW(RecordItemModel{Foreign()}, std::bad_cast);
}

namespace {

// Translates everything, by the context.
class Shouting : public QTranslator
{
public:
    QString translate(const char* context, const char* text, const char*, int) const override
    {
        return QStringLiteral("%1 in %2").arg(QString::fromUtf8(text).toUpper(), QString::fromUtf8(context));
    }
    bool isEmpty() const override { return false; }
};

} // namespace

TEST(ItemModel, TranslatesAsTheRecordsDo)
{
    const WatchedModel watched(sampleDocument());
    Shouting shouting;
    QCoreApplication::installTranslator(&shouting);
    const_cast<RecordItemModel&>(watched.model).Retranslate();
    watched.expectTold();
    const auto choices = [&](const char* path) {
        return watched.value(path, RecordItemModel::ChoicesRole).toStringList();
    };
    EXPECT_EQ(choices("PelLu300RouterMessage/Type"), PelLu300RouterMessage::GetGUITypes());
    EXPECT_EQ(choices("PelLu300RouterMessage/Fragment[1]"), Fragment::GetGUIChoiceFragments());
    EXPECT_EQ(choices("PelLu300RouterMessage/Fragment[2]/MastershipState/State"),
              MastershipState::GetGUIStates());
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Type"), "REPLY in QObject");
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Fragment[1]"), "DF_PARAMS in QObject");
    EXPECT_EQ(watched.value("PelLu300RouterMessage/Type", Qt::EditRole), 1);
    EXPECT_EQ(watched.model.headerData(RecordItemModel::ValueColumn, Qt::Horizontal),
              "VALUE in ROUTERMODELS::RecordItemModel");
    QCoreApplication::removeTranslator(&shouting);
    EXPECT_EQ(watched.model.headerData(RecordItemModel::NameColumn, Qt::Horizontal), "Name");
    EXPECT_EQ(watched.model.headerData(RecordItemModel::TypeColumn, Qt::Horizontal), "Type");
    EXPECT_FALSE(watched.model.headerData(RecordItemModel::ColumnCount, Qt::Horizontal).isValid());
}
