// SPDX-License-Identifier: MIT
#include "documents/XmlEnd.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace ROUTERDOCUMENTS {

namespace {

// The longest XML declaration in which the encoding is looked for.
constexpr int longestDeclaration = 1024;

// The declared encoding in lower case, without the signs between letters and digits.
QByteArray declaredEncoding(const QByteArray& declaration)
{
    const auto name = declaration.indexOf("encoding");
    const auto isQuote = [](char c) { return c == '"' || c == '\''; };
    if (name < 0)
        return QByteArray();
    const auto quote = std::find_if(declaration.begin() + name, declaration.end(), isQuote);
    if (quote == declaration.end())
        return QByteArray();
    // Most documents, at once. No encoding with double bytes has such a name.
    if (qstrnicmp(&*quote + 1, "utf", 3) == 0)
        return QByteArrayLiteral("utf");
    const auto end = std::find(quote + 1, declaration.end(), *quote);
    QByteArray plain = QByteArray(quote + 1, static_cast<int>(end - quote - 1)).toLower();
    for (const char sign : {'-', '_', '.', ':'})
        plain.replace(sign, "");
    return plain;
}

// Which characters end the name of a tag.
constexpr std::array<bool, 256> nameEnds()
{
    std::array<bool, 256> ends{};
    for (const char end : {' ', '\t', '\n', '\r', '>', '/', '<', '"', '\'', '\0'})
        ends[static_cast<unsigned char>(end)] = true;
    return ends;
}

bool isInName(unsigned char character)
{
    static constexpr std::array<bool, 256> ends = nameEnds();
    return !ends[character];
}

} // namespace

bool DoubleBytes::IsFirst(unsigned char byte) const
{
    return isThere && byte > 0x80 && byte != 0xFF && !(isJapanese && byte >= 0xA0 && byte < 0xE0);
}

DoubleBytes DoubleBytes::Declared(const QByteArray& declaration)
{
    static const char* const japanese[] = {"sjis", "xsjis", "shiftjis", "windows31j", "windows932", "cp932"};
    static const char* const chinese[] = {"gb18030", "gbk",       "gb2312",     "windows936", "cp936",
                                          "big5",    "big5hkscs", "windows950", "cp950"};
    const QByteArray encoding = declaredEncoding(declaration);
    DoubleBytes bytes;
    bytes.isJapanese = std::find(std::begin(japanese), std::end(japanese), encoding) != std::end(japanese);
    bytes.isThere =
        bytes.isJapanese || std::find(std::begin(chinese), std::end(chinese), encoding) != std::end(chinese);
    return bytes;
}

XmlEnd::XmlEnd(What what, TextUnits units, bool hasMark)
    : m_what(what), m_units(units), m_mayDeclare(units.size == 1 && !hasMark)
{}

XmlEnd::Outcome XmlEnd::Scan(const char* bytes, qint64 size, qint64& used)
{
    const Outcome outcome = m_units.size == 1 ? ScanNarrow(bytes, size, used) : ScanWide(bytes, size, used);
    // The markup of the other document does not belong to this one.
    if (outcome == Another)
        m_state = Text;
    return outcome;
}

XmlEnd::Outcome XmlEnd::ScanNarrow(const char* bytes, qint64 size, qint64& used)
{
    const char* const end = bytes + size;
    Outcome outcome = More;
    const char* at = bytes;
    while (at != end && outcome == More) {
        at = PassOver(at, end);
        if (at == end)
            break;
        const auto character = static_cast<unsigned char>(*at++);
        outcome = StepUnlessDamaged(character);
        if (character == 0)
            outcome = Doubt;
    }
    used += at - bytes;
    return outcome;
}

bool XmlEnd::IsInElements() const
{
    switch (m_state) {
    case Text:
    case Markup:
    case StartTag:
    case Value:
    case EndTag:
        return true;
    default:
        return false;
    }
}

// Most of a document is text and names, which need no steps.
const char* XmlEnd::PassOver(const char* at, const char* end)
{
    if (m_state == Text && !IsRootLeft())
        return std::find_if(at, end, [](char c) { return c == '<' || c == 0; });
    if (m_state == Comment || (m_state == Instruction && m_target < 0))
        return PassOverAside(at, end);
    if (m_state != StartTag && m_state != EndTag)
        return at;
    if (m_isName) {
        // In variables of its own, which need not be stored after every character.
        NameHash name = m_name;
        const char* const begin = at;
        for (; at != end && isInName(static_cast<unsigned char>(*at)); ++at)
            name.Add(static_cast<unsigned char>(*at));
        m_name = name;
        m_behind += at - begin;
        return at;
    }
    const char* const stop =
        std::find_if(at, end, [](char c) { return c == '>' || c == '<' || c == '"' || c == '\'' || c == 0; });
    if (stop != at)
        m_last = static_cast<unsigned char>(stop[-1]);
    return stop;
}

// In a comment, or a processing instruction behind its target.
const char* XmlEnd::PassOverAside(const char* at, const char* end)
{
    const char* const stop =
        std::find_if(at, end, [](char c) { return c == '?' || c == '-' || c == '>' || c == '<' || c == 0; });
    if (stop == at)
        return at;
    m_run = 0;
    if (m_state == Instruction && m_isDeclaring) {
        const auto size = std::min<qint64>(stop - at, longestDeclaration - m_declaration.size());
        m_declaration.append(at, static_cast<int>(size));
    }
    return stop;
}

XmlEnd::Outcome XmlEnd::ScanWide(const char* bytes, qint64 size, qint64& used)
{
    const char* const end = bytes + size;
    Outcome outcome = More;
    const char* at = bytes;
    while (at != end && outcome == More) {
        m_part[m_partSize++] = *at++;
        if (m_partSize == m_units.size) {
            m_partSize = 0;
            outcome = StepUnlessDamaged(characterAt(m_part, m_units));
        }
    }
    used += at - bytes;
    return outcome;
}

XmlEnd::Outcome XmlEnd::StepUnlessDamaged(unsigned char character)
{
    const Outcome outcome = Step(character);
    return m_what == SoundDocument && m_elements.IsDamaged() ? Damaged : outcome;
}

XmlEnd::Outcome XmlEnd::Step(unsigned char character)
{
    switch (m_state) {
    case Text:
        if (character == '<')
            BeginMarkup();
        else
            ++m_behind;
        return IsRootLeft() && character != '<' && !isWhite(character) ? Another : More;
    case Markup:
    case Exclamation:
    case OneDash:
        return StepMarkup(character);
    case Comment:
        return EndsRun(character, '-', 2) ? LeaveAside() : More;
    case CData:
        if (EndsCData(character))
            m_state = Text;
        return More;
    case Instruction:
        return StepInstruction(character);
    case StartTag:
    case Value:
    case EndTag:
        return StepTag(character);
    default:
        StepDeclaration(character);
        return More;
    }
}

void XmlEnd::BeginMarkup()
{
    m_state = Markup;
    m_behind = IsRootLeft() ? m_behind + 1 : 1;
    m_after = Text;
    m_isFirst = !m_hasMarkup;
    m_hasMarkup = true;
}

XmlEnd::Outcome XmlEnd::StepMarkup(unsigned char character)
{
    m_run = 0;
    ++m_behind;
    // Behind the root's end tag, only further end tags can belong to the document.
    if (IsRootLeft() && character != '/')
        return Another;
    if (m_state == OneDash) {
        m_state = character == '-' ? Comment : Declaration;
        m_declarations = 1;
    } else if (m_state == Exclamation) {
        // A document type declaration does not stand inside elements.
        if (character == 'D' && m_elements.Depth() > 0)
            return Another;
        m_state = character == '-' ? OneDash : character == '[' ? CData : Declaration;
        m_declarations = 1;
        m_isTrail = false;
    } else if (character == '!') {
        m_state = Exclamation;
    } else if (character == '?') {
        m_state = Instruction;
        m_target = 0;
    } else if (character == '/') {
        m_elements.StayInRoot();
        m_state = EndTag;
        m_name = NameHash();
        m_isName = true;
    } else if (character == '<') {
        m_behind = 1;
    } else {
        m_state = StartTag;
        m_last = character;
        m_name = NameHash();
        m_name.Add(character);
        m_isName = isInName(character);
    }
    return More;
}

XmlEnd::Outcome XmlEnd::StepTag(unsigned char character)
{
    if (m_isName) {
        ++m_behind;
        m_isName = isInName(character);
        if (m_isName)
            m_name.Add(character);
        else if (m_state == StartTag && m_elements.BeginsAnother(m_name))
            return Another;
    }
    // No tag may contain this character, so the end of the tag is missing.
    if (character == '<') {
        LeaveElementTag(m_state == EndTag);
        m_elements.Damage();
        BeginMarkup();
        return m_elements.Depth() <= 0 ? Another : More;
    }
    if (m_state == Value) {
        if (character == m_quote)
            m_state = StartTag;
        m_last = character;
        return More;
    }
    if (character == '>')
        return LeaveTag();
    if (m_state == StartTag && (character == '"' || character == '\'')) {
        m_state = Value;
        m_quote = character;
    }
    m_last = character;
    return More;
}

XmlEnd::Outcome XmlEnd::LeaveTag()
{
    const bool isEmpty = m_state == StartTag && m_last == '/';
    if (!isEmpty)
        LeaveElementTag(m_state == EndTag);
    m_state = Text;
    return m_elements.Depth() <= 0 ? Ended : More;
}

void XmlEnd::LeaveElementTag(bool isEnd)
{
    if (isEnd)
        m_elements.Close(m_name);
    else
        m_elements.Open(m_name);
    m_behind = 0;
}

XmlEnd::Outcome XmlEnd::StepInstruction(unsigned char character)
{
    constexpr char target[] = "xml";
    constexpr int targetSize = 3;
    if (m_target == targetSize) {
        // An XML declaration stands only at the beginning of a document.
        if (isWhite(character) && !m_isFirst) {
            m_behind = 2 + targetSize + 1;
            return Another;
        }
        m_isDeclaring = isWhite(character);
        m_target = -1;
    } else if (m_target >= 0) {
        m_target = character == static_cast<unsigned char>(target[m_target]) ? m_target + 1 : -1;
    }
    // No XML declaration may contain this character, so its end is missing.
    if (m_isDeclaring && character == '<') {
        BeginMarkup();
        return More;
    }
    if (m_isDeclaring && m_declaration.size() < longestDeclaration)
        m_declaration += static_cast<char>(character);
    if (!EndsRun(character, '?', 1))
        return More;
    if (m_isDeclaring && m_mayDeclare)
        m_doubleBytes = DoubleBytes::Declared(m_declaration);
    m_isDeclaring = false;
    return LeaveAside();
}

bool XmlEnd::EndsRun(unsigned char character, char mark, int marks)
{
    const bool isEnd = character == '>' && m_run >= marks;
    m_run = character == static_cast<unsigned char>(mark) ? std::min(m_run + 1, marks) : 0;
    return isEnd;
}

bool XmlEnd::EndsCData(unsigned char character)
{
    if (m_isTrail || m_doubleBytes.IsFirst(character)) {
        m_isTrail = !m_isTrail;
        m_run = 0;
        return false;
    }
    return EndsRun(character, ']', 2);
}

XmlEnd::Outcome XmlEnd::LeaveAside()
{
    m_state = m_after;
    return m_what == Aside ? Ended : More;
}

void XmlEnd::StepDeclaration(unsigned char character)
{
    switch (m_state) {
    case Literal:
        if (character == m_quote)
            m_state = Declaration;
        return;
    case InnerMarkup:
        m_run = 0;
        m_target = -1;
        if (character == '?' || character == '!') {
            m_state = character == '?' ? Instruction : InnerExclamation;
            m_after = Declaration;
            return;
        }
        break;
    case InnerExclamation:
    case InnerOneDash:
        if (character == '-') {
            m_state = m_state == InnerExclamation ? InnerOneDash : Comment;
            return;
        }
        break;
    default:
        if (character == '<') {
            m_state = InnerMarkup;
            return;
        }
        break;
    }
    // An inner declaration began with what was no comment or instruction.
    if (m_state != Declaration)
        ++m_declarations;
    m_state = Declaration;
    if (character == '"' || character == '\'') {
        m_state = Literal;
        m_quote = character;
    } else if (character == '>' && --m_declarations == 0) {
        m_state = Text;
    }
}

} // namespace ROUTERDOCUMENTS
