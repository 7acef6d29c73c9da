// SPDX-License-Identifier: MIT
#include "documents/JsonText.h"

#include "documents/DocumentError.h"
#include "documents/Text.h"

#include "modelkit/Utf8.h"

#include <algorithm>
#include <cstring>

namespace ROUTERDOCUMENTS {

namespace {

bool isDigit(char character) { return character >= '0' && character <= '9'; }
bool isSpace(char character)
{
    return character == ' ' || character == '\n' || character == '\t' || character == '\r';
}
bool isLetter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

} // namespace

QString nameOf(JsonText::Type type)
{
    switch (type) {
    case JsonText::Null:
        return QStringLiteral("null");
    case JsonText::Boolean:
        return QStringLiteral("a truth value");
    case JsonText::Number:
        return QStringLiteral("a number");
    case JsonText::String:
        return QStringLiteral("a string");
    case JsonText::Array:
        return QStringLiteral("an array");
    case JsonText::Object:
        break;
    }
    return QStringLiteral("an object");
}

JsonText::JsonText(const QByteArray& json)
    : m_json(json), m_at(json.constData()), m_end(json.constData() + json.size())
{
    constexpr char byteOrderMark[] = "\xEF\xBB\xBF";
    if (json.startsWith(byteOrderMark))
        m_begunAt = static_cast<qint64>(std::strlen(byteOrderMark));
    m_at += m_begunAt;
}

JsonText::Type JsonText::NextType()
{
    passSpace();
    m_begin = offsetOf(m_at);
    switch (current()) {
    case '{':
        return Object;
    case '[':
        return Array;
    case '"':
        return String;
    case 'n':
        if (isWord("null"))
            return Null;
        break;
    case 't':
        if (isWord("true"))
            return Boolean;
        break;
    case 'f':
        if (isWord("false"))
            return Boolean;
        break;
    default:
        if (isDigit(current()) || current() == '-')
            return Number;
    }
    refuseHere("a value is missing");
}

void JsonText::TakeNull() { m_at += std::strlen("null"); }

bool JsonText::TakeBoolean()
{
    const bool value = current() == 't';
    m_at += std::strlen(value ? "true" : "false");
    return value;
}

QByteArray JsonText::TakeNumber()
{
    const char* const begin = m_at;
    if (current() == '-')
        ++m_at;
    const bool isZeroFirst = current() == '0';
    passDigits("a number needs a digit");
    if (isZeroFirst && m_at - begin > (*begin == '-' ? 2 : 1))
        refuse(begin, QStringLiteral("a number does not begin with a zero"));
    if (current() == '.') {
        ++m_at;
        passDigits("a number needs a digit behind the point");
    }
    if (current() == 'e' || current() == 'E') {
        ++m_at;
        if (current() == '+' || current() == '-')
            ++m_at;
        passDigits("an exponent needs a digit");
    }
    return QByteArray(begin, static_cast<QByteArray::size_type>(m_at - begin));
}

QString JsonText::TakeString() { return takeString(); }

void JsonText::Enter()
{
    if (m_open.size() == deepest)
        refuse(m_at, QStringLiteral("more than %1 brackets are open").arg(deepest));
    m_open += *m_at++;
    m_isFirst = true;
}

bool JsonText::NextItem() { return goOn(']', "an array goes on with a comma or ]"); }

bool JsonText::NextKey(QString& key)
{
    if (!goOn('}', "an object goes on with a comma or }"))
        return false;
    const char* const begin = m_at;
    if (current() != '"')
        refuseHere("a key in double quotes is missing");
    key = takeString();
    passSpace();
    if (current() != ':')
        refuseHere("a colon is missing behind a key");
    ++m_at;
    m_begin = offsetOf(begin);
    return true;
}

// Whether something comes next inside the innermost bracket. At its end, goes out of it.
bool JsonText::goOn(char end, const char* missing)
{
    passSpace();
    const bool isFirst = m_isFirst;
    m_isFirst = false;
    if (current() == end) {
        ++m_at;
        m_open.chop(1);
        return false;
    }
    if (isFirst)
        return true;
    if (current() != ',')
        refuseHere(missing);
    ++m_at;
    passSpace();
    return true;
}

void JsonText::Pass()
{
    switch (NextType()) {
    case Null:
        return TakeNull();
    case Boolean:
        TakeBoolean();
        return;
    case Number:
        TakeNumber();
        return;
    case String:
        TakeString();
        return;
    case Array:
        Enter();
        while (NextItem())
            Pass();
        return;
    case Object:
        break;
    }
    Enter();
    for (QString key; NextKey(key);)
        Pass();
}

void JsonText::End()
{
    passSpace();
    if (!isAtEnd())
        refuseHere("nothing may stand behind the value");
}

void JsonText::passSpace()
{
    while (m_at != m_end && isSpace(*m_at))
        ++m_at;
}

void JsonText::passDigits(const char* missing)
{
    if (!isDigit(current()))
        refuseHere(missing);
    while (isDigit(current()))
        ++m_at;
}

bool JsonText::isWord(const char* word) const
{
    const auto length = static_cast<qint64>(std::strlen(word));
    return m_end - m_at >= length && std::memcmp(m_at, word, static_cast<std::size_t>(length)) == 0
           && (m_end - m_at == length || !(isLetter(m_at[length]) || isDigit(m_at[length])));
}

QString JsonText::takeString()
{
    ++m_at;
    QString text = takePlain();
    while (current() != '"') {
        if (isAtEnd())
            refuseHere("a string has no end");
        if (*m_at != '\\')
            refuse(m_at, QStringLiteral("a control character in a string must be an escape"));
        appendEscape(text);
        text += takePlain();
    }
    ++m_at;
    return text;
}

// The text up to the next quote, backslash or control character, or up to the end.
QString JsonText::takePlain()
{
    const char* const begin = m_at;
    unsigned char all = 0;
    for (; m_at != m_end && *m_at != '"' && *m_at != '\\' && static_cast<unsigned char>(*m_at) >= ' '; ++m_at)
        all |= static_cast<unsigned char>(*m_at);
    const qint64 size = m_at - begin;
    const qint64 good = all < 0x80 ? size : MODELKIT::wellFormedUtf8(begin, size);
    if (good != size)
        refuse(begin + good, QStringLiteral("a string is not UTF-8"));
    return MODELKIT::textOfUtf8(begin, size);
}

void JsonText::appendEscape(QString& text)
{
    static constexpr char letters[] = "\"\\/bfnrt";
    static constexpr char meanings[] = "\"\\/\b\f\n\r\t";
    const char* const begin = m_at++;
    const char* const letter = std::find(letters, std::end(letters) - 1, current());
    if (current() == 'u') {
        ++m_at;
        text += QChar(takeHexDigits());
    } else if (letter != std::end(letters) - 1) {
        ++m_at;
        text += QLatin1Char(meanings[letter - letters]);
    } else if (isAtEnd()) {
        refuseHere("a string has no end");
    } else {
        refuse(begin, QStringLiteral("there is no such escape"));
    }
}

char16_t JsonText::takeHexDigits()
{
    unsigned int unit = 0;
    for (int i = 0; i < 4; ++i, ++m_at) {
        const char digit = current();
        const char lower = static_cast<char>(digit | 0x20);
        if (isDigit(digit))
            unit = unit * 16 + static_cast<unsigned int>(digit - '0');
        else if (lower >= 'a' && lower <= 'f')
            unit = unit * 16 + static_cast<unsigned int>(lower - 'a') + 10;
        else
            refuseHere("\\u needs four hexadecimal digits");
    }
    return static_cast<char16_t>(unit);
}

MODELKIT::Place JsonText::PlaceOf(qint64 offset) const
{
    if (offset < m_known.offset)
        m_known = Known();
    for (; m_known.offset < offset; ++m_known.offset) {
        const auto byte =
            static_cast<unsigned char>(m_json.at(static_cast<QByteArray::size_type>(m_known.offset)));
        const bool isContinuation = (byte & 0xC0) == 0x80;
        const bool isOfTwoUnits = byte >= 0xF0;
        if (byte == '\n') {
            ++m_known.line;
            m_known.column = 1;
        } else if (!isContinuation && m_known.offset >= m_begunAt) {
            m_known.column += isOfTwoUnits ? 2 : 1;
        }
    }
    MODELKIT::Place place;
    place.line = m_known.line;
    place.column = m_known.column;
    return place;
}

void JsonText::refuse(const char* at, const QString& text) const
{
    MODELKIT::Failure failure;
    failure.kind = MODELKIT::Failure::NotWellFormed;
    failure.text = QStringLiteral("This is no JSON: %1.").arg(text);
    failure.place = PlaceOf(offsetOf(at));
    throw DocumentError(failure);
}

// Says also what stands here instead of what is expected.
void JsonText::refuseHere(const char* expected) const
{
    const QString text = QString::fromLatin1(expected);
    if (isAtEnd())
        refuse(m_at, text + QStringLiteral("; here the text ends"));
    constexpr qint64 longestCharacter = 4;
    const QString here = MODELKIT::textOfUtf8(m_at, std::min<qint64>(longestCharacter, m_end - m_at));
    const int units = here.size() > 1 && here.at(0).isHighSurrogate() ? 2 : 1;
    refuse(m_at, text + QStringLiteral("; here is ") + Quoted(here.left(units)));
}

} // namespace ROUTERDOCUMENTS
