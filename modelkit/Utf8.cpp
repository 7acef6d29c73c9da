// SPDX-License-Identifier: MIT
#include "modelkit/Utf8.h"

#include "modelkit/QtVersion.h"

#include <cstdint>
#include <cstring>

namespace MODELKIT {

namespace {

// The number of bytes of the character that begins there; 0 when the bytes are malformed.
int characterSize(const unsigned char* at, const unsigned char* end)
{
    const unsigned char first = *at;
    if (first < 0x80)
        return 1;
    // The range of the second byte excludes overlong encodings, surrogates and code points above U+10FFFF.
    int size = 0;
    unsigned char least = 0x80;
    unsigned char most = 0xBF;
    if (first >= 0xC2 && first <= 0xDF) {
        size = 2;
    } else if (first >= 0xE0 && first <= 0xEF) {
        size = 3;
        if (first == 0xE0)
            least = 0xA0;
        else if (first == 0xED)
            most = 0x9F;
    } else if (first >= 0xF0 && first <= 0xF4) {
        size = 4;
        if (first == 0xF0)
            least = 0x90;
        else if (first == 0xF4)
            most = 0x8F;
    }
    if (size == 0 || end - at < size || at[1] < least || at[1] > most)
        return 0;
    for (int i = 2; i < size; ++i)
        if (at[i] < 0x80 || at[i] > 0xBF)
            return 0;
    return size;
}

bool isAsciiWord(const unsigned char* at)
{
    std::uint64_t word = 0;
    std::memcpy(&word, at, sizeof word);
    return (word & 0x8080808080808080U) == 0;
}

// Whether one of the next four characters is a surrogate.
bool hasSurrogate(const QChar* at)
{
    std::uint64_t word = 0;
    std::memcpy(&word, at, sizeof word);
    // Surrogates become 0; then a borrow reaches the highest bit of a 0 only.
    word = (word & 0xF800F800F800F800U) ^ 0xD800D800D800D800U;
    return ((word - 0x0001000100010001U) & ~word & 0x8000800080008000U) != 0;
}

} // namespace

qint64 wellFormedUtf8(const char* bytes, qint64 size)
{
    const auto* const begin = reinterpret_cast<const unsigned char*>(bytes);
    const unsigned char* const end = begin + size;
    const unsigned char* at = begin;
    while (at != end) {
        constexpr int word = sizeof(std::uint64_t);
        if (end - at >= word && isAsciiWord(at)) {
            at += word;
            continue;
        }
        const int character = characterSize(at, end);
        if (character == 0)
            break;
        at += character;
    }
    return at - begin;
}

QString textOfUtf8(const char* bytes, qint64 size)
{
    if (size == 0)
        return QString(QLatin1String(""));
    constexpr qint64 markSize = 3;
    qint64 marks = 0;
    while (size - marks >= markSize && std::memcmp(bytes + marks, "\xEF\xBB\xBF", markSize) == 0)
        marks += markSize;
    QString text = QString::fromUtf8(bytes + marks, static_cast<QtVersion::Size>(size - marks));
    if (marks > 0)
        text.prepend(QString(static_cast<QtVersion::Size>(marks / markSize), QChar(QChar::ByteOrderMark)));
    return text;
}

qint64 loneSurrogate(const QString& text)
{
    const auto size = text.size();
    constexpr int charactersOfWord = sizeof(std::uint64_t) / sizeof(QChar);
    for (QtVersion::Size i = 0; i < size; ++i) {
        while (size - i >= charactersOfWord && !hasSurrogate(text.constData() + i))
            i += charactersOfWord;
        if (i == size)
            break;
        if (!text.at(i).isSurrogate())
            continue;
        if (text.at(i).isHighSurrogate() && i + 1 < size && text.at(i + 1).isLowSurrogate())
            ++i;
        else
            return i;
    }
    return -1;
}

} // namespace MODELKIT
