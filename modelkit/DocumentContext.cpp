// SPDX-License-Identifier: MIT
#include "modelkit/DocumentContext.h"

#include <QtCore/QXmlStreamReader>

#include <algorithm>

namespace MODELKIT {

namespace {

// Values can be long. A null text stays null.
QString beginningOf(const QString& value) { return value.left(ReadingReport::maximalValueCharacters); }

thread_local DocumentContext* currentContext = nullptr;

} // namespace

DocumentContext::DocumentContext(Purpose purpose)
    : m_purpose(purpose), m_limits(Limits::Get()),
      m_report(purpose == Purpose::Reading ? ReadingReport::Current() : nullptr), m_outer(currentContext)
{
    currentContext = this;
}

DocumentContext::~DocumentContext() { currentContext = m_outer; }

DocumentContext* DocumentContext::Current() noexcept { return currentContext; }

void DocumentContext::Fail(Failure::Kind kind, const QString& text)
{
    if (m_failure.kind != Failure::None)
        return;
    m_failure.kind = kind;
    m_failure.text = text;
}

bool DocumentContext::CountToken(QXmlStreamReader& reader)
{
    if (reader.isEndElement()) {
        --m_depth;
    } else if (reader.isStartElement() && ++m_depth > m_limits.nestingDepth) {
        Fail(Failure::NestedTooDeep,
             QStringLiteral("Elements are nested deeper than the limit of %1.").arg(m_limits.nestingDepth));
        reader.raiseError(m_failure.text);
        return false;
    }
    return true;
}

bool DocumentContext::AdmitsItem(qint64 items)
{
    if (IsTransfer() || items < m_limits.listItems)
        return true;
    Fail(Failure::TooManyItems,
         QStringLiteral("A list holds more items than the limit of %1.").arg(m_limits.listItems));
    return false;
}

void DocumentContext::Notice(const Noticed& noticed)
{
    if (m_noticed.size() < ReadingReport::maximalEntries)
        m_noticed.append(noticed);
    else
        ++m_dropped;
}

bool DocumentContext::Deliver(const ReadingReport::Entry& entry)
{
    m_pathCharacters += entry.place.path.size();
    if (m_pathCharacters > ReadingReport::maximalPathCharacters
        || m_report->entries.size() >= ReadingReport::maximalEntries)
        return false;
    m_report->entries.append(entry);
    ++m_delivered;
    return true;
}

void DocumentContext::EndReport()
{
    if (m_report)
        m_report->dropped += m_dropped + m_noticed.size() - m_delivered;
    DropReport();
}

void DocumentContext::DropReport()
{
    m_noticed.clear();
    m_delivered = 0;
    m_dropped = 0;
}

void DocumentContext::Report(ReadingReport::Kind kind, const QString& text, const QXmlStreamReader& reader,
                             const QString& value)
{
    Notice({{kind, text, Place(), beginningOf(value)}, reader.characterOffset()});
}

void DocumentContext::Report(ReadingReport::Kind kind, const QString& text, qint64 offset,
                             const QString& member, const QString& value)
{
    Place place;
    place.offset = m_baseOffset + offset;
    for (const QString& name : m_path)
        place.path += QLatin1Char('/') + name;
    if (!member.isEmpty())
        place.path += QLatin1Char('/') + member;
    Notice({{kind, text, place, beginningOf(value)}, -1});
}

} // namespace MODELKIT
