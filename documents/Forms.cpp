// SPDX-License-Identifier: MIT
#include "documents/Forms.h"

#include "documents/FormSigns.h"
#include "documents/TextUnits.h"

#include <QtCore/QtEndian>

#include <algorithm>
#include <iterator>

namespace ROUTERDOCUMENTS {

using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

struct Ending
{
    const char* text;
    Form form;
};

constexpr Ending endings[] = {{".xml", Form::Xml},
                              {".bin", Form::Binary},
                              {".binz", Form::Compressed},
                              {".json", Form::Json},
                              {".jsonl", Form::JsonLines}};

quint32 firstWordOf(const QByteArray& bytes) { return qFromBigEndian<quint32>(bytes.constData()); }

// XML in UTF-16 or UTF-32, with or without a byte order mark. What follows the first character may be cut
// off.
bool beginsAsWideXml(const QByteArray& bytes)
{
    const auto begins = [&bytes](const char* with, int size) {
        return bytes.startsWith(QByteArray::fromRawData(with, size));
    };
    return std::any_of(std::begin(byteOrderMarks), std::end(byteOrderMarks),
                       [&](const ByteOrderMark& mark) {
                           return mark.units.size > 1 && begins(mark.bytes, mark.size);
                       })
           || std::any_of(std::begin(markupSigns), std::end(markupSigns), [&](const MarkupSign& sign) {
                  return sign.units.size > 1 && begins(sign.bytes, sign.units.size);
              });
}

// The first byte of a text that is neither white space nor, in wide characters, zero; 0 when there is none.
char firstOfText(const QByteArray& bytes)
{
    const int mark = bytes.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    const auto first = std::find_if(bytes.begin() + mark, bytes.end(),
                                    [](char byte) { return byte != 0 && !isWhite(byte); });
    return first == bytes.end() ? '\0' : *first;
}

// JSON in UTF-16 counts as well.
bool beginsAsJson(const QByteArray& bytes) { return beginsJson(firstOfText(bytes)); }

// Even if characters follow that no XML has: then its reader says where they are.
bool beginsAsXml(const QByteArray& bytes) { return firstOfText(bytes) == '<'; }

} // namespace

const QStringList& FormNames()
{
    static const QStringList names = {QStringLiteral("xml"), QStringLiteral("binary"),
                                      QStringLiteral("compressed"), QStringLiteral("json"),
                                      QStringLiteral("jsonl")};
    return names;
}

QString NameOf(Form form) { return FormNames().at(static_cast<int>(form)); }

bool IsBinary(Form form) { return form == Form::Binary || form == Form::Compressed; }

std::optional<Form> FormByName(const QString& name)
{
    const auto index = FormNames().indexOf(name);
    return index < 0 ? std::nullopt : std::make_optional(static_cast<Form>(index));
}

std::optional<Form> FormOfFileName(const QString& path)
{
    for (const Ending& ending : endings)
        if (path.endsWith(QLatin1String(ending.text), Qt::CaseInsensitive))
            return ending.form;
    return std::nullopt;
}

QString EndingOf(Form form)
{
    const auto* const found = std::find_if(std::begin(endings), std::end(endings),
                                           [form](const Ending& ending) { return ending.form == form; });
    return QLatin1String(found->text);
}

QString KnownEndings()
{
    QStringList texts;
    for (const Ending& ending : endings)
        texts += QLatin1String(ending.text);
    return texts.join(QStringLiteral(", "));
}

Form FormOfContent(const QByteArray& bytes)
{
    constexpr int beginning = 256;
    if (const auto form = bytes.size() < 4 ? std::nullopt : binaryFormOf(firstWordOf(bytes)))
        return *form;
    if (beginsAsWideXml(bytes))
        return Form::Xml;
    if (beginsAsJson(bytes))
        return Form::Json;
    if (beginsAsXml(bytes))
        return Form::Xml;
    const QByteArray begin = bytes.left(beginning);
    return std::all_of(begin.begin(), begin.end(), isTextByte) ? Form::Xml : Form::Binary;
}

const RecordInfo* ClassOfBinary(const QByteArray& bytes)
{
    return bytes.size() < 4 ? nullptr : RecordInfo::FindByFrameId(firstWordOf(bytes));
}

} // namespace ROUTERDOCUMENTS
