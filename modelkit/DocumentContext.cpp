#include "modelkit/DocumentContext.h"

#include <QtCore/QXmlStreamReader>

namespace MODELKIT {

namespace {

thread_local DocumentContext* currentContext = nullptr;
thread_local ReadingReport* currentReport = nullptr;

} // namespace

ReadingReport::ReadingReport() : m_outer(currentReport) { currentReport = this; }
ReadingReport::~ReadingReport() { currentReport = m_outer; }

const QVector<ReadingReport::Entry>& ReadingReport::GetEntries() const { return m_entries; }
qint64 ReadingReport::GetDropped() const { return m_dropped; }

void ReadingReport::Clear()
{
    m_entries.clear();
    m_dropped = 0;
}

DocumentContext::DocumentContext(Purpose purpose)
    : m_purpose(purpose), m_limits(Limits::Get()),
      m_report(purpose == Purpose::Reading ? currentReport : nullptr), m_outer(currentContext)
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
    if (reader.isDTD()) {
        // In an encoding in which it could not be seen before; see XmlText.h.
        Fail(Failure::DoctypeRefused, QStringLiteral("A document type declaration is not accepted."));
        reader.raiseError(m_failure.text);
        return false;
    }
    if (reader.isEndElement()) {
        --m_depth;
    } else if (reader.isStartElement() && ++m_depth > m_limits.nestingDepth) {
        Fail(Failure::NestedTooDeep,
             QStringLiteral("Elements are nested deeper than the limit of %1.").arg(m_limits.nestingDepth));
        reader.raiseError(m_failure.text);
        return false;
    } else if (reader.isStartDocument()) {
        const QString encoding = reader.documentEncoding().toString();
        m_hasForeignEncoding =
            !encoding.isEmpty() && !encoding.startsWith(QLatin1String("UTF"), Qt::CaseInsensitive);
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
    if (m_report->m_entries.size() >= ReadingReport::maximalEntries) {
        ++m_report->m_dropped;
        return false;
    }
    m_report->m_entries.append(entry);
    return true;
}

bool DocumentContext::SetPlace(const Unplaced& unplaced, const Place& place)
{
    if (!HasRoomFor(place)) {
        auto& entries = *unplaced.entries;
        m_report->m_dropped += entries.size() - unplaced.index;
        entries.resize(unplaced.index);
        return false;
    }
    (*unplaced.entries)[unplaced.index].place = place;
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
        m_unplaced.append({&m_report->m_entries, static_cast<int>(m_report->m_entries.size()) - 1,
                           reader.characterOffset()});
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
        ++m_report->m_dropped;
}

} // namespace MODELKIT
