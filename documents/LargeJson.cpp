#include "documents/LargeJson.h"

#include "documents/Text.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

namespace routermsg {

namespace {

// Documents are arrays or objects.
QString oneLine(const QJsonValue& value)
{
    const QString json = QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact));
    return showableJson(json.mid(1, json.size() - 2));
}

} // namespace

void LargeJson::add(const QString& key, const QJsonValue& value)
{
    beginMember(key);
    m_out.write(oneLine(value));
}

void LargeJson::beginList(const QString& key)
{
    beginMember(key);
    m_out.write(QStringLiteral("["));
    m_isFirstItem = true;
}

void LargeJson::addItem(const QJsonValue& item)
{
    m_out.write((m_isFirstItem ? QStringLiteral("\n    ") : QStringLiteral(",\n    ")) + oneLine(item));
    m_isFirstItem = false;
}

void LargeJson::endList() { m_out.write(m_isFirstItem ? QStringLiteral("]") : QStringLiteral("\n  ]")); }

void LargeJson::end() { m_out.write(QStringLiteral("\n}\n")); }

void LargeJson::beginMember(const QString& key)
{
    m_out.write((m_isFirstMember ? QStringLiteral("\n  ") : QStringLiteral(",\n  ")) + quoted(key)
                + QStringLiteral(": "));
    m_isFirstMember = false;
}

} // namespace routermsg
