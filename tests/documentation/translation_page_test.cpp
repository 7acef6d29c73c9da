// SPDX-License-Identifier: MIT
// The translations of the display names: what the files contain, and that they work once they are compiled.
// What is looked up in which context is in enumerations_test.cpp.
#include "TestSupport.h"

#include "translations/DisplayNames.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QLocale>
#include <QtCore/QTranslator>

#include <map>

using namespace testing_support;

namespace {

struct Message
{
    QString translation;
    bool isFinished = true;
};
using Messages = std::map<std::pair<QString, QString>, Message>;

Messages messagesIn(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    QXmlStreamReader reader(&file);
    Messages messages;
    QString context;
    QString source;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == QLatin1String("name")) {
            context = reader.readElementText();
        } else if (reader.name() == QLatin1String("source")) {
            source = reader.readElementText();
        } else if (reader.name() == QLatin1String("translation")) {
            const bool isFinished = !reader.attributes().hasAttribute(QLatin1String("type"));
            const bool isNew =
                messages.insert({{context, source}, {reader.readElementText(), isFinished}}).second;
            EXPECT_TRUE(isNew) << qPrintable(context) << ' ' << qPrintable(source);
        }
    }
    EXPECT_FALSE(reader.hasError()) << qPrintable(reader.errorString());
    return messages;
}

QStringList translationFiles() { return QDir(projectPath("translations")).entryList({"*.ts"}); }

} // namespace

// If this fails: cmake --build BUILD --target update_translations
TEST(TranslationFiles, ContainEveryDisplayNameOnce)
{
    EXPECT_TRUE(translationFiles().contains("routerinterface.ts"));
    EXPECT_TRUE(translationFiles().contains("routerinterface_de.ts"));
    for (const QString& name : translationFiles()) {
        SCOPED_TRACE(qPrintable(name));
        Messages messages = messagesIn(projectPath("translations/") + name);
        for (const auto& expected : translations::displayNames())
            EXPECT_EQ(messages.erase({expected.first, expected.second}), 1U)
                << qPrintable(expected.first) << ' ' << qPrintable(expected.second);
        for (const auto& unexpected : messages)
            ADD_FAILURE() << qPrintable(unexpected.first.first) << ' ' << qPrintable(unexpected.first.second);
    }
}

TEST(TranslationFiles, AreTranslatedCompletely)
{
    for (const QString& name : translationFiles()) {
        SCOPED_TRACE(qPrintable(name));
        const bool isTemplate = name == "routerinterface.ts";
        for (const auto& message : messagesIn(projectPath("translations/") + name)) {
            SCOPED_TRACE(qPrintable(message.first.second));
            EXPECT_EQ(message.second.translation.isEmpty(), isTemplate);
            EXPECT_EQ(message.second.isFinished, !isTemplate);
        }
    }
}

TEST(TranslationFiles, ChangeTheDisplayNamesWhileTheyAreInstalled)
{
    const QByteArray compiled = qgetenv("TRANSLATIONS");
    if (compiled.isEmpty())
        GTEST_SKIP() << "The translations are not compiled, because lrelease is missing.";

    int argumentCount = 1;
    char program[] = "tests";
    char* arguments[] = {program, nullptr};
    const QCoreApplication application(argumentCount, arguments);
    const QStringList types = PelLu300RouterMessage::GetTypes();
    const QStringList states = MastershipState::GetStates();
    const QStringList payloads = Fragment::GetChoiceFragments();
    const auto expectNames = [&] {
        EXPECT_EQ(PelLu300RouterMessage::GetGUITypes(), types);
        EXPECT_EQ(MastershipState::GetGUIStates(), states);
        EXPECT_EQ(Fragment::GetGUIChoiceFragments(), payloads);
        EXPECT_EQ(PelLu300RouterMessage::tr("Reply"), "Reply");
        EXPECT_EQ(MastershipState::trUtf8("MasterPresent"), "MasterPresent");
    };
    expectNames();

    const QLocale before;
    QLocale::setDefault(QLocale("de_DE"));
    const QString folder = QFile::decodeName(compiled);
    //! [A translation]
    QTranslator translator;
    if (translator.load(QLocale(), "routerinterface", "_", folder))
        QCoreApplication::installTranslator(&translator);
    //! [A translation]
    EXPECT_EQ(PelLu300RouterMessage::GetGUITypes(), (QStringList{"Anfrage", "Antwort", "Ereignis"}));
    EXPECT_EQ(MastershipState::GetGUIStates(),
              (QStringList{"Kein Master vorhanden", "Master vorhanden", "Router ist Master"}));
    const QStringList translated = Fragment::GetGUIChoiceFragments();
    ASSERT_EQ(translated.size(), payloads.size());
    EXPECT_EQ(translated.at(Fragment::AcquireMastership),
              QString::fromUtf8("Master-Rolle \303\274bernehmen"));
    EXPECT_EQ(translated.at(Fragment::DF_Params), "Peilparameter");
    EXPECT_EQ(PelLu300RouterMessage::tr("Reply"), "Antwort");
    EXPECT_EQ(MastershipState::trUtf8("MasterPresent"), "Master vorhanden");

    // Every text is in the compiled file, in its context.
    for (const auto& message : messagesIn(projectPath("translations/routerinterface_de.ts")))
        EXPECT_EQ(translator.translate(message.first.first.toUtf8(), message.first.second.toUtf8()),
                  message.second.translation);

    // The names in documents stay.
    EXPECT_EQ(PelLu300RouterMessage::GetTypes(), types);
    EXPECT_EQ(PelLu300RouterMessage().TypeToName(PelLu300RouterMessage::Reply), "Reply");
    EXPECT_EQ(PelLu300RouterMessage().NameToType("Reply"), PelLu300RouterMessage::Reply);

    QCoreApplication::removeTranslator(&translator);
    QLocale::setDefault(before);
    expectNames();
}
