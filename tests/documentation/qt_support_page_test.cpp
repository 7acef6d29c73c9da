// SPDX-License-Identifier: MIT
// The samples of docs/qt-support.md and what they print.

#include "Said.h"
#include "TestSupport.h"

//! [what is included]
#include "routerinterface/QtSupport.h"

using namespace PELLU300ROUTERINTERFACEXML;
//! [what is included]

#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtCore/QSet>

using namespace testing_support;

namespace {

class QtSupportPage : public ::testing::Test
{
protected:
    // Expects that the samples have printed something, and that the page shows it, indented as code.
    static void expectPrintedOnPage()
    {
        QFile page(projectPath("docs/qt-support.md"));
        ASSERT_TRUE(page.open(QIODevice::ReadOnly));
        const QString printed = Said::texts().join(QLatin1Char('\n'));
        ASSERT_FALSE(printed.isEmpty());
        QString indented = printed;
        indented.replace(QLatin1String("\n"), QLatin1String("\n    "));
        EXPECT_TRUE(QString::fromUtf8(page.readAll()).contains(text("\n\n    %1\n\n").arg(indented)))
            << "docs/qt-support.md must say:\n"
            << printed.toStdString();
    }

    const Said said;
};

} // namespace

TEST_F(QtSupportPage, PrintsRecords)
{
    PelLu300RouterMessage message = MakeRequest(7);
    AddPayload<DF_Params>(message).SetFrequency(98.5e6);
    AddPayload<PelVtConnectServer>(message).SetAddress(QStringLiteral("192.0.2.1"));
    //! [printing]
    qDebug() << message;
    //! [printing]
    expectPrintedOnPage();
}

TEST_F(QtSupportPage, BuildsMessages)
{
    OstraInterfacePort port;
    port.SetPort(5000);
    //! [a request]
    PelLu300RouterMessage request = MakeRequest(7, port);
    AddPayload<DF_Params>(request).SetFrequency(98.5e6);
    const PelLu300RouterInterfaceXml document = MakeDocument(request);
    //! [a request]
    EXPECT_EQ(FragmentsOf(document).size(), 2);

    //! [a reply]
    AcquireMastership acquired;
    acquired.SetSuccess(true);
    const PelLu300RouterInterfaceXml reply = MakeReply(document, acquired);
    //! [a reply]
    EXPECT_EQ(reply.GetPelLu300RouterMessage().GetMessageID(), 7U);
    EXPECT_EQ(reply.GetPelLu300RouterMessage().GetType(), PelLu300RouterMessage::Reply);
}

TEST_F(QtSupportPage, VisitsPayloads)
{
    PelLu300RouterMessage message = MakeRequest();
    AddPayload<OstraInterfacePort>(message).SetPort(5000);
    AddPayload<PelVtConnectServer>(message).SetAddress(QStringLiteral("192.0.2.1"));
    AddPayload<AcquireMastership>(message);
    message.AddFragment();
    //! [visiting]
    for (const Fragment& fragment : FragmentsOf(message)) {
        Visit(
            fragment, [](const OstraInterfacePort& port) { qInfo() << "port" << port.GetPort(); },
            [](const PelVtConnectServer& server) {
                qInfo() << "server" << TextOf(server, &PelVtConnectServer::GetAddress);
            },
            [](NoPayload) { qInfo() << "nothing"; },
            [](const MODELKIT::IMKObject& other) { qInfo() << "unexpected:" << other.GetObjectName(); });
    }
    //! [visiting]
    expectPrintedOnPage();

    //! [changing what is visited]
    for (Fragment& fragment : message.GetFragment())
        VisitToChange(
            fragment, [](OstraInterfacePort& port) { port.SetPort(port.GetPort() + 1); }, [](const auto&) {});
    //! [changing what is visited]
    EXPECT_EQ(FragmentsOf(message).first().GetOstraInterfacePort().GetPort(), 5001U);
}

TEST_F(QtSupportPage, LooksEnumeratorsUp)
{
    //! [enumerators]
    using Types = Enumerators<PelLu300RouterMessage::Type>;
    qInfo() << Types::NameOf(PelLu300RouterMessage::Reply) << Types::GetNames().join(QLatin1Char(' '));
    if (const auto type = Types::ValueOf(QStringLiteral("Event")))
        qInfo() << *type << "has the value" << static_cast<int>(*type);
    //! [enumerators]
    expectPrintedOnPage();
}

TEST_F(QtSupportPage, HashesRecords)
{
    const QVector<PelLu300RouterMessage> received{MakeRequest(7), MakeRequest(8), MakeRequest(7)};
    //! [hashing]
    QSet<PelLu300RouterMessage> different;
    for (const PelLu300RouterMessage& message : received)
        different.insert(message);
    //! [hashing]
    EXPECT_EQ(different.size(), 2);
}

TEST_F(QtSupportPage, ComparesWhatIsWritten)
{
    DF_Params sent;
    sent.SetFrequency(0.125);
    DF_Params received;
    ASSERT_TRUE(received.SetXmlString(sent.GetXmlString(), false));
    //! [comparing]
    if (!EqualsWithin(sent, received, WrittenForm::Xml))
        qWarning() << "sent" << sent << "but received" << received;
    //! [comparing]
    EXPECT_TRUE(Said::texts().isEmpty());
    EXPECT_FALSE(sent == received);
}

TEST_F(QtSupportPage, ReadsWithoutExceptions)
{
    const QByteArray bytes = "<PelLu300RouterInterfaceXml>\n <PelLu300RouterMessage>\n  <Type>Replay</Type>\n"
                             " </PelLu300RouterMessage>\n</PelLu300RouterInterfaceXml>";
    [&bytes] {
        //! [reading]
        MODELKIT::ReadOptions options;
        options.validate = true;
        options.check = true;
        options.report = true;
        options.limits = MODELKIT::Limits::Get();
        options.limits->inputSize = 1 << 20;

        PelLu300RouterInterfaceXml document;
        const MODELKIT::ReadOutcome outcome = MODELKIT::TryReadXml(document, bytes, options);
        if (!outcome) {
            qWarning() << outcome.failure;
            return;
        }
        if (!outcome.HasLostNothing())
            qWarning() << "ignored" << outcome.entries.size() << "things";
        //! [reading]
    }();
    expectPrintedOnPage();
}

TEST_F(QtSupportPage, MakesMetatypes)
{
    const PelLu300RouterMessage message = MakeRequest(7);
    //! [metatypes]
    RegisterRecordMetatypes();
    const QVariant variant = QVariant::fromValue(message);
    qInfo() << variant.value<PelLu300RouterMessage>().GetMessageID();
    //! [metatypes]
    EXPECT_EQ(Said::texts(), QStringList(QStringLiteral("7")));
}
