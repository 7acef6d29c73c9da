// SPDX-License-Identifier: MIT
#include "documents/DissectedValues.h"

#include "documents/Text.h"
#include "documents/Values.h"

#include <QtCore/QString>

#include <cmath>

namespace ROUTERDOCUMENTS {

using PELLU300ROUTERINTERFACEXML::MemberInfo;

namespace {

// The beginning and the end of a long text; surrogate pairs are not split.
QString bothEnds(const QString& text, QString (*safe)(const QString&))
{
    int begin = 40;
    int end = 16;
    if (text.size() <= begin + end)
        return safe(text);
    if (text.at(begin - 1).isHighSurrogate())
        --begin;
    if (text.at(text.size() - end).isLowSurrogate())
        --end;
    return safe(text.left(begin)) + QStringLiteral("...") + safe(text.right(end))
           + QStringLiteral(" (%1 characters)").arg(text.size());
}

Part valuePart(const QString& meaning, const QJsonValue& value)
{
    Part part;
    part.kind = Part::Value;
    part.meaning = meaning;
    part.value = value;
    return part;
}

Part decimalPart(const MemberInfo& member, const QString& text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (isNumber)
        return valuePart(bothEnds(text, Printable), ValueJson(member, number));
    // The record takes what the conversion gives: an infinite value where the number is too large.
    Part part = valuePart(bothEnds(text, Quoted), ValueJson(member, number));
    part.note =
        std::isinf(number)
            ? QStringLiteral("This number is too large. The record reads it as %1.").arg(Exactly(number))
            : QStringLiteral("This is not a number that a decimal can hold. The record reads it as 0.");
    return part;
}

Part enumeratorPart(const MemberInfo& member, const QString& name)
{
    const auto number = static_cast<int>(member.GetNames().indexOf(name));
    if (number >= 0)
        return valuePart(ValueText(member, number), name);
    Part part = valuePart(bothEnds(name, Quoted), name);
    part.wrong = QStringLiteral("There is no such enumerator of %1.").arg(member.GetName());
    return part;
}

} // namespace

Part unsignedPart(qint64 number)
{
    const auto value = static_cast<unsigned int>(number & 0xFFFFFFFF);
    Part part = valuePart(QString::number(number), static_cast<qint64>(value));
    if (number != value)
        part.note = QStringLiteral("The record reads it as %1.").arg(value);
    return part;
}

Part booleanPart(char byte)
{
    const bool value = byte != 0;
    Part part = valuePart(value ? QStringLiteral("true") : QStringLiteral("false"), value);
    if (byte != 0 && byte != 1)
        part.note = QStringLiteral("True is usually written as 1.");
    return part;
}

Part textualPart(const MemberInfo& member, const QByteArray& bytes)
{
    const QString text = QString::fromUtf8(bytes);
    Part part = member.GetKind() == MemberInfo::Decimal       ? decimalPart(member, text)
                : member.GetKind() == MemberInfo::Enumeration ? enumeratorPart(member, text)
                                                              : valuePart(bothEnds(text, Quoted), text);
    if (text.toUtf8() != bytes && part.note.isEmpty())
        part.note = QStringLiteral("Not all of it is UTF-8.");
    return part;
}

} // namespace ROUTERDOCUMENTS
