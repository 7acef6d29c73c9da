// SPDX-License-Identifier: MIT
#include "documents/MessageBeginning.h"

#include "documents/FormSigns.h"

#include "modelkit/FormHeader.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QtEndian>

#include <algorithm>
#include <array>
#include <cstring>

namespace ROUTERDOCUMENTS {

using MODELKIT::FormHeader;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

static_assert(binaryHeaderSize == FormHeader::size, "the header of both binary forms");

// Characters after the byte order mark; a place behind the end has none.
class Peek
{
public:
    static constexpr int none = -1;

    Peek(const char* bytes, qint64 size, TextUnits units) : m_bytes(bytes), m_size(size), m_units(units) {}

    int at(int index) const
    {
        const qint64 offset = qint64(index) * m_units.size;
        return offset + m_units.size <= m_size ? characterAt(m_bytes + offset, m_units) : none;
    }

    // Whether the text is there from the index on. isShort becomes true when more bytes may complete it.
    bool has(int index, const char* text, bool& isShort) const
    {
        for (; *text != 0; ++text, ++index)
            if (at(index) != *text) {
                isShort = isShort || at(index) == none;
                return false;
            }
        return true;
    }

private:
    const char* m_bytes;
    qint64 m_size;
    TextUnits m_units;
};

// Whether the bytes begin like that; isShort as above.
bool begins(const char* bytes, qint64 size, const char* with, int length, bool& isShort)
{
    const auto there = std::min<qint64>(size, length);
    const bool agrees = std::memcmp(bytes, with, static_cast<std::size_t>(there)) == 0;
    isShort = isShort || (agrees && there < length);
    return agrees && there == length;
}

bool isNameBegin(int character)
{
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z')
           || character == '_' || character == ':' || character == otherCharacter;
}

bool isPartOfName(int character)
{
    return isNameBegin(character) || (character >= '0' && character <= '9') || character == '-'
           || character == '.';
}

const QByteArray& nameOfDocuments()
{
    static const QByteArray name = RecordInfo::Document().GetName().toLatin1();
    return name;
}

// Recognises one place.
class Recogniser
{
public:
    Recogniser(const char* bytes, qint64 size, const BeginningRules& rules)
        : m_bytes(bytes), m_size(size), m_rules(rules)
    {}

    MessageBeginning recognise()
    {
        if (recogniseBinary() || recogniseMarked() || recogniseText(0))
            return m_found;
        m_found = MessageBeginning();
        m_found.kind = m_isShort && !m_rules.isAll ? MessageBeginning::Unclear : MessageBeginning::Nothing;
        return m_found;
    }

private:
    bool isSearch() const { return m_rules.look == Look::Searching; }

    bool accepts(Form form) const
    {
        // What a form is called in a rule: JSON lines are JSON, and both binary forms are read alike.
        const auto kindOf = [](Form any) {
            return any == Form::JsonLines ? Form::Json : any == Form::Compressed ? Form::Binary : any;
        };
        return !m_rules.form || kindOf(*m_rules.form) == kindOf(form);
    }

    bool find(MessageBeginning::Kind kind, Form form = Form::Xml)
    {
        m_found.kind = kind;
        m_found.form = form == Form::Json ? m_rules.form.value_or(form) : form;
        return true;
    }

    bool recogniseBinary()
    {
        if (m_size < 4) {
            m_isShort = m_isShort || isBeginOfId();
            return false;
        }
        const auto form = binaryFormOf(qFromBigEndian<quint32>(m_bytes));
        if (!form || !accepts(*form))
            return false;
        if (!isSearch())
            return find(MessageBeginning::Message, *form);
        m_isShort = m_isShort || m_size < binaryHeaderSize;
        if (m_size < binaryHeaderSize)
            return false;
        const qint64 length = binaryLength(m_bytes);
        return length >= 0 && length <= m_rules.limit - binaryHeaderSize
               && find(MessageBeginning::Message, *form);
    }

    // Whether these few bytes may become the first word of a binary form.
    bool isBeginOfId() const
    {
        const auto isOf = [this](quint32 id) {
            const auto word = qToBigEndian(id);
            return std::memcmp(m_bytes, &word, static_cast<std::size_t>(m_size)) == 0;
        };
        const auto& classes = RecordInfo::All();
        return isOf(FormHeader::compressedMarker)
               || std::any_of(classes.begin(), classes.end(),
                              [&](const RecordInfo* info) { return isOf(info->GetFrameId()); });
    }

    bool recogniseMarked()
    {
        for (const ByteOrderMark& mark : byteOrderMarks) {
            bool isShort = false;
            const bool isThere = begins(m_bytes, m_size, mark.bytes, mark.size, isShort);
            // The bytes may still become this mark.
            m_isShort = m_isShort || isShort;
            if (isShort && !m_rules.isAll)
                return false;
            if (!isThere)
                continue;
            m_found.units = mark.units;
            m_found.mark = mark.size;
            return recogniseText(mark.size)
                   || ((!m_isShort || m_rules.isAll) && !isSearch() && find(MessageBeginning::Mark));
        }
        return false;
    }

    bool recogniseText(int mark)
    {
        if (mark == 0 && !findUnits())
            return false;
        const Peek text(m_bytes + mark, m_size - mark, m_found.units);
        const int first = text.at(0);
        m_isShort = m_isShort || first == Peek::none;
        if (first == '<')
            return accepts(Form::Xml) && recogniseMarkup(text);
        if (!accepts(Form::Json) || m_found.units.size > 1)
            return false;
        const bool isValue = isSearch() ? first == '{' && isKey(text, 1) : beginsJson(first);
        return isValue && find(MessageBeginning::Message, Form::Json);
    }

    // Without a byte order mark the first character of markup tells the units.
    bool findUnits()
    {
        m_found.units = TextUnits();
        m_found.mark = 0;
        if (m_bytes[0] != '<' && m_bytes[0] != 0)
            return true;
        for (const MarkupSign& sign : markupSigns) {
            bool isShort = false;
            if (begins(m_bytes, m_size, sign.bytes, sign.size, isShort)) {
                m_found.units = sign.units;
                return true;
            }
            m_isShort = m_isShort || isShort;
            if (isShort && !m_rules.isAll)
                return false;
        }
        return false;
    }

    bool recogniseMarkup(const Peek& text)
    {
        const int second = text.at(1);
        m_isShort = m_isShort || second == Peek::none;
        if (second == '?')
            return recogniseInstruction(text);
        if (second == '!')
            return recogniseExclamation(text);
        return isNameBegin(second) && second != otherCharacter && (isSearch() ? isRecord(text) : true)
               && find(MessageBeginning::Message);
    }

    bool recogniseInstruction(const Peek& text)
    {
        bool isShort = false;
        const bool isXml = text.has(2, "xml", isShort);
        const int behind = isXml ? text.at(5) : 0;
        if (isShort || behind == Peek::none) {
            m_isShort = true;
            return false;
        }
        if (isXml && isWhite(behind))
            return find(MessageBeginning::Message);
        return !isSearch() && find(MessageBeginning::Aside);
    }

    bool recogniseExclamation(const Peek& text)
    {
        bool isShort = false;
        if (text.has(2, "DOCTYPE", isShort))
            return find(MessageBeginning::Message);
        const bool isComment = !isSearch() && text.has(2, "--", isShort);
        m_isShort = m_isShort || isShort;
        return isComment && find(MessageBeginning::Aside);
    }

    // Whether a key and its colon are there, at the beginning of a line or with the name of documents, which
    // nothing else contains.
    bool isKey(const Peek& text, int index)
    {
        constexpr int farthest = 100;
        const auto passWhite = [&] {
            while (index < farthest && isWhite(text.at(index)))
                ++index;
        };
        passWhite();
        const int quote = text.at(index);
        if (!m_rules.isAtLineBegin && quote == '"'
            && !text.has(index + 1, nameOfDocuments().constData(), m_isShort))
            return false;
        if (quote == '"')
            while (isPartOfName(text.at(++index)) && index < farthest) {
            }
        const int end = text.at(index);
        ++index;
        passWhite();
        const int colon = text.at(index);
        const bool isKeySoFar = quote == Peek::none || (quote == '"' && (end == Peek::none || end == '"'));
        m_isShort = m_isShort || (isKeySoFar && colon == Peek::none);
        return quote == '"' && end == '"' && colon == ':';
    }

    // Whether the tag has the name of a record.
    bool isRecord(const Peek& text)
    {
        constexpr int longest = 40;
        QString name;
        int index = 1;
        for (; index <= longest && isPartOfName(text.at(index)); ++index)
            name += QLatin1Char(static_cast<char>(text.at(index)));
        if (text.at(index) == Peek::none) {
            m_isShort = true;
            return false;
        }
        return RecordInfo::Find(name) != nullptr;
    }

    const char* m_bytes;
    qint64 m_size;
    const BeginningRules& m_rules;
    MessageBeginning m_found;
    // Whether more bytes could make a beginning of what is there.
    bool m_isShort = false;
};

std::array<bool, 256> firstBytes()
{
    std::array<bool, 256> may{};
    const auto allow = [&may](quint32 byte) { may[byte & 0xFFU] = true; };
    for (const RecordInfo* info : RecordInfo::All())
        allow(info->GetFrameId() >> 24);
    allow(static_cast<quint32>(FormHeader::compressedMarker) >> 24);
    for (const ByteOrderMark& mark : byteOrderMarks)
        allow(static_cast<unsigned char>(mark.bytes[0]));
    for (const char byte : {'\0', '<', '{'})
        allow(static_cast<unsigned char>(byte));
    return may;
}

} // namespace

MessageBeginning recogniseBeginning(const char* bytes, qint64 size, const BeginningRules& rules)
{
    return Recogniser(bytes, size, rules).recognise();
}

bool mayBeginMessage(char byte)
{
    static const std::array<bool, 256> may = firstBytes();
    return may[static_cast<unsigned char>(byte)];
}

bool mayBreakOffWide(const char* bytes, TextUnits units, bool isAligned)
{
    const bool isNarrow = bytes[0] != 0 && bytes[1] != 0;
    const bool isShifted = !isAligned && bytes[0] == (units.isBigEndian ? '\0' : '<');
    return (isNarrow || isShifted) && mayBeginMessage(bytes[0]);
}

qint64 whiteAt(const char* bytes, qint64 size, TextUnits units, bool isAll)
{
    if (units.size == 1)
        return std::find_if_not(bytes, bytes + size, isWhite) - bytes;
    qint64 white = 0;
    while (size - white >= units.size && isWhite(characterAt(bytes + white, units)))
        white += units.size;
    if (white > 0)
        return white;
    const bool isWhole = size >= units.size;
    if (!isWhole && !isAll && (units.isBigEndian ? bytes[0] == 0 : isWhite(bytes[0])))
        return -1;
    return isWhite(bytes[0]) ? 1 : 0;
}

qint32 binaryLength(const char* header) { return qFromBigEndian<qint32>(header + 4); }

} // namespace ROUTERDOCUMENTS
