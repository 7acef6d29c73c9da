// SPDX-License-Identifier: MIT
#include "wire/ExchangeLog.h"

#include "Output.h"
#include "Saving.h"
#include "SavingReport.h"
#include "TreeView.h"
#include "commands/SharedOptions.h"
#include "documents/Text.h"

#include "routerinterface/PelLu300RouterInterfaceXml.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QDateTime>
#include <QtCore/QStringList>

namespace routermsg {

using namespace ROUTERDOCUMENTS;
using PELLU300ROUTERINTERFACEXML::Fragment;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml;
using PELLU300ROUTERINTERFACEXML::PelLu300RouterMessage;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

QString payloadOf(const Fragment& fragment)
{
    for (const MemberInfo* member : RecordInfo::Of(fragment).GetMembers())
        if (member->IsSet(fragment))
            return member->GetName();
    return QStringLiteral("empty");
}

QString payloadsOf(const PelLu300RouterMessage& message)
{
    constexpr int most = 5;
    QStringList names;
    const auto& fragments = message.GetFragment();
    for (int i = 0; i < fragments.size() && i < most; ++i)
        names += payloadOf(fragments.at(i));
    if (fragments.size() > most)
        names += QStringLiteral("%1 more").arg(fragments.size() - most);
    return names.join(QStringLiteral(", "));
}

QString whoDid(Direction direction)
{
    switch (direction) {
    case Direction::Received:
        return QStringLiteral("received");
    case Direction::Sent:
        return QStringLiteral("sent");
    case Direction::ToServer:
        return QStringLiteral("to server");
    case Direction::ToClient:
        break;
    }
    return QStringLiteral("to client");
}

// Who ended a connection.
QString enderOf(Direction direction)
{
    switch (direction) {
    case Direction::Received:
        return QStringLiteral("closed by the other end");
    case Direction::Sent:
        return QStringLiteral("closed");
    case Direction::ToServer:
        return QStringLiteral("closed by the client");
    case Direction::ToClient:
        break;
    }
    return QStringLiteral("closed by the server");
}

bool isBrief(const Arguments& arguments)
{
    const bool isBrief = arguments.isGiven("--brief");
    if (isBrief && arguments.isGiven("--to"))
        arguments.refuse(QStringLiteral("The option --brief leaves out what --to is about."));
    return isBrief;
}

} // namespace

QString summaryOf(const MODELKIT::IMKObject& record)
{
    const auto* const document = dynamic_cast<const PelLu300RouterInterfaceXml*>(&record);
    if (!document)
        return RecordInfo::Of(record).GetName();
    const PelLu300RouterMessage& message = document->GetPelLu300RouterMessage();
    QString text = message.GetTypeAsString();
    if (text.isEmpty())
        text = QStringLiteral("message without a type");
    if (message.IsMessageIDSet())
        text += QStringLiteral(" %1").arg(message.GetMessageID());
    const QString payloads = payloadsOf(message);
    return payloads.isEmpty() ? text : text + QStringLiteral(": ") + payloads;
}

OptionTable recordOption()
{
    return option(
        {"--record"}, fileValue(),
        "A recording to which everything that comes and goes is appended, a line for each message.");
}

QVector<OptionTable> exchangeOptionRows()
{
    return {formOption("--to", "Write only the messages, in this form, and complain of the rest."),
            flag({"--brief"}, "Write only a line for each message, without its content."), recordOption()};
}

std::unique_ptr<Recorder> recorderOf(const Arguments& arguments)
{
    return arguments.isGiven("--record") ? std::make_unique<Recorder>(arguments.text("--record")) : nullptr;
}

Finding faultOf(const Exchange& exchange)
{
    Finding finding;
    finding.text = exchange.fault;
    if (!exchange.event)
        finding.text +=
            QStringLiteral(" (%1 bytes %2)").arg(exchange.bytes.size()).arg(whoDid(exchange.direction));
    finding.place.file = exchange.peer;
    return finding;
}

Status runShowing(Session& session, const std::function<Status()>& work)
{
    try {
        return work();
    } catch (const Refusal& refusal) {
        session.complainInLine(refusal.finding());
        return refusal.finding().status;
    }
}

ExchangeLog::ExchangeLog(const Arguments& arguments, Session& session)
    : m_session(session), m_isBrief(isBrief(arguments)), m_form(formOf(arguments, "--to"))
{
    if (arguments.isGiven("--record"))
        m_recorder.emplace(arguments.text("--record"));
}

void ExchangeLog::add(const Exchange& exchange)
{
    if (m_recorder)
        m_recorder->add(exchange);
    if (!exchange.fault.isNull() && (exchange.event || exchange.direction != Direction::Sent))
        m_status = Found;
    show(exchange);
    m_session.out().flush();
}

void ExchangeLog::show(const Exchange& exchange)
{
    if (m_session.format() == Format::Json)
        return m_session.out().write(ShowableJson(QString::fromUtf8(ToExchangeLine(exchange))));
    const bool isFault = !exchange.fault.isNull();
    if (m_form && isFault)
        return m_session.complain(faultOf(exchange));
    if (m_form && exchange.record && exchange.direction != Direction::Sent)
        return showMessage(exchange);
    if (!m_form && (isFault || !m_session.isQuiet()))
        writeLine(exchange);
}

void ExchangeLog::showMessage(const Exchange& exchange)
{
    const Target target(QStringLiteral("-"), m_form);
    SavingReport report(target.path, m_session);
    try {
        MessageWriter(target, m_session, report).add(*exchange.record);
    } catch (const OutputRefusal&) {
        throw;
    } catch (const Refusal& refusal) {
        // The form cannot carry this message. Others may follow.
        Finding finding = refusal.finding();
        // The line is that of what was to be written.
        const QString path = finding.place.path;
        finding.place = {};
        finding.place.file = exchange.peer;
        finding.place.path = path;
        m_session.complain(finding);
        m_status = Found;
    }
}

void ExchangeLog::writeLine(const Exchange& exchange)
{
    Output& out = m_session.out();
    const QString time = exchange.time.toLocalTime().toString(QStringLiteral("HH:mm:ss.zzz"));
    out.writeLine(out.paint(Style::Faint, time) + QLatin1Char(' ')
                  + out.paint(Style::Place, Printable(exchange.peer)) + QLatin1Char(' ') + textOf(exchange));
    if (exchange.record && exchange.direction != Direction::Sent && !m_isBrief)
        writeTree(*exchange.record, out);
}

QString ExchangeLog::textOf(const Exchange& exchange) const
{
    const Output& out = m_session.out();
    const QString fault =
        exchange.fault.isNull()
            ? QString()
            : m_session.out().paint(Style::Error, QStringLiteral("error: ")) + Printable(exchange.fault);
    if (exchange.event == ConnectionEvent::Connected)
        return QStringLiteral("connected");
    if (exchange.event)
        return enderOf(exchange.direction) + (fault.isEmpty() ? QString() : QStringLiteral("; ") + fault);
    if (exchange.fault.isNull())
        return QStringLiteral("%1 %2 (%3)")
            .arg(whoDid(exchange.direction), out.paint(Style::Name, summaryOf(*exchange.record)),
                 NameOf(*exchange.form));
    constexpr int mostBytes = 16;
    QString bytes = QString::fromLatin1(exchange.bytes.left(mostBytes).toHex(' '));
    if (exchange.bytes.size() > mostBytes)
        bytes += QStringLiteral(" ...");
    return QStringLiteral("%1 %2 (%3 bytes%4)")
        .arg(whoDid(exchange.direction), fault, QString::number(exchange.bytes.size()),
             bytes.isEmpty() ? QString() : QStringLiteral(": ") + bytes);
}

} // namespace routermsg
