// SPDX-License-Identifier: MIT
// The command `connect`: shows what a server sends, and sends what is typed.

#include "Commands.h"
#include "UsageError.h"
#include "documents/Text.h"
#include "wire/Completion.h"
#include "wire/Conversation.h"
#include "wire/ExchangeLog.h"
#include "wire/LineEditor.h"
#include "wire/LineInput.h"
#include "wire/SendingForm.h"
#include "wire/WireLoop.h"

#include <QtCore/QScopeGuard>

#include <algorithm>
#include <memory>

namespace routermsg {

using namespace ROUTERDOCUMENTS;
using ROUTERLINK::RequestResult;

namespace {

// A complaint may repeat a word, which may be as long as the line.
constexpr int longestText = 1000;

// No more is read from the input while so many bytes wait because the server takes none.
constexpr qint64 mostQueued = 1 << 20;

class Dialogue
{
public:
    Dialogue(const Arguments& arguments, Session& session)
        : m_session(session),
          m_server(serverOf(arguments)), m_options{sendingFormOf(arguments),
                                                   waitOf(arguments, std::chrono::seconds(5))},
          m_log(arguments, session)
    {}

    Status run()
    {
        Conversation::Receivers receivers;
        receivers.onConnected = [this] { begin(); };
        receivers.onExchange = [this](const Exchange& exchange) { m_log.add(exchange); };
        receivers.onStrayReply = [this](const Exchange& reply, bool isLate) { warnOf(reply, isLate); };
        receivers.onClosed = [this](const QString& fault) { end(fault); };
        receivers.onDrained = [this] {
            if (m_input)
                m_input->resume();
        };
        WireLoop loop;
        m_loop = &loop;
        // An exception, too, must not leave the input without its loop.
        const auto inputEnd = qScopeGuard([this] { m_input.reset(); });
        Conversation conversation(m_server, m_options, receivers, loop);
        m_conversation = &conversation;
        loop.run();
        m_input.reset();
        conversation.leave();
        if (loop.isInterrupted())
            complainOfEnd();
        return std::max(m_status, m_log.status());
    }

private:
    void begin()
    {
        const LineSource::Receivers receivers{[this](const QString& line) { take(line); },
                                              [this] { endInput(); }};
        m_input = editedLines(*m_loop, m_session, receivers, completionOf);
        if (!m_input)
            m_input = std::make_unique<LineInput>(*m_loop, receivers);
    }

    void take(const QString& line)
    {
        ++m_line;
        if (line.isNull())
            return complainOfLine(QStringLiteral("The line is not UTF-8."));
        const QString request = line.trimmed();
        if (request.isEmpty())
            return;
        if (request.startsWith(QLatin1Char('?')))
            return offer(request.mid(1).trimmed());
        try {
            send(messageOf(request));
        } catch (const UsageError& error) {
            complainOfLine(error.text());
        } catch (const OutputRefusal&) {
            // The recording cannot be written, which is no mistake of the line.
            throw;
        } catch (const Refusal& refusal) {
            complainOfLine(refusal.finding().text);
        }
    }

    void send(const OutgoingMessage& message)
    {
        using PELLU300ROUTERINTERFACEXML::PelLu300RouterMessage;
        if (message->GetPelLu300RouterMessage().GetType() == PelLu300RouterMessage::Request)
            ++m_waiting;
        m_conversation->send(message,
                             [this, message](const RequestResult& result) { finish(message, result); });
        if (m_conversation->queuedBytes() > mostQueued)
            m_input->pause();
    }

    void finish(const OutgoingMessage& request, const RequestResult& result)
    {
        --m_waiting;
        const QString what = summaryOf(*request);
        if (result.outcome == RequestResult::TimedOut)
            complain(QStringLiteral("No reply within %1 to %2.").arg(textOf(m_options.wait), what), Found);
        else if (result.outcome == RequestResult::Failed && m_conversation->isOver())
            complain(QStringLiteral("No reply to %1: The connection has ended.").arg(what), Failed);
        else if (result.outcome == RequestResult::Failed)
            complain(QStringLiteral("%1 was not sent: %2").arg(what, result.failure.GetSentence()), Failed);
        closeWhenDone();
    }

    void endInput()
    {
        m_hasInputEnded = true;
        closeWhenDone();
    }

    void closeWhenDone()
    {
        if (m_hasInputEnded && m_waiting == 0 && !m_conversation->isOver())
            m_conversation->close();
    }

    void end(const QString& fault)
    {
        if (m_input)
            m_input->stop();
        if (!fault.isNull())
            complain(fault, Failed);
        else if (!m_hasInputEnded)
            complain(QStringLiteral("The connection has ended before the input."), Found);
        m_loop->quit();
    }

    // A signal has ended the program.
    void complainOfEnd()
    {
        if (m_conversation->queuedBytes() > 0)
            complain(QStringLiteral("%1 bytes were not sent: The program was ended.")
                         .arg(m_conversation->queuedBytes()),
                     Failed);
        if (m_waiting > 0)
            complain(
                (m_waiting == 1
                     ? QStringLiteral("1 request got no reply: The program was ended.")
                     : QStringLiteral("%1 requests got no reply: The program was ended.").arg(m_waiting)),
                Failed);
    }

    // The words that a line can have, for people who type.
    void offer(const QString& begin)
    {
        QStringList words = offeredRequests();
        words.erase(
            std::remove_if(words.begin(), words.end(),
                           [&](const QString& word) { return !word.startsWith(begin, Qt::CaseInsensitive); }),
            words.end());
        m_session.complain(words.isEmpty() ? QStringLiteral("No word begins like that.")
                                           : words.join(QLatin1Char(' ')));
    }

    void warnOf(const Exchange& reply, bool isLate)
    {
        const QString text = isLate ? QStringLiteral("A reply has come too late: %1.")
                                    : QStringLiteral("A reply has come that no request waits for: %1.");
        Finding finding = connectionFinding(m_server, text.arg(summaryOf(*reply.record)));
        finding.severity = Finding::Warning;
        m_session.complainInLine(finding);
    }

    void complainOfLine(const QString& text)
    {
        Finding finding =
            Finding::ofFile(QStringLiteral("<stdin>"), text.size() > longestText ? Abbreviated(text) : text);
        finding.place.line = m_line;
        m_session.complainInLine(finding);
        m_status = Failed;
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
    ExchangeLog m_log;
    WireLoop* m_loop = nullptr;
    Conversation* m_conversation = nullptr;
    std::unique_ptr<LineSource> m_input;
    // The number of the line that was read last.
    qint64 m_line = 0;
    // How many requests wait for their replies.
    int m_waiting = 0;
    bool m_hasInputEnded = false;
    Status m_status = Fine;
};

} // namespace

Command connectCommand()
{
    CommandTable table;
    table.name = "connect";
    table.summary = "Show what a server sends, and send what is typed.";
    table.arguments = {serverArgument()};
    table.options =
        QVector<OptionTable>{waitOption("How long each reply may take, such as 500ms or 1m; without it 5s."),
                             sendingFormOption()}
        + exchangeOptionRows();
    table.notesTitle = "Input";
    table.notes = {
        {"WORD...", "A message in words, as the command new takes them; without a type it is a request."},
        {"? BEGIN", "Shows the words that begin like that."}};
    table.examples = {
        {"%1 connect localhost:4711",
         "Type AcquireMastership, or Request MessageID=7 DF_Params Frequency=98.5e6."},
        {"echo AcquireMastership | %1 connect localhost:4711 --brief", "Ends when the reply has come."}};
    return {table, runShowing<Dialogue>};
}

} // namespace routermsg
