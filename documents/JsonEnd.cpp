// SPDX-License-Identifier: MIT
#include "documents/JsonEnd.h"

#include "documents/JsonText.h"
#include "documents/TextUnits.h"

namespace ROUTERDOCUMENTS {

JsonEnd::Outcome JsonEnd::Scan(const char* bytes, qint64 size, qint64& used)
{
    Outcome outcome = More;
    const char* at = bytes;
    qint64 lineBegin = -m_lineSize;
    for (const char* const end = bytes + size; at != end && outcome == More; ++at) {
        outcome =
            m_isString ? StepString(static_cast<unsigned char>(*at)) : Step(static_cast<unsigned char>(*at));
        if ((*at == '\n' || *at == '\r') && outcome == More)
            lineBegin = at + 1 - bytes;
    }
    used += at - bytes;
    m_lineSize = at - bytes - lineBegin;
    return outcome;
}

JsonEnd::Outcome JsonEnd::Step(unsigned char byte)
{
    switch (byte) {
    case '{':
    case '[':
        return Open(static_cast<char>(byte));
    case '}':
        return Close('{');
    case ']':
        return Close('[');
    case '"':
        m_isString = true;
        return More;
    case ':':
    case ',':
        m_before = static_cast<char>(byte);
        return More;
    case '\n':
    case '\r':
        return m_extent == OneLine ? Broken : More;
    case ' ':
    case '\t':
        return More;
    default:
        // A part of a number or name, or of what a parser refuses.
        m_before = 'v';
        return byte < ' ' || byte >= otherCharacter || byte == '<' ? Broken : More;
    }
}

JsonEnd::Outcome JsonEnd::StepString(unsigned char byte)
{
    if (byte < ' ')
        return Broken;
    if (m_isEscape) {
        m_isEscape = false;
    } else if (byte == '\\') {
        m_isEscape = true;
    } else if (byte == '"') {
        m_isString = false;
        m_before = 'v';
    }
    return More;
}

JsonEnd::Outcome JsonEnd::Open(char bracket)
{
    // A key stands between the comma of an object and the next value.
    const bool isValue = m_before == ':' || m_before == '[' || (m_before == ',' && m_open.endsWith('['));
    if (!isValue || m_open.size() == JsonText::deepest)
        return Broken;
    m_open += bracket;
    m_before = bracket;
    return More;
}

JsonEnd::Outcome JsonEnd::Close(char bracket)
{
    if (!m_open.endsWith(bracket))
        return Broken;
    m_open.chop(1);
    m_before = 'v';
    return m_open.isEmpty() ? Ended : More;
}

} // namespace ROUTERDOCUMENTS
