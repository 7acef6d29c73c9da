#include "modelkit/DocumentContext.h"

#include <QtCore/QXmlStreamReader>

#include <algorithm>

namespace MODELKIT {

namespace {

thread_local DocumentContext* currentContext = nullptr;

} // namespace

DocumentContext::DocumentContext(Purpose purpose)
    : m_purpose(purpose), m_limits(Limits::Get()),
      m_report(purpose == Purpose::Reading ? ReadingReport::Current() : nullptr), m_outer(currentContext)
{
    if (m_report) {
        m_entriesBefore = static_cast<int>(m_report->entries.size());
        m_droppedBefore = m_report->dropped;
    }
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

bool DocumentContext::Keep(const ReadingReport::Entry& entry)
{
    if (m_report->entries.size() >= ReadingReport::maximalEntries) {
        ++m_report->dropped;
        return false;
    }
    m_report->entries.append(entry);
    return true;
}

void DocumentContext::DropReport()
{
    if (!m_report)
        return;
    m_report->entries.resize(std::min<int>(m_entriesBefore, static_cast<int>(m_report->entries.size())));
    m_report->dropped = m_droppedBefore;
    m_unplaced.clear();
}

bool DocumentContext::SetPlace(const Unplaced& unplaced, const Place& place)
{
    auto& entries = m_report->entries;
    // The program may have cleared the report, for example in a device that it reads from.
    if (unplaced.index >= entries.size())
        return false;
    if (!HasRoomFor(place)) {
        m_report->dropped += entries.size() - unplaced.index;
        entries.resize(unplaced.index);
        return false;
    }
    entries[unplaced.index].place = place;
    return true;
}

bool DocumentContext::HasRoomFor(const Place& place)
{
    m_pathCharacters += place.path.size();
    return m_pathCharacters <= ReadingReport::maximalPathCharacters;
}

void DocumentContext::Report(ReadingReport::Kind kind, const QString& text, const QXmlStreamReader& reader)
{
    if (Keep({kind, text, Place()}))
        m_unplaced.append({static_cast<int>(m_report->entries.size()) - 1, reader.characterOffset()});
}

void DocumentContext::Report(ReadingReport::Kind kind, const QString& text, qint64 offset,
                             const QString& member)
{
    Place place;
    place.offset = m_baseOffset + offset;
    for (const QString& name : m_path)
        place.path += QLatin1Char('/') + name;
    if (!member.isEmpty())
        place.path += QLatin1Char('/') + member;
    if (HasRoomFor(place))
        Keep({kind, text, place});
    else
        ++m_report->dropped;
}

} // namespace MODELKIT
