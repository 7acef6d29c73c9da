// SPDX-License-Identifier: MIT
#include "HexView.h"

#include "Output.h"
#include "documents/Dissection.h"
#include "documents/LargeJson.h"

#include <QtCore/QString>

#include <algorithm>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

// --- the first mistake ----------------------------------------------------------------------

class FirstWrong
{
public:
    void note(const Part& part)
    {
        if (part.wrong.isEmpty() || m_finding)
            return;
        m_finding = Finding();
        m_finding->text = part.wrong;
        m_finding->place.offset = part.offset;
        m_finding->place.path = part.path;
    }

    const std::optional<Finding>& get() const { return m_finding; }

private:
    std::optional<Finding> m_finding;
};

// --- text -----------------------------------------------------------------------------------

constexpr int rowSize = 8;
constexpr int bytesWidth = 3 * rowSize - 1;

Style styleOf(Part::Kind kind)
{
    switch (kind) {
    case Part::ClassId:
    case Part::Marker:
    case Part::Tag:
    case Part::ItemLength:
        return Style::Name;
    case Part::Value:
        return Style::Value;
    case Part::Undecoded:
        return Style::Warning;
    case Part::Length:
    case Part::ItemCount:
    case Part::ByteCount:
    case Part::InflatedSize:
    case Part::Compressed:
    case Part::End:
        break;
    }
    return Style::Plain;
}

class HexText
{
public:
    explicit HexText(Output& output) : m_output(output) {}

    void writeHead()
    {
        m_output.writeLine(faint(QStringLiteral("   offset  hex       bytes                    meaning")));
    }

    void write(const Part& part)
    {
        QString meaning = m_output.paint(styleOf(part.kind), part.meaning);
        if (!part.note.isEmpty())
            meaning += QLatin1Char(' ')
                       + m_output.paint(Style::Warning, QLatin1Char('(') + part.note + QLatin1Char(')'));
        const int indentation = 2 * part.depth;
        writeRow(part, 0, QString(indentation, QLatin1Char(' ')) + meaning);
        if (!part.wrong.isEmpty())
            writeWrong(part.wrong, indentation);
        writeOtherRows(part);
    }

private:
    void writeRow(const Part& part, int begin, const QString& meaning)
    {
        const qint64 offset = part.offset + begin;
        const QByteArray bytes = part.bytes.mid(begin, rowSize).toHex(' ').toUpper();
        const QString place =
            QStringLiteral("%1  %2").arg(offset, 9).arg(offset, 8, 16, QLatin1Char('0')).toUpper();
        QString line = faint(place) + QStringLiteral("  ") + QString::fromLatin1(bytes);
        if (!meaning.isEmpty())
            line += QString(bytesWidth - static_cast<int>(bytes.size()), QLatin1Char(' '))
                    + QStringLiteral("  ") + meaning;
        m_output.writeLine(line);
    }

    // Marks the first byte of the part.
    void writeWrong(const QString& wrong, int indentation)
    {
        constexpr int placeWidth = 21;
        m_output.writeLine(QString(placeWidth, QLatin1Char(' '))
                           + m_output.paint(Style::Error, QStringLiteral("^^"))
                           + QString(bytesWidth + indentation, QLatin1Char(' '))
                           + m_output.paint(Style::Error, QStringLiteral("wrong: ") + wrong));
    }

    void writeOtherRows(const Part& part)
    {
        constexpr int mostRows = 4;
        const int size = static_cast<int>(part.bytes.size());
        const int rows = (size + rowSize - 1) / rowSize;
        int row = 1;
        if (rows > mostRows) {
            writeRow(part, rowSize, QString());
            row = rows - 1;
            writeGap(row * rowSize - 2 * rowSize);
        }
        for (; row < rows; ++row)
            writeRow(part, row * rowSize, QString());
    }

    void writeGap(int count)
    {
        m_output.writeLine(faint(QStringLiteral("      ...  ...       %1 more bytes").arg(count)));
    }

    QString faint(const QString& text) const { return m_output.paint(Style::Faint, text); }

    Output& m_output;
};

} // namespace

std::optional<Finding> writeHex(const HexForm& form, Output& output)
{
    FirstWrong first;
    HexText text(output);
    const auto write = [&](const Part& part) {
        first.note(part);
        text.write(part);
    };
    const auto writeInInput = [&](Part part) {
        part.offset += form.offset;
        write(part);
    };
    text.writeHead();
    QByteArray plain;
    DissectFrame(form.bytes, form.frame, form.info, plain, writeInInput);
    if (!plain.isEmpty()) {
        output.writeLine(QStringLiteral("\nThe form inside, %1 bytes:").arg(plain.size()));
        text.writeHead();
        DissectPlain(plain, write, form.info);
    }
    return first.get();
}

std::optional<Finding> writeHexJson(const HexForm& form, const QJsonObject& head, Output& output)
{
    FirstWrong first;
    LargeJson json(output.writer());
    const auto write = [&](const Part& part) {
        first.note(part);
        json.AddItem(PartJson(part));
    };
    const auto writeInInput = [&](Part part) {
        part.offset += form.offset;
        write(part);
    };
    for (auto i = head.begin(); i != head.end(); ++i)
        json.Add(i.key(), i.value());
    QByteArray plain;
    bool isCompressed = false;
    json.BeginList(QStringLiteral("parts"));
    DissectFrame(form.bytes, form.frame, form.info, plain, [&](const Part& part) {
        isCompressed |= part.kind == Part::Marker;
        writeInInput(part);
    });
    json.EndList();
    if (isCompressed) {
        json.BeginList(QStringLiteral("inflated"));
        if (!plain.isEmpty())
            DissectPlain(plain, write, form.info);
        json.EndList();
    }
    if (first.get())
        json.Add(QStringLiteral("wrong"), first.get()->toJson());
    json.End();
    return first.get();
}

} // namespace routermsg
