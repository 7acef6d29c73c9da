// SPDX-License-Identifier: MIT
#include "documents/DocumentError.h"

#include "documents/Sentences.h"
#include "documents/Text.h"

namespace ROUTERDOCUMENTS {

namespace {

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
           + QLatin1Char('.') + DidYouMean(outOfRange->GetClosest());
}

} // namespace

DocumentError::DocumentError(const MODELKIT::Failure& failure)
    : m_failure(failure), m_utf8(failure.text.toUtf8())
{}

DocumentError::DocumentError(const ModelKitException& refusal)
    : DocumentError(MODELKIT::Failure{MODELKIT::Failure::Refused, textOf(refusal), refusal.GetPlace()})
{}

DocumentError::DocumentError(const DocumentError& other) noexcept = default;
DocumentError& DocumentError::operator=(const DocumentError& other) noexcept = default;
DocumentError::~DocumentError() = default;

InvalidMemberPath::InvalidMemberPath(const QString& text) : m_text(text), m_utf8(text.toUtf8()) {}

InvalidMemberPath::InvalidMemberPath(const InvalidMemberPath& other) noexcept = default;
InvalidMemberPath& InvalidMemberPath::operator=(const InvalidMemberPath& other) noexcept = default;
InvalidMemberPath::~InvalidMemberPath() = default;

} // namespace ROUTERDOCUMENTS
