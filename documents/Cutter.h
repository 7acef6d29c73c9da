// SPDX-License-Identifier: MIT
// Cutting bytes into parts. Not installed.
#pragma once

#include "documents/Dissection.h"

#include <QtCore/QByteArray>
#include <QtCore/QDataStream>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QtEndian>

#include <algorithm>

namespace ROUTERDOCUMENTS {

constexpr qint64 wordSize = 4;
constexpr qint64 headerSize = 2 * wordSize;

inline QString counted(qint64 count, const QString& one, const QString& several)
{
    return QStringLiteral("%1 %2").arg(count).arg(count == 1 ? one : several);
}

inline QString bytesText(qint64 count)
{
    return counted(count, QStringLiteral("byte"), QStringLiteral("bytes"));
}

inline QString lengthText(qint64 length) { return QStringLiteral("length %1").arg(length); }

inline QString negativeLength(qint64 length)
{
    return length < 0 ? QStringLiteral("The length is negative.") : QString();
}

inline QString goesBeyond(const QString& what, qint64 excess, const QString& whole)
{
    return QStringLiteral("%1 goes %2 beyond the end of %3.").arg(what, bytesText(excess), whole);
}

// Walks over the bytes and passes the parts to the visitor.
class Cutter
{
public:
    Cutter(const QByteArray& form, const PartVisitor& visit,
           QDataStream::ByteOrder order = QDataStream::BigEndian)
        : m_form(form), m_visit(visit), m_order(order)
    {}

    qint64 at() const { return m_at; }
    qint64 size() const { return m_form.size(); }
    // The number of bytes up to an end that may be beyond the end of the input.
    qint64 available(qint64 end) const { return std::max<qint64>(std::min(end, size()) - m_at, 0); }
    bool isCutOff(qint64 end) const { return end > size(); }

    // The next word, or the one that many bytes after it. It must be inside the input.
    qint32 peekWord(qint64 behind = 0) const { return peekAs<qint32>(m_form.constData() + m_at + behind); }
    qint64 peekDoubleWord() const { return peekAs<qint64>(m_form.constData() + m_at); }
    QByteArray peek(qint64 count) const
    {
        return QByteArray::fromRawData(m_form.constData() + m_at, static_cast<int>(count));
    }

    // Completes the part with the next bytes and the current path, and passes it to the visitor.
    void emitPart(Part part, qint64 count)
    {
        part.offset = m_at;
        part.bytes = peek(count);
        part.depth = m_depth;
        part.path = m_path.join(QLatin1Char('/'));
        m_at += count;
        m_visit(part);
    }

    void emitWord(Part::Kind kind, qint64 value, const QString& meaning, const QString& wrong = QString())
    {
        Part part;
        part.kind = kind;
        part.meaning = meaning;
        part.value = value;
        part.wrong = wrong;
        emitPart(part, wordSize);
    }

    // The bytes that are left up to the end, if there are any.
    void emitRest(qint64 end, const QString& wrong = QString())
    {
        const qint64 count = available(end);
        if (count == 0)
            return;
        Part part;
        part.meaning = QStringLiteral("%1, not decoded").arg(bytesText(count));
        part.wrong = wrong;
        emitPart(part, count);
    }

    void emitEnd(const QString& wrong)
    {
        Part part;
        part.kind = Part::End;
        part.meaning = QStringLiteral("end");
        part.wrong = wrong;
        emitPart(part, 0);
    }

    // The bytes after the form, or an end when the input is shorter than the form.
    void emitBehindForm(qint64 formEnd)
    {
        if (isCutOff(formEnd))
            emitEnd(
                QStringLiteral("The input ends here; %1 missing.")
                    .arg(counted(formEnd - size(), QStringLiteral("byte is"), QStringLiteral("bytes are"))));
        const qint64 count = available(size());
        if (count == 0)
            return;
        Part part;
        part.meaning = QStringLiteral("%1 behind the form").arg(bytesText(count));
        part.note = QStringLiteral("What is behind the form is not read.");
        emitPart(part, count);
    }

    // During its lifetime, parts are one level deeper.
    class Level
    {
    public:
        explicit Level(Cutter& cutter) : m_cutter(cutter) { ++cutter.m_depth; }
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;
        ~Level() { --m_cutter.m_depth; }

    private:
        Cutter& m_cutter;
    };

    // During its lifetime, the path has one more step, unless the name is empty.
    class Step
    {
    public:
        Step(Cutter& cutter, const QString& name) : m_path(cutter.m_path), m_sizeBefore(m_path.size())
        {
            if (!name.isEmpty())
                m_path.append(name);
        }
        Step(const Step&) = delete;
        Step& operator=(const Step&) = delete;
        ~Step()
        {
            if (m_path.size() > m_sizeBefore)
                m_path.removeLast();
        }

    private:
        QStringList& m_path;
        const QStringList::size_type m_sizeBefore;
    };

private:
    template <class T>
    T peekAs(const char* bytes) const
    {
        return m_order == QDataStream::BigEndian ? qFromBigEndian<T>(bytes) : qFromLittleEndian<T>(bytes);
    }

    const QByteArray& m_form;
    const PartVisitor& m_visit;
    const QDataStream::ByteOrder m_order;
    qint64 m_at = 0;
    int m_depth = 0;
    // The empty first step becomes the leading slash.
    QStringList m_path = {QString()};
};

} // namespace ROUTERDOCUMENTS
