// SPDX-License-Identifier: MIT
#include "documents/JsonText.h"

#include "documents/DocumentError.h"
#include "documents/Text.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSet>
#include <QtCore/QVector>

namespace ROUTERDOCUMENTS {

namespace {

// Throws a DocumentError with the line and column of the offset.
[[noreturn]] void refuseAt(const QByteArray& json, int offset, const QString& text)
{
    const QByteArray before = json.left(offset);
    const auto lineBegin = before.lastIndexOf('\n') + 1;
    MODELKIT::Failure failure;
    failure.kind = MODELKIT::Failure::NotWellFormed;
    failure.text = text;
    failure.place.line = before.count('\n') + 1;
    failure.place.column = QString::fromUtf8(before.mid(lineBegin)).size() + 1;
    throw DocumentError(failure);
}

// Finds keys that are repeated in an object; Qt's parser silently keeps the last one. The text has already
// been parsed, so only the beginnings and ends of objects, arrays and strings matter.
class KeyCheck
{
public:
    explicit KeyCheck(const QByteArray& json) : m_json(json) {}

    void run()
    {
        while (m_at < m_json.size())
            step(m_json.at(m_at));
    }

private:
    struct Level
    {
        bool isObject;
        QSet<QByteArray> keys;
    };

    void step(char character)
    {
        if (character == '"') {
            passString();
            return;
        }
        ++m_at;
        if (character == '{' || character == '[')
            m_levels.append(Level{character == '{', {}});
        else if (character == '}' || character == ']')
            m_levels.removeLast();
        if (character == '{' || character == ',')
            m_isKeyNext = m_levels.last().isObject;
    }

    void passString()
    {
        const int begin = m_at++;
        while (m_json.at(m_at) != '"')
            m_at += m_json.at(m_at) == '\\' ? 2 : 1;
        ++m_at;
        // In an object a key follows the opening brace and each comma; any other string is a value.
        if (m_isKeyNext)
            add(m_json.mid(begin, m_at - begin), begin);
        m_isKeyNext = false;
    }

    void add(const QByteArray& string, int offset)
    {
        const QByteArray key = plain(string);
        auto& keys = m_levels.last().keys;
        if (keys.contains(key))
            refuseAt(m_json, offset,
                     QStringLiteral("The key %1 comes twice in its object.")
                         .arg(Quoted(Abbreviated(QString::fromUtf8(key)))));
        keys.insert(key);
    }

    // The same key can be written with different escapes.
    static QByteArray plain(const QByteArray& string)
    {
        if (!string.contains('\\'))
            return string.mid(1, string.size() - 2);
        return QJsonDocument::fromJson('[' + string + ']').array().at(0).toString().toUtf8();
    }

    const QByteArray& m_json;
    int m_at = 0;
    QVector<Level> m_levels;
    bool m_isKeyNext = false;
};

} // namespace

QJsonValue parseText(const QByteArray& json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        refuseAt(json, error.offset, QStringLiteral("This is no JSON: %1.").arg(error.errorString()));
    KeyCheck(json).run();
    return document.isObject() ? QJsonValue(document.object()) : QJsonValue(document.array());
}

} // namespace ROUTERDOCUMENTS
