// SPDX-License-Identifier: MIT
#include "modelkit/XmlPath.h"

#include <QtCore/QHash>
#include <QtCore/QSet>

#include <algorithm>

namespace MODELKIT {

// True when the token is a start tag.
bool XmlPath::ReadToken()
{
    m_reader.readNext();
    if (m_leaving)
        m_levels.removeLast();
    m_leaving = m_reader.isEndElement();
    if (!m_reader.isStartElement())
        return false;
    const QString name = m_reader.name().toString();
    const int number = ++m_levels.last().children[name];
    Level level;
    level.step = Place::Step(name, number);
    FindTag(m_reader.characterOffset(), level);
    m_levels.append(level);
    return true;
}

Place XmlPath::GetPlace() const
{
    Place place;
    place.line = m_levels.last().line;
    place.column = m_levels.last().column;
    for (int i = 1; i < static_cast<int>(m_levels.size()); ++i)
        place.path += QLatin1Char('/') + m_levels.at(i).step;
    return place;
}

Place XmlPath::Find(qint64 characterOffset)
{
    while (!m_reader.atEnd() && m_reader.characterOffset() < characterOffset)
        ReadToken();
    return GetPlace();
}

Place XmlPath::FindElement(const QString& path)
{
    const auto depth = path.count(QLatin1Char('/'));
    const QString lastStep = path.section(QLatin1Char('/'), -1);
    while (!m_reader.atEnd()) {
        // A quick test first, because building the path is expensive.
        if (!ReadToken() || m_levels.size() - 1 != depth || m_levels.last().step != lastStep)
            continue;
        Place place = GetPlace();
        if (place.path == path)
            return place;
    }
    Place unknown;
    unknown.path = path;
    return unknown;
}

QVector<Place> XmlPath::FindElements(const QStringList& paths)
{
    QVector<Place> places;
    places.reserve(paths.size());
    QMultiHash<QString, int> wanted;
    QSet<QString> lastSteps;
    for (int i = 0; i < paths.size(); ++i) {
        Place unknown;
        unknown.path = paths.at(i);
        places.append(unknown);
        wanted.insert(paths.at(i), i);
        lastSteps.insert(paths.at(i).section(QLatin1Char('/'), -1));
    }
    while (!m_reader.atEnd() && !wanted.isEmpty()) {
        if (!ReadToken() || !lastSteps.contains(m_levels.last().step))
            continue;
        const Place place = GetPlace();
        const auto indexes = wanted.values(place.path);
        for (const int i : indexes)
            places[i] = place;
        wanted.remove(place.path);
    }
    return places;
}

void XmlPath::FindTag(qint64 end, Level& level)
{
    // The reader's position before it reads the tag is of no use: to see the end of a text, the reader may
    // have read on into the tag. Inside a tag there is no other "<".
    const qint64 begin = m_text.lastIndexOf(QLatin1Char('<'), static_cast<int>(end) - 1);
    CountLines(begin);
    level.line = m_line;
    level.column = std::max<qint64>(begin - m_lineBegin + 1, 1);
}

void XmlPath::CountLines(qint64 characterOffset)
{
    const qint64 end = std::min<qint64>(characterOffset, m_text.size());
    for (; m_counted < end; ++m_counted) {
        const QChar character = m_text.at(static_cast<int>(m_counted));
        const bool isFirstOfTwo = character == QLatin1Char('\r') && m_counted + 1 < m_text.size()
                                  && m_text.at(static_cast<int>(m_counted) + 1) == QLatin1Char('\n');
        if (character == QLatin1Char('\n') || (character == QLatin1Char('\r') && !isFirstOfTwo)) {
            ++m_line;
            m_lineBegin = m_counted + 1;
        }
    }
}

Place XmlPath::FindPosition(qint64 characterOffset)
{
    Place place = Find(characterOffset);
    CountLines(characterOffset);
    place.line = m_line;
    place.column = characterOffset - m_lineBegin + 1;
    return place;
}

} // namespace MODELKIT
