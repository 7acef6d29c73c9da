// SPDX-License-Identifier: MIT
#include "documents/JsonForm.h"
#include "documents/JsonPath.h"
#include "documents/Text.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <cmath>

namespace ROUTERDOCUMENTS {

using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

enum class Lines
{
    Many,
    One
};

class Writer
{
public:
    explicit Writer(Lines lines) : m_lines(lines) {}

    QByteArray write(const IMKObject& record)
    {
        const QString& name = RecordInfo::Of(record).GetName();
        beginLevel('{');
        writeKey(name);
        const JsonPath document;
        writeRecord(record, JsonPath(document, name));
        endLevel('}');
        return m_json + '\n';
    }

private:
    void writeRecord(const IMKObject& record, const JsonPath& path)
    {
        beginLevel('{');
        for (const MemberInfo* member : RecordInfo::Of(record).GetMembers())
            if (isWritten(record, *member)) {
                writeKey(member->GetName());
                writeMember(record, *member, JsonPath(path, member->GetName()));
            }
        endLevel('}');
    }

    // An empty list is not written.
    static bool isWritten(const IMKObject& record, const MemberInfo& member)
    {
        return member.IsSet(record)
               && (member.GetKind() != MemberInfo::List || member.CountItems(record) > 0);
    }

    void writeMember(const IMKObject& record, const MemberInfo& member, const JsonPath& path)
    {
        switch (member.GetKind()) {
        case MemberInfo::UnsignedInteger:
            m_json += QByteArray::number(member.GetValue(record).toUInt());
            break;
        case MemberInfo::Decimal:
            writeDecimal(member.GetValue(record).toDouble(), path);
            break;
        case MemberInfo::Boolean:
            m_json += member.GetValue(record).toBool() ? "true" : "false";
            break;
        case MemberInfo::Text:
            writeText(member.GetValue(record).toString());
            break;
        case MemberInfo::Enumeration:
            writeText(member.GetNames().value(member.GetValue(record).toInt()));
            break;
        case MemberInfo::Record:
            writeRecord(member.GetRecord(record), path);
            break;
        case MemberInfo::List:
            writeList(record, member, path);
            break;
        }
    }

    void writeList(const IMKObject& record, const MemberInfo& member, const JsonPath& path)
    {
        beginLevel('[');
        for (int i = 0, count = member.CountItems(record); i < count; ++i) {
            beginValue();
            writeRecord(member.GetItem(record, i), JsonPath(path, i));
        }
        endLevel(']');
    }

    void writeDecimal(double value, const JsonPath& path)
    {
        if (!std::isfinite(value))
            path.refuse(QStringLiteral("JSON cannot carry the number %1.").arg(Exactly(value)),
                        MODELKIT::Failure::NotRepresentable);
        m_json += Exactly(value).toLatin1();
    }

    void writeText(const QString& text)
    {
        if (text.isNull())
            m_json += "null";
        else
            writeString(text);
    }

    void writeString(const QString& text)
    {
        QString escaped;
        for (int i = 0; i < text.size(); ++i) {
            const QChar unit = text.at(i);
            const bool isPair =
                unit.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
            if (isPair)
                escaped += QString(unit) + text.at(++i);
            else if (unit.unicode() < 0x20 || unit.isSurrogate())
                escaped += QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
            else if (unit == QLatin1Char('"') || unit == QLatin1Char('\\'))
                escaped += QString(QLatin1Char('\\')) + unit;
            else
                escaped += unit;
        }
        m_json += '"' + escaped.toUtf8() + '"';
    }

    void writeKey(const QString& name)
    {
        beginValue();
        writeString(name);
        m_json += m_lines == Lines::One ? ":" : ": ";
    }

    void beginLevel(char bracket)
    {
        m_json += bracket;
        ++m_depth;
        m_isLevelEmpty = true;
    }

    void beginValue()
    {
        if (!m_isLevelEmpty)
            m_json += ',';
        m_isLevelEmpty = false;
        breakLine();
    }

    void endLevel(char bracket)
    {
        --m_depth;
        if (!m_isLevelEmpty)
            breakLine();
        m_isLevelEmpty = false;
        m_json += bracket;
    }

    void breakLine()
    {
        if (m_lines == Lines::Many)
            m_json += '\n' + QByteArray(2 * m_depth, ' ');
    }

    Lines m_lines;
    QByteArray m_json;
    int m_depth = 0;
    bool m_isLevelEmpty = true;
};

} // namespace

QByteArray ToJson(const IMKObject& record) { return Writer(Lines::Many).write(record); }

QByteArray ToJsonLine(const IMKObject& record) { return Writer(Lines::One).write(record); }

} // namespace ROUTERDOCUMENTS
