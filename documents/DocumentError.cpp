// SPDX-License-Identifier: MIT
#include "documents/DocumentError.h"

#include "documents/PathOfMember.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

#include <QtCore/QStringList>

namespace ROUTERDOCUMENTS {

using PELLU300ROUTERINTERFACEXML::MemberInfo;

namespace {

// The enumeration that the exception is about; null when that is unknown. Reading gives the path of the
// member. The check gives that of the record, and the text has the name of the member.
const MemberInfo* enumerationOf(const OutOfRangeException& exception)
{
    const PathOfMember path(exception.GetPlace().path);
    if (path.member)
        return path.member->GetKind() == MemberInfo::Enumeration ? path.member : nullptr;
    if (!path.record)
        return nullptr;
    const QStringList words = exception.GetText().split(QLatin1Char(' '));
    for (const MemberInfo* member : path.record->GetMembers())
        if (member->GetKind() == MemberInfo::Enumeration && words.contains(member->GetName()))
            return member;
    return nullptr;
}

// What would have been right, instead of the value.
QString advice(const OutOfRangeException& exception)
{
    if (!exception.GetClosest().isEmpty())
        return DidYouMean(exception.GetClosest());
    const MemberInfo* const member = enumerationOf(exception);
    if (!member)
        return QString();
    bool isNumber = false;
    exception.GetOffendingValue().toInt(&isNumber);
    QStringList possible = member->GetNames();
    for (int i = 0; isNumber && i < possible.size(); ++i)
        possible[i] = QStringLiteral("%1 (number %2)").arg(possible.at(i)).arg(i);
    return QStringLiteral(" Possible are %1.").arg(Listed(possible));
}

bool isAboutParts(const MODELKIT::Failure& failure)
{
    using MODELKIT::Failure;
    return failure.place.offset >= 0
           && (failure.kind == Failure::NotABinaryForm || failure.kind == Failure::DamagedCompression);
}

// The exception's text, with the offending value and what may have been meant.
QString textOf(const ModelKitException& exception)
{
    QString text = exception.GetText();
    const auto* outOfRange = dynamic_cast<const OutOfRangeException*>(&exception);
    if (!outOfRange || outOfRange->GetOffendingValue().isNull())
        return text;
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text + QLatin1String(": ") + Quoted(Abbreviated(outOfRange->GetOffendingValue()))
           + QLatin1Char('.') + advice(*outOfRange);
}

} // namespace

DocumentError::DocumentError(const MODELKIT::Failure& failure, std::optional<Form> otherForm)
    : m_failure(failure), m_otherForm(otherForm), m_isAboutParts(isAboutParts(failure)),
      m_utf8(failure.text.toUtf8())
{}

DocumentError::DocumentError(const ModelKitException& refusal)
    : DocumentError(MODELKIT::Failure{MODELKIT::Failure::Refused, textOf(refusal), refusal.GetPlace()})
{
    m_isAboutParts = dynamic_cast<const BinaryParsingException*>(&refusal) != nullptr;
}

DocumentError::DocumentError(const DocumentError& other) noexcept = default;
DocumentError& DocumentError::operator=(const DocumentError& other) noexcept = default;
DocumentError::~DocumentError() = default;

InvalidMemberPath::InvalidMemberPath(const QString& text) : m_text(text), m_utf8(text.toUtf8()) {}

InvalidMemberPath::InvalidMemberPath(const InvalidMemberPath& other) noexcept = default;
InvalidMemberPath& InvalidMemberPath::operator=(const InvalidMemberPath& other) noexcept = default;
InvalidMemberPath::~InvalidMemberPath() = default;

} // namespace ROUTERDOCUMENTS
