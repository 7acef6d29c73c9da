// SPDX-License-Identifier: MIT
// Finds line, column and path of places in an XML document. Not installed.
#pragma once

#include "modelkit/Place.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>
#include <QtCore/QXmlStreamReader>

#include <map>

namespace MODELKIT {

// Reads a document a second time, up to places that the first reading has noted as offsets in
// characters. The first reading need not keep track of lines and paths.
class XmlPath
{
public:
    // Text: the same that the first reader has read.
    explicit XmlPath(const QString& text) : m_reader(text), m_text(text)
    {
        m_reader.setNamespaceProcessing(false);
        m_levels.append(Level());
    }

    // The place of the start tag of the innermost element at the offset. Offsets must not decrease from
    // call to call.
    Place Find(qint64 characterOffset);

    // The place of the first element with that path; without line and column when there is none.
    Place FindElement(const QString& path);

    // The same for several paths.
    QVector<Place> FindElements(const QStringList& paths);

    // Like Find(), but with line and column of the offset itself.
    Place FindPosition(qint64 characterOffset);

private:
    struct Level
    {
        QString step;
        qint64 line = 0;
        qint64 column = 0;
        std::map<QString, int> children;
    };

    bool ReadToken();
    Place GetPlace() const;

    // Finds line and column of the tag that ends at the offset.
    void FindTag(qint64 end, Level& level);
    void CountLines(qint64 characterOffset);

    QXmlStreamReader m_reader;
    QString m_text;
    // The offset up to which lines have been counted, and the number and the beginning of the line there.
    qint64 m_counted = 0;
    qint64 m_line = 1;
    qint64 m_lineBegin = 0;
    QVector<Level> m_levels;
    bool m_leaving = false;
};

} // namespace MODELKIT
