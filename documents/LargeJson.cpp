// SPDX-License-Identifier: MIT
#include "documents/LargeJson.h"

#include "documents/Text.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

namespace ROUTERDOCUMENTS {

namespace {

// QJsonDocument writes only arrays and objects, so the value becomes an array for a moment.
QString oneLine(const QJsonValue& value)
{
    const QString json = QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact));
    return ShowableJson(json.mid(1, json.size() - 2));
}

} // namespace

LargeJson::LargeJson(const Sink& sink) : m_sink(sink) { m_sink(QStringLiteral("{")); }

void LargeJson::Add(const QString& key, const QJsonValue& value)
{
    beginMember(key);
    m_sink(oneLine(value));
}

void LargeJson::BeginList(const QString& key)
{
    beginMember(key);
    m_sink(QStringLiteral("["));
    m_isFirstItem = true;
}

void LargeJson::AddItem(const QJsonValue& item)
{
    m_sink((m_isFirstItem ? QStringLiteral("\n    ") : QStringLiteral(",\n    ")) + oneLine(item));
    m_isFirstItem = false;
}

void LargeJson::EndList() { m_sink(m_isFirstItem ? QStringLiteral("]") : QStringLiteral("\n  ]")); }

void LargeJson::End() { m_sink(QStringLiteral("\n}\n")); }

void LargeJson::beginMember(const QString& key)
{
    m_sink((m_isFirstMember ? QStringLiteral("\n  ") : QStringLiteral(",\n  ")) + Quoted(key)
           + QStringLiteral(": "));
    m_isFirstMember = false;
}

} // namespace ROUTERDOCUMENTS
