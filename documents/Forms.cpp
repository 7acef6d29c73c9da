// SPDX-License-Identifier: MIT
#include "documents/Forms.h"

#include "documents/TextUnits.h"

#include "modelkit/BinaryForm.h"

#include <QtCore/QtEndian>

#include <algorithm>
#include <cstring>
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

// XML in UTF-16 or UTF-32, with or without a byte order mark.
bool beginsAsWideXml(const QByteArray& bytes)
{
    static const QByteArray beginnings[] = {QByteArray("\xFE\xFF"),        QByteArray("\xFF\xFE"),
                                            QByteArray("\0\0\xFE\xFF", 4), QByteArray("\0<", 2),
                                            QByteArray("<\0", 2),          QByteArray("\0\0\0<", 4)};
    return std::any_of(std::begin(beginnings), std::end(beginnings),
                       [&bytes](const QByteArray& beginning) { return bytes.startsWith(beginning); });
}

bool beginsAsJson(const QByteArray& bytes)
{
    const int mark = bytes.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    const auto first = std::find_if(bytes.begin() + mark, bytes.end(),
                                    [](char byte) { return std::strchr(" \t\r\n", byte) == nullptr; });
    return first != bytes.end() && (*first == '{' || *first == '[');
}

} // namespace

const QStringList& FormNames()
{
    static const QStringList names = {QStringLiteral("xml"), QStringLiteral("binary"),
                                      QStringLiteral("compressed"), QStringLiteral("json"),
                                      QStringLiteral("jsonl")};
    return names;
}

QString NameOf(Form form) { return FormNames().at(static_cast<int>(form)); }

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
    if (MODELKIT::IsCompressedForm(bytes))
        return Form::Compressed;
    if (ClassOfBinary(bytes))
        return Form::Binary;
    if (beginsAsWideXml(bytes))
        return Form::Xml;
    if (beginsAsJson(bytes))
        return Form::Json;
    const QByteArray begin = bytes.left(beginning);
    return std::all_of(begin.begin(), begin.end(), isTextByte) ? Form::Xml : Form::Binary;
}

const RecordInfo* ClassOfBinary(const QByteArray& bytes)
{
    return bytes.size() < 4 ? nullptr : RecordInfo::FindByFrameId(qFromBigEndian<quint32>(bytes.constData()));
}

} // namespace ROUTERDOCUMENTS
