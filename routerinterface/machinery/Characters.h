// SPDX-License-Identifier: MIT
// Texts in place, in a reader's buffer or in a frame: a number is converted and a name compared without
// making a string.
#pragma once

#include "modelkit/QtVersion.h"
#include "modelkit/Utf8.h"

#include <QtCore/QByteArray>
#include <QtCore/QChar>
#include <QtCore/QLatin1String>
#include <QtCore/QString>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

namespace QtVersion = MODELKIT::QtVersion;

class Utf16Text
{
public:
    Utf16Text(const QChar* characters, QtVersion::Size size) : m_characters(characters), m_size(size) {}

    int size() const { return static_cast<int>(m_size); }
    unsigned int operator[](int i) const { return m_characters[i].unicode(); }

    // An empty text is not a null string.
    QString toString() const
    {
        return m_size == 0 ? QString(QLatin1String("")) : QString(m_characters, m_size);
    }

    bool isIntact() const { return true; }

private:
    const QChar* m_characters;
    QtVersion::Size m_size;
};

// A text in UTF-8. A null text has no characters. A byte order mark is a character like any other.
class Utf8Text
{
public:
    static constexpr int null = -1;

    Utf8Text() = default;
    Utf8Text(const char* bytes, int size) : m_bytes(bytes), m_size(size) {}

    int size() const { return m_size < 0 ? 0 : m_size; }
    unsigned int operator[](int i) const { return static_cast<unsigned char>(m_bytes[i]); }

    // The size is passed because a null character may be part of the text.
    QString toString() const { return m_size == null ? QString() : MODELKIT::textOfUtf8(m_bytes, m_size); }

    // Whether all bytes are UTF-8; others are replaced in the string.
    bool isIntact() const { return MODELKIT::wellFormedUtf8(m_bytes, size()) == size(); }

private:
    const char* m_bytes = nullptr;
    int m_size = null;
};

// Whether the text is that name. Names are ASCII, in which a character is the same in all encodings.
template <class Characters>
bool isName(const Characters& text, QLatin1String name)
{
    if (text.size() != name.size())
        return false;
    for (int i = 0; i < text.size(); ++i)
        if (text[i] != static_cast<unsigned char>(name.data()[i]))
            return false;
    return true;
}

template <class Characters>
bool isName(const Characters& text, const QString& name)
{
    if (text.size() != name.size())
        return false;
    const QChar* characters = name.constData();
    for (int i = 0; i < text.size(); ++i)
        if (text[i] != characters[i].unicode())
            return false;
    return true;
}

// Whether the text is that word of ASCII characters in lower case, whatever its own case. No other
// character becomes one of the words asked for when it is turned to lower case.
template <class Characters>
bool isWord(const Characters& text, const char* word)
{
    int at = 0;
    for (; at < text.size() && word[at] != '\0'; ++at) {
        const unsigned int character = text[at];
        const bool isUpper = character - unsigned('A') < 26;
        if ((isUpper ? character + unsigned('a' - 'A') : character) != static_cast<unsigned char>(word[at]))
            return false;
    }
    return at == text.size() && word[at] == '\0';
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
