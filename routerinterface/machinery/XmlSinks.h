// SPDX-License-Identifier: MIT
// Where the parts of an element are written to.
//
// XmlCalls hands every part to the stream writer. XmlStretch builds an element as one text, which the writer
// then copies unchanged. That is several times as fast and gives the same bytes as long as the writer would
// neither add nor change anything; the stretch watches for that. XmlBytes goes without a stream writer: it
// puts whole documents together.
#pragma once

#include "modelkit/PlainXmlWriter.h"
#include "modelkit/QtVersion.h"
#include "routerinterface/machinery/TextForms.h"

#include <QtCore/QLatin1String>
#include <QtCore/QString>
#include <QtCore/QVarLengthArray>
#include <QtCore/QXmlStreamWriter>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

class XmlCalls
{
public:
    explicit XmlCalls(QXmlStreamWriter& writer) : m_writer(writer) {}

    QXmlStreamWriter& writer() const { return m_writer; }

    void startElement(const QString& name) { m_writer.writeStartElement(name); }
    void endElement(const QString&) { m_writer.writeEndElement(); }

    template <class Member, class Slot>
    void textElement(Member, const Slot& slot)
    {
        m_writer.writeTextElement(Member::nameText(), textOf(slot));
    }

private:
    QXmlStreamWriter& m_writer;
};

class XmlStretch
{
public:
    // Whether the writer would copy text unchanged. With formatting it adds line breaks, and in an encoding
    // with a state one long text is encoded differently from single calls.
    static bool suits(const QXmlStreamWriter& writer)
    {
        return !writer.autoFormatting() && QtVersion::writesUtf8(writer);
    }

    void startElement(const QString& name)
    {
        put('<');
        put(name);
        m_isTagOpen = true;
    }

    void endElement(const QString& name)
    {
        if (m_isTagOpen)
            put('/');
        else
            putEndOf(name);
        put('>');
        m_isTagOpen = false;
    }

    template <class Member, class Slot>
    void textElement(Member, const Slot& slot)
    {
        const QString name = Member::nameText();
        if (m_isTagOpen)
            put('>');
        m_isTagOpen = false;
        put('<');
        put(name);
        put('>');
        text(slot);
        putEndOf(name);
        put('>');
    }

    // False if a text holds a character that the writer would escape or refuse, or a surrogate.
    bool isExact() const { return m_isExact; }

    // Writes the text inside the element that the writer has open.
    void writeTo(QXmlStreamWriter& writer) const
    {
        // Only a DTD is written without escaping.
        writer.writeDTD(QString::fromRawData(m_text.constData(), static_cast<int>(m_text.size())));
    }

private:
    static bool isPlain(QChar character)
    {
        const unsigned int code = character.unicode();
        return code >= 0x20 && code != '<' && code != '>' && code != '&' && code != '"'
               && (code < 0xD800 || (code > 0xDFFF && code < 0xFFFE));
    }

    template <class Slot>
    void text(const Slot& slot)
    {
        const QString value = textOf(slot);
        for (const QChar character : value)
            if (!isPlain(character))
                m_isExact = false;
        put(value);
    }

    void text(const Value<double>& slot)
    {
        QChar digits[maximalNumberSize];
        const int size = writeTwoDecimals(slot.value, digits);
        if (size > 0)
            m_text.append(digits, size);
        else
            put(textOf(slot));
    }

    void text(const Value<unsigned int>& slot)
    {
        QChar digits[maximalNumberSize];
        m_text.append(digits, writeDigits(slot.value, digits));
    }

    void putEndOf(const QString& name)
    {
        put('<');
        put('/');
        put(name);
    }

    void put(char character) { m_text.append(QLatin1Char(character)); }
    void put(const QString& text) { m_text.append(text.constData(), static_cast<int>(text.size())); }

    QVarLengthArray<QChar, 512> m_text;
    // The start tag has no '>' yet: an element without content ends with "/>" instead.
    bool m_isTagOpen = false;
    bool m_isExact = true;
};

class XmlBytes
{
public:
    explicit XmlBytes(MODELKIT::PlainXmlWriter& writer) : m_writer(writer) {}

    MODELKIT::PlainXmlWriter& writer() const { return m_writer; }

    void startElement(const QString& name) { m_writer.startElement(name); }
    void endElement(const QString& name) { m_writer.endElement(name); }

    template <class Member, class Slot>
    void textElement(Member, const Slot& slot)
    {
        m_writer.textElement(Member::name(), [&] { text(slot); });
    }

private:
    template <class Slot>
    void text(const Slot& slot)
    {
        m_writer.putText(textOf(slot));
    }

    void text(const Value<double>& slot)
    {
        char* const digits = m_writer.room(maximalNumberSize);
        const int size = writeTwoDecimals(slot.value, digits);
        if (size > 0)
            m_writer.advance(digits + size);
        else
            m_writer.putText(textOf(slot));
    }

    void text(const Value<unsigned int>& slot)
    {
        char* const digits = m_writer.room(maximalNumberSize);
        m_writer.advance(digits + writeDigits(slot.value, digits));
    }

    void text(const Value<bool>& slot) { m_writer.put(slot.value ? "true" : "false"); }

    MODELKIT::PlainXmlWriter& m_writer;
};

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
