// SPDX-License-Identifier: MIT
// The samples and statements of docs/logging.md.

#include "PageSamples.h"
#include "Said.h"
#include "ShownOnPage.h"

#include "modelkit/LogSinks.h"

using namespace testing_support;
using MODELKIT::Logger;

TEST(LoggingPage, ALoggerTakesTheReasonsOfFailures)
{
    const Said said;
    const QString path = QStringLiteral("missing.xml");
    PelLu300RouterInterfaceXml document;
    //! [a logger]
    document.SetLogger(std::make_shared<MODELKIT::Logger>(std::make_shared<MODELKIT::QtLogSink>()));
    document.LoadXml(path); // when it fails, the reason is logged
    //! [a logger]
    EXPECT_EQ(said.texts(), QStringList(QStringLiteral(
                                "missing.xml: The file cannot be read: No such file or directory.")));
}

TEST(LoggingPage, ALoggerIsHandedDownAtOnceAndToWhatComesLaterAtTheNextOperation)
{
    const auto logger = std::make_shared<Logger>();
    PelLu300RouterInterfaceXml document = sample();
    document.SetLogger(logger);
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    EXPECT_EQ(message.GetFragment().first().GetOstraInterfacePort().GetLogger(), logger);

    Fragment later;
    later.SetLogger(std::make_shared<Logger>());
    message.AppendFragment(later);
    EXPECT_EQ(message.GetFragment().last().GetLogger(), nullptr);
    message.SetLogger(std::make_shared<Logger>());
    document.Check();
    EXPECT_EQ(message.GetLogger(), logger);
    EXPECT_EQ(message.GetFragment().last().GetLogger(), logger);
}

TEST(LoggingPage, ACopyHasNoLoggerAtAnyDepthAndWhatIsAssignedFollowsLater)
{
    const auto logger = std::make_shared<Logger>();
    PelLu300RouterInterfaceXml document = sample();
    document.SetLogger(logger);
    PelLu300RouterInterfaceXml copy(document);
    PelLu300RouterInterfaceXml assigned;
    assigned = document;
    const PelLu300RouterInterfaceXml& copied = copy;
    EXPECT_EQ(copied.GetLogger(), nullptr);
    EXPECT_EQ(copied.GetPelLu300RouterMessage().GetLogger(), nullptr);
    const PelLu300RouterInterfaceXml& given = assigned;
    EXPECT_EQ(given.GetLogger(), nullptr);
    EXPECT_EQ(given.GetPelLu300RouterMessage().GetLogger(), logger);
    given.Check();
    EXPECT_EQ(given.GetPelLu300RouterMessage().GetLogger(), nullptr);
    EXPECT_EQ(document.GetPelLu300RouterMessage().GetLogger(), logger);
}

TEST(LoggingPage, ResetLoggerLetsGoOfTheRecordsOwnOnly)
{
    auto logger = std::make_shared<Logger>();
    const std::weak_ptr<Logger> watched = logger;
    PelLu300RouterInterfaceXml document = sample();
    document.SetLogger(std::move(logger));
    document.ResetLogger();
    EXPECT_EQ(document.GetLogger(), nullptr);
    EXPECT_FALSE(watched.expired());
    document.Check();
    EXPECT_TRUE(watched.expired());
}

TEST(LoggingPage, SettingNoLoggerLetsGoOfItEverywhere)
{
    auto logger = std::make_shared<Logger>();
    const std::weak_ptr<Logger> watched = logger;
    const PelLu300RouterInterfaceXml document = sample();
    document.SetLogger(std::move(logger));
    document.SetLogger(nullptr);
    EXPECT_TRUE(watched.expired());
}

TEST(LoggingPage, CheckingAndWritingLogNothing)
{
    const auto sink = std::make_shared<MODELKIT::MemoryLogSink>();
    PelLu300RouterMessage message;
    message.SetValidate(true);
    message.SetLogger(std::make_shared<Logger>(sink));
    EXPECT_THROW(message.Check(), OutOfRangeException);
    EXPECT_THROW(xmlOf(message), OutOfRangeException);
    EXPECT_THROW(message.SetType(static_cast<PelLu300RouterMessage::Type>(9)), OutOfRangeException);
    EXPECT_TRUE(sink->GetEntries().isEmpty());
    EXPECT_THROW(message.GetXmlString(), OutOfRangeException);
    EXPECT_EQ(sink->GetEntries().size(), 1);
}

// --- sinks ----------------------------------------------------------------------------------------

//! [a sink]
class Lines : public MODELKIT::LogSink
{
public:
    explicit Lines(QStringList& lines) : m_lines(lines) {}

    void Write(Logger::Level level, const QString& text) override
    {
        static const char* const names[] = {"Info", "Warning", "Error"};
        m_lines.append(QLatin1String(names[level]) + QStringLiteral(", ") + text);
    }

private:
    QStringList& m_lines;
};
//! [a sink]

TEST(LoggingPage, ASinkGetsLevelAndText)
{
    QStringList lines;
    PelLu300RouterInterfaceXml document;
    document.SetLogger(std::make_shared<Logger>(std::make_shared<Lines>(lines)));
    EXPECT_FALSE(document.LoadXml(QStringLiteral("request.xml")));
    EXPECT_EQ(lines.join(QLatin1Char('\n')), shownOn("docs/logging.md", QStringLiteral("Error, ")));
}

TEST(LoggingPage, TheLoggerGoesAtOnceOrLater)
{
    const Said said;
    auto logger = std::make_shared<Logger>();
    const std::weak_ptr<Logger> held = logger;
    PelLu300RouterInterfaceXml document = sample();
    document.SetLogger(std::move(logger));
    //! [getting rid of the logger]
    document.ResetLogger(); // the records below still hold it
    qInfo() << "still used:" << !held.expired();
    document.SetLogger(nullptr); // nobody holds it
    qInfo() << "still used:" << !held.expired();
    //! [getting rid of the logger]
    EXPECT_EQ(Said::texts().join(QLatin1Char('\n')),
              shownOn("docs/logging.md", QStringLiteral("still used")));
}
