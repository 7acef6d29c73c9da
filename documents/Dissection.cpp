// SPDX-License-Identifier: MIT
#include "documents/Dissection.h"

#include "documents/Cutter.h"

#include "modelkit/BinaryForm.h"

#include <algorithm>

namespace ROUTERDOCUMENTS {

QString NameOf(Part::Kind kind)
{
    switch (kind) {
    case Part::ClassId:
        return QStringLiteral("classId");
    case Part::Marker:
        return QStringLiteral("marker");
    case Part::Tag:
        return QStringLiteral("tag");
    case Part::Length:
        return QStringLiteral("length");
    case Part::ItemCount:
        return QStringLiteral("itemCount");
    case Part::ItemLength:
        return QStringLiteral("itemLength");
    case Part::ByteCount:
        return QStringLiteral("byteCount");
    case Part::Value:
        return QStringLiteral("value");
    case Part::InflatedSize:
        return QStringLiteral("inflatedSize");
    case Part::Compressed:
        return QStringLiteral("compressed");
    case Part::Undecoded:
        return QStringLiteral("undecoded");
    case Part::End:
        return QStringLiteral("end");
    }
    return QString();
}

QJsonObject PartJson(const Part& part)
{
    QJsonObject json{{QStringLiteral("kind"), NameOf(part.kind)},
                     {QStringLiteral("offset"), part.offset},
                     {QStringLiteral("bytes"), QString::fromLatin1(part.bytes.toHex(' ').toUpper())},
                     {QStringLiteral("path"), part.path}};
    if (!part.value.isUndefined())
        json[QStringLiteral("value")] = part.value;
    if (!part.note.isEmpty())
        json[QStringLiteral("note")] = part.note;
    if (!part.wrong.isEmpty())
        json[QStringLiteral("wrong")] = part.wrong;
    return json;
}

namespace {

class CompressedForm
{
public:
    // Failure: why the form cannot be inflated completely, if that is so.
    CompressedForm(const QByteArray& form, const MODELKIT::Failure& failure, const PartVisitor& visit)
        : m_cutter(form, visit), m_failure(failure)
    {}

    void dissect()
    {
        Part marker;
        marker.kind = Part::Marker;
        marker.meaning = QStringLiteral("compressed form");
        m_cutter.emitPart(marker, wordSize);
        const qint32 length = m_cutter.peekWord();
        const qint64 end = length < 0 ? m_cutter.size() : m_cutter.at() + wordSize + length;
        dissectContent(length, end);
        m_cutter.emitBehindForm(end);
    }

private:
    // Why the form cannot be inflated, if the failure is at the offset.
    QString failureAt(qint64 offset) const
    {
        return m_failure.kind != MODELKIT::Failure::None && m_failure.place.offset == offset ? m_failure.text
                                                                                             : QString();
    }

    void dissectContent(qint32 length, qint64 end)
    {
        const Cutter::Level level(m_cutter);
        // A failure about the length has the place of the form's beginning.
        m_cutter.emitWord(Part::Length, length, lengthText(length), failureAt(0));
        for (int number = 1; length >= 0 && m_cutter.available(end) >= headerSize; ++number)
            dissectPiece(number, end);
        m_cutter.emitRest(end, failureAt(m_cutter.at()));
    }

    void dissectPiece(int number, qint64 formEnd)
    {
        const qint32 length = m_cutter.peekWord();
        const qint64 end = std::clamp(m_cutter.at() + wordSize + length, m_cutter.at() + wordSize, formEnd);
        m_cutter.emitWord(Part::Length, length,
                          QStringLiteral("[%1] piece, length %2").arg(number).arg(length),
                          failureAt(m_cutter.at()));
        const Cutter::Level level(m_cutter);
        if (m_cutter.available(end) < wordSize) {
            m_cutter.emitRest(end);
            return;
        }
        const qint32 size = m_cutter.peekWord();
        m_cutter.emitWord(Part::InflatedSize, size, QStringLiteral("inflated size %1").arg(size));
        if (m_cutter.available(end) == 0)
            return;
        Part part;
        part.kind = Part::Compressed;
        part.meaning = QStringLiteral("%1, compressed").arg(bytesText(m_cutter.available(end)));
        m_cutter.emitPart(part, m_cutter.available(end));
    }

    Cutter m_cutter;
    const MODELKIT::Failure& m_failure;
};

} // namespace

void DissectCompressed(const QByteArray& form, QByteArray& plain, const PartVisitor& visit)
{
    plain.clear();
    if (!MODELKIT::IsCompressedForm(form)) {
        DissectPlain(form, visit);
        return;
    }
    MODELKIT::Failure failure;
    MODELKIT::InflateForm(form, plain, failure);
    CompressedForm(form, failure, visit).dissect();
}

} // namespace ROUTERDOCUMENTS
