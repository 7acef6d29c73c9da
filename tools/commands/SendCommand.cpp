// SPDX-License-Identifier: MIT
// The command `send`: sends messages to a server and writes the replies.

#include "Commands.h"
#include "Saving.h"
#include "SavingReport.h"
#include "SharedOptions.h"
#include "documents/Text.h"
#include "wire/Conversation.h"
#include "wire/ExchangeLog.h"
#include "wire/SendingForm.h"
#include "wire/WireLoop.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace routermsg {

using namespace ROUTERDOCUMENTS;
using ROUTERLINK::RequestResult;

namespace {

// Sends the messages one behind another. After a request it waits for the reply.
class Sender
{
public:
    Sender(const Arguments& arguments, Session& session)
        : m_session(session),
          m_server(serverOf(arguments)), m_options{sendingFormOf(arguments),
                                                   waitOf(arguments, std::chrono::seconds(5))},
          m_target(QStringLiteral("-"), formOf(arguments, "--to")), m_report(m_target.path, session),
          m_writer(m_target, session, m_report),
          m_messages(outgoingMessages(arguments.texts("FILE|REQUEST"))), m_recorder(recorderOf(arguments))
    {}

    Status run()
    {
        Conversation::Receivers receivers;
        receivers.onConnected = [this] { sendOn(); };
        receivers.onExchange = [this](const Exchange& exchange) { note(exchange); };
        receivers.onStrayReply = [this](const Exchange& reply, bool isLate) { tellStray(reply, isLate); };
        receivers.onClosed = [this](const QString& fault) { end(fault); };
        WireLoop loop;
        m_loop = &loop;
        Conversation conversation(m_server, m_options, receivers, loop);
        m_conversation = &conversation;
        loop.run();
        conversation.leave();
        if (loop.isInterrupted())
            complain(QStringLiteral("The program was ended."), Failed);
        return m_status;
    }

private:
    void sendOn()
    {
        while (m_next < m_messages.size() && !m_conversation->isOver()) {
            const OutgoingMessage message = m_messages[m_next++];
            bool isRequest = false;
            const auto type = message->GetPelLu300RouterMessage().GetType();
            isRequest = type == PELLU300ROUTERINTERFACEXML::PelLu300RouterMessage::Request;
            m_conversation->send(message,
                                 [this, message](const RequestResult& result) { take(message, result); });
            if (isRequest)
                return;
        }
        m_conversation->close();
    }

    void take(const OutgoingMessage& request, const RequestResult& result)
    {
        if (result.outcome == RequestResult::Replied) {
            writeReply();
        } else {
            const bool isLate = result.outcome == RequestResult::TimedOut;
            const QString reason = m_conversation->isOver() ? QStringLiteral("The connection has ended.")
                                                            : result.failure.GetSentence();
            complain(isLate ? QStringLiteral("No reply within %1 to %2.")
                                  .arg(textOf(m_options.wait), summaryOf(*request))
                            : QStringLiteral("No reply to %1: %2").arg(summaryOf(*request), reason),
                     isLate ? Found : Failed);
        }
        if (!m_conversation->isOver())
            sendOn();
    }

    void note(const Exchange& exchange)
    {
        if (m_recorder)
            m_recorder->add(exchange);
        if (!exchange.event && !exchange.record)
            complain(faultOf(exchange).text, Found);
        m_last = exchange;
    }

    // The reply is what has come last.
    void writeReply()
    {
        if (m_session.format() == Format::Json) {
            m_session.out().write(ShowableJson(QString::fromUtf8(ToExchangeLine(m_last))));
            m_session.out().flush();
        } else {
            try {
                m_writer.add(*m_last.record);
            } catch (const OutputRefusal&) {
                throw;
            } catch (const Refusal& refusal) {
                // The form cannot carry this reply; perhaps it can carry the next one.
                complain(QStringLiteral("%1 cannot be written: %2")
                             .arg(summaryOf(*m_last.record), refusal.finding().text),
                         Found);
            }
        }
    }

    void tellStray(const Exchange& reply, bool isLate)
    {
        const QString text = isLate ? QStringLiteral("A reply has come too late: %1.")
                                    : QStringLiteral("A reply has come that no request waits for: %1.");
        Finding finding = connectionFinding(m_server, text.arg(summaryOf(*reply.record)));
        finding.severity = Finding::Warning;
        m_session.complainInLine(finding);
    }

    void end(const QString& fault)
    {
        const auto unsent = m_messages.size() - m_next;
        if (unsent > 0)
            complain(QStringLiteral("The connection has ended before %1 of %2 messages were sent.")
                         .arg(unsent)
                         .arg(m_messages.size()),
                     Failed);
        if (!fault.isNull())
            complain(fault, Failed);
        m_loop->quit();
    }

    void complain(const QString& text, Status status)
    {
        Finding finding = connectionFinding(m_server, text);
        finding.status = status;
        m_session.complainInLine(finding);
        m_status = std::max(m_status, status);
    }

    Session& m_session;
    const Endpoint m_server;
    const ConversationOptions m_options;
    const Target m_target;
    SavingReport m_report;
    MessageWriter m_writer;
    const std::vector<OutgoingMessage> m_messages;
    std::unique_ptr<Recorder> m_recorder;
    WireLoop* m_loop = nullptr;
    Conversation* m_conversation = nullptr;
    std::size_t m_next = 0;
    Exchange m_last;
    Status m_status = Fine;
};

} // namespace

Command sendCommand()
{
    CommandTable table;
    table.name = "send";
    table.summary = "Send messages to a server and write the replies.";
    table.arguments = {serverArgument(), outgoingArgument()};
    table.options = {
        waitOption("How long each reply may take, such as 500ms or 1m; without it 5s."), sendingFormOption(),
        formOption("--to", "The form in which replies are written; without it xml."), recordOption()};
    table.examples = {
        {"%1 send localhost:4711 AcquireMastership", "A request in one word, and its reply as XML."},
        {"%1 send localhost:4711 'Request MessageID=7 DF_Params Frequency=98.5e6' --to json",
         "A request with a number of its own; the reply as JSON."},
        {"%1 send localhost:4711 requests.jsonl --wait 1m --record session.jsonl",
         "All messages of a file, with a recording of what went and came."}};
    return {table, runShowing<Sender>};
}

} // namespace routermsg
