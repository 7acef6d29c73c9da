// SPDX-License-Identifier: MIT
// The samples and the annotated messages of docs/link.md.

#include "EventLoop.h"
#include "PipeDevice.h"
#include "Said.h"
#include "TestSupport.h"

//! [what is included]
#include "link/MessageChannel.h"
#include "link/MessageReader.h"

using namespace ROUTERLINK;
using namespace PELLU300ROUTERINTERFACEXML;
//! [what is included]

#include "documents/Dissection.h"

#include <QtCore/QFile>

using namespace testing_support;

namespace {

class LinkPage : public ::testing::Test
{
protected:
    // Expects that the page shows the text, indented as code.
    static void expectOnPage(const QStringList& lines)
    {
        QFile page(projectPath("docs/link.md"));
        ASSERT_TRUE(page.open(QIODevice::ReadOnly));
        QString indented;
        for (const QString& line : lines)
            indented += QStringLiteral("    ") + line + QLatin1Char('\n');
        EXPECT_TRUE(
            QString::fromUtf8(page.readAll()).contains(QLatin1String("\n\n") + indented + QLatin1Char('\n')))
            << "docs/link.md must say:\n"
            << indented.toStdString();
    }

    // What the samples have printed.
    static QStringList printed()
    {
        const QStringList lines = Said::texts();
        Said::texts().clear();
        return lines;
    }

    const Said said;
};

PelLu300RouterInterfaceXml acquiring(PelLu300RouterMessage::Type type)
{
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(type);
    message.SetMessageID(7);
    Fragment fragment;
    if (type == PelLu300RouterMessage::Reply)
        fragment.GetAcquireMastership().SetSuccess(true);
    else
        fragment.SetAcquireMastership(AcquireMastership());
    message.AppendFragment(fragment);
    return document;
}

} // namespace

TEST_F(LinkPage, ShowsAnExchangeByteByByte)
{
    // Eight bytes a line.
    QStringList lines;
    ROUTERDOCUMENTS::DissectPlain(
        acquiring(PelLu300RouterMessage::Request).GetBinaryRepresentationAsQByteArray(),
        [&lines](const ROUTERDOCUMENTS::Part& part) {
            EXPECT_TRUE(part.wrong.isEmpty());
            lines += QStringLiteral("%1  %2  %3%4")
                         .arg(part.offset, 3)
                         .arg(QString::fromLatin1(part.bytes.toHex(' ').toUpper()), -23)
                         .arg(QString(part.depth * 2, QLatin1Char(' ')), part.meaning);
        });
    expectOnPage(lines);
    const QByteArray xml = acquiring(PelLu300RouterMessage::Reply).GetXmlBytes(MODELKIT::XmlLayout::Compact);
    expectOnPage({QString::fromUtf8(xml).trimmed()});
}

TEST_F(LinkPage, AsksAndAnswers)
{
    PipeEnd clientDevice;
    PipeEnd serverDevice;
    PipeEnd::connectEnds(clientDevice, serverDevice);
    QIODevice& connection = serverDevice;

    //! [a server]
    MessageChannel server(connection);
    QObject::connect(&server, &MessageChannel::MessageReceived,
                     [&server](const PelLu300RouterInterfaceXml& request) {
                         PelLu300RouterInterfaceXml reply(request);
                         PelLu300RouterMessage& message = reply.GetPelLu300RouterMessage();
                         message.SetType(PelLu300RouterMessage::Reply);
                         for (Fragment& fragment : message.GetFragment())
                             fragment.GetAcquireMastership().SetSuccess(true);
                         if (!server.Send(reply))
                             qWarning().noquote() << server.GetSendFailure().GetSentence();
                     });
    QObject::connect(&server, &MessageChannel::Closed, [](const MODELKIT::Failure& failure) {
        if (failure.kind != MODELKIT::Failure::None)
            qWarning().noquote() << failure.GetSentence();
    });
    //! [a server]

    QIODevice& socket = clientDevice;
    //! [a client]
    MessageChannel client(socket);
    PelLu300RouterInterfaceXml document;
    Fragment fragment;
    fragment.SetAcquireMastership(AcquireMastership());
    document.GetPelLu300RouterMessage().AppendFragment(fragment);
    PendingRequest* const request = client.Request(document, std::chrono::seconds(5));
    QObject::connect(request, &PendingRequest::Finished, [](const RequestResult& result) {
        if (result.outcome != RequestResult::Replied) {
            qWarning().noquote() << result.failure.GetSentence();
            return;
        }
        for (const Fragment& answer : result.reply.GetPelLu300RouterMessage().GetFragment())
            qInfo() << "master:" << answer.GetAcquireMastership().GetSuccess();
    });
    //! [a client]
    waitUntil([] { return !Said::texts().isEmpty(); });
    expectOnPage(printed());
}

TEST_F(LinkPage, ReadsWhatArrives)
{
    const QByteArray event = "<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Event</Type>"
                             "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>";
    const QByteArray request =
        acquiring(PelLu300RouterMessage::Request).GetBinaryRepresentationAsQByteArray();
    //! [reading without a device]
    MODELKIT::Limits limits;
    limits.inputSize = 1 << 20;
    limits.inflatedSize = 1 << 20;
    MessageReader reader(limits);
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    const auto take = [&](const QByteArray& arrived) {
        reader.AddData(arrived);
        while (true) {
            switch (reader.Next(document)) {
            case MessageReader::NeedMore:
                return true;
            case MessageReader::Ready:
                qInfo().noquote() << document.GetPelLu300RouterMessage().GetTypeAsString() << "in"
                                  << NameOf(reader.GetForm());
                break;
            case MessageReader::Refused:
                qInfo().noquote() << "passed over:" << reader.GetFailure().GetSentence();
                break;
            case MessageReader::Broken:
                qInfo().noquote() << "broken:" << reader.GetFailure().GetSentence();
                return false;
            case MessageReader::Ended:
                return false;
            }
        }
    };
    //! [reading without a device]
    EXPECT_TRUE(take(request.left(10)));
    EXPECT_TRUE(take(request.mid(10) + event.left(20)));
    EXPECT_TRUE(take(event.mid(20) + QByteArray(event).replace("Event", "Evert") + "\n"));
    EXPECT_FALSE(take("hello"));
    expectOnPage(printed());
}
