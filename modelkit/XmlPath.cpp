#include "modelkit/XmlPath.h"

namespace MODELKIT {

Place XmlPath::Find(qint64 characterOffset)
{
    while (!m_reader.atEnd() && m_reader.characterOffset() < characterOffset) {
        m_reader.readNext();
        if (m_leaving)
            m_levels.removeLast();
        m_leaving = m_reader.isEndElement();
        if (m_reader.isStartElement()) {
            const QString name = m_reader.name().toString();
            const int number = ++m_levels.last().children[name];
            Level level;
            level.step = Place::Step(name, number);
            FindTag(m_reader.characterOffset(), level);
            m_levels.append(level);
        }
    }
    Place place;
    place.line = m_levels.last().line;
    place.column = m_levels.last().column;
    for (int i = 1; i < static_cast<int>(m_levels.size()); ++i)
        place.path += QLatin1Char('/') + m_levels.at(i).step;
    return place;
}

void XmlPath::FindTag(qint64 end, Level& level)
{
    // The reader's own position is no help: it may be ahead of a tag's beginning by what it has to
    // see to know that a text has ended. Inside a tag there is no other "<".
    const qint64 begin = m_text.lastIndexOf(QLatin1Char('<'), static_cast<int>(end) - 1);
    for (; m_counted < begin; ++m_counted) {
        if (m_text.at(static_cast<int>(m_counted)) == QLatin1Char('\n')) {
            ++m_line;
            m_lineBegin = m_counted + 1;
        }
    }
    level.line = m_line;
    level.column = begin - m_lineBegin + 1;
}

} // namespace MODELKIT
