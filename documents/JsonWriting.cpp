// SPDX-License-Identifier: MIT
#include "documents/JsonForm.h"
#include "documents/JsonNumber.h"
#include "documents/JsonString.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QStringList>
#include <QtCore/QVariant>

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
        writeRecord(record);
        endLevel('}');
        return m_json + '\n';
    }

private:
    void writeRecord(const IMKObject& record)
    {
        beginLevel('{');
        for (const MemberInfo* member : RecordInfo::Of(record).GetMembers())
            if (isWritten(record, *member)) {
                writeKey(member->GetName());
                writeMember(record, *member);
            }
        endLevel('}');
    }

    // An empty list is not written.
    static bool isWritten(const IMKObject& record, const MemberInfo& member)
    {
        return member.IsSet(record)
               && (member.GetKind() != MemberInfo::List || member.CountItems(record) > 0);
    }

    void writeMember(const IMKObject& record, const MemberInfo& member)
    {
        switch (member.GetKind()) {
        case MemberInfo::UnsignedInteger:
            m_json += QByteArray::number(member.GetValue(record).toUInt());
            break;
        case MemberInfo::Decimal:
            m_json += jsonOf(member.GetValue(record).toDouble());
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
            writeRecord(member.GetRecord(record));
            break;
        case MemberInfo::List:
            writeList(record, member);
            break;
        }
    }

    void writeList(const IMKObject& record, const MemberInfo& member)
    {
        beginLevel('[');
        for (int i = 0, count = member.CountItems(record); i < count; ++i) {
            beginValue();
            writeRecord(member.GetItem(record, i));
        }
        endLevel(']');
    }

    void writeText(const QString& text)
    {
        if (text.isNull())
            m_json += "null";
        else
            appendJsonString(text, m_json);
    }

    void writeKey(const QString& name)
    {
        beginValue();
        appendJsonString(name, m_json);
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
