// SPDX-License-Identifier: MIT
#include "documents/DocumentCheck.h"

#include "documents/Refusals.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace ROUTERDOCUMENTS {

using MODELKIT::Failure;
using MODELKIT::Place;
using MODELKIT::ReadingReport;

namespace {

bool isSame(const DocumentError& error, const DocumentError& other)
{
    return error.GetText() == other.GetText() && error.GetPlace().path == other.GetPlace().path;
}

// In the order of the document; those whose place is unknown go last.
bool isBefore(const DocumentError& error, const DocumentError& other)
{
    const auto position = [](const DocumentError& of) {
        const Place& place = of.GetPlace();
        const bool isUnknown = place.line == 0 && place.offset < 0;
        return std::make_tuple(isUnknown, place.line, place.column, place.offset);
    };
    return position(error) < position(other);
}

// Puts the error among the others, unless it is one of them.
void include(const DocumentError& error, std::vector<DocumentError>& errors)
{
    if (std::none_of(errors.begin(), errors.end(),
                     [&error](const DocumentError& other) { return isSame(error, other); }))
        errors.insert(errors.begin(), error);
}

void keepFirst(int most, CheckedDocument& checked)
{
    auto& errors = checked.errors;
    const auto size = static_cast<qint64>(errors.size());
    if (most <= 0 || size <= most)
        return;
    checked.unlistedErrors = size - most;
    errors.erase(errors.begin() + most, errors.end());
}

// Finds the other errors of a document of which the first one is known.
void findAll(const QByteArray& bytes, Form form, const DocumentError& first, CheckedDocument& checked)
{
    const ReadingReport report;
    try {
        checked.document = ReadDocument(bytes, {form, Validation::Off});
    } catch (const DocumentError& ending) {
        checked.errors = {first};
        if (!isSame(first, ending))
            checked.errors.push_back(ending);
        return;
    }
    checked.accepted = report.GetEntries();
    checked.dropped = report.GetDropped();
    checked.errors = takeRefusals(bytes, checked.document, checked.accepted,
                                  checked.dropped == 0 ? Reported::All : Reported::Some);
    include(first, checked.errors);
    std::stable_sort(checked.errors.begin(), checked.errors.end(), isBefore);
}

} // namespace

CheckedDocument CheckDocument(const QByteArray& bytes, const CheckingOptions& options)
{
    CheckedDocument checked;
    const Form form = options.form.value_or(FormOfContent(bytes));
    const ReadingReport report;
    try {
        checked.document = ReadDocument(bytes, {options.form, Validation::On});
        checked.accepted = report.GetEntries();
        checked.dropped = report.GetDropped();
        return checked;
    } catch (const DocumentError& error) {
        const bool isJson = form == Form::Json || form == Form::JsonLines;
        if (error.GetKind() == Failure::Refused && !isJson)
            findAll(bytes, form, error, checked);
        else
            checked.errors = {error};
    }
    keepFirst(options.maximalErrors, checked);
    return checked;
}

} // namespace ROUTERDOCUMENTS
