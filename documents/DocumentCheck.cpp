// SPDX-License-Identifier: MIT
#include "documents/DocumentCheck.h"

#include "documents/BrokenXml.h"
#include "documents/FirstErrors.h"
#include "documents/JsonErrors.h"
#include "documents/Refusals.h"

#include <algorithm>

namespace ROUTERDOCUMENTS {

using MODELKIT::Failure;
using MODELKIT::Place;
using MODELKIT::ReadingReport;

namespace {

bool isSame(const DocumentError& error, const DocumentError& other)
{
    return error.GetText() == other.GetText() && error.GetPlace().path == other.GetPlace().path;
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

// Whether the error is about an element at the path or around it.
bool isAboutOpenElement(const DocumentError& error, const QString& innermost)
{
    return (innermost + QLatin1Char('/')).startsWith(error.GetPlace().path + QLatin1Char('/'));
}

// What is refused in front of the place where XML is no longer well-formed. What the elements that are open
// there would have held is unknown.
std::vector<DocumentError> refusalsBefore(const DocumentError& ending, const QByteArray& xml)
{
    const ReadingReport report;
    try {
        const QByteArray part = readablePartOf(xml);
        const Document document = ReadDocument(part, {Form::Xml, Validation::Off});
        QVector<ReadingReport::Entry> accepted = report.GetEntries();
        std::vector<DocumentError> errors =
            takeRefusals(part, document, accepted, report.GetDropped() == 0 ? Reported::All : Reported::Some);
        const auto unknown = std::remove_if(errors.begin(), errors.end(), [&](const DocumentError& error) {
            return isAboutOpenElement(error, ending.GetPlace().path);
        });
        errors.erase(unknown, errors.end());
        return errors;
    } catch (const DocumentError&) {
        return {};
    }
}

// Finds the other errors of a document of which the first one is known.
void findAll(const QByteArray& bytes, const ReadingOptions& options, const DocumentError& first,
             CheckedDocument& checked)
{
    const ReadingReport report;
    std::vector<DocumentError> atEnd;
    try {
        checked.document = ReadDocument(bytes, options);
        checked.accepted = report.GetEntries();
        checked.dropped = report.GetDropped();
        checked.errors = takeRefusals(bytes, checked.document, checked.accepted,
                                      checked.dropped == 0 ? Reported::All : Reported::Some);
    } catch (const DocumentError& ending) {
        if (!options.frame && options.form == Form::Xml && ending.GetKind() == Failure::NotWellFormed)
            checked.errors = refusalsBefore(ending, bytes);
        if (!isSame(first, ending))
            atEnd.push_back(ending);
    }
    include(first, checked.errors);
    std::stable_sort(checked.errors.begin(), checked.errors.end(), isBefore);
    checked.errors.insert(checked.errors.end(), atEnd.begin(), atEnd.end());
}

// The document, if only the rules of the records refuse it.
Document readWithoutRules(const QByteArray& bytes, Form form)
{
    const ReadingReport ignored;
    try {
        return ReadDocument(bytes, {form, Validation::Off});
    } catch (const DocumentError&) {
        return {};
    }
}

// Finds the other errors of a JSON document of which the first one is known.
void findAllInJson(const QByteArray& json, Form form, const DocumentError& first, int most,
                   CheckedDocument& checked)
{
    constexpr int mostEver = CheckingOptions::mostErrorsOfJson;
    FirstErrors errors(most > 0 ? std::min(most, mostEver) : mostEver);
    const ReadingReport report;
    findErrorsInJson(json, errors);
    // What is found last by reading, and not when errors are listed, must not get lost.
    if (errors.count() == 0)
        errors.add(first);
    checked.errors = errors.errors();
    checked.unlistedErrors = errors.count() - static_cast<qint64>(checked.errors.size());
    checked.accepted = report.GetEntries();
    checked.dropped = report.GetDropped();
    checked.document = readWithoutRules(json, form);
}

} // namespace

CheckedDocument CheckDocument(const QByteArray& bytes, const CheckingOptions& options)
{
    CheckedDocument checked;
    const Form form = options.form.value_or(FormOfContent(bytes));
    const ReadingReport report;
    try {
        checked.document = ReadDocument(bytes, {options.form, Validation::On, options.frame, options.info});
        checked.accepted = report.GetEntries();
        checked.dropped = report.GetDropped();
        return checked;
    } catch (const DocumentError& error) {
        const bool isJson = !options.frame && (form == Form::Json || form == Form::JsonLines);
        if (isJson && error.GetKind() != Failure::WrongRoot)
            findAllInJson(bytes, form, error, options.maximalErrors, checked);
        else if (error.GetKind() == Failure::Refused)
            findAll(bytes, {form, Validation::Off, options.frame, options.info}, error, checked);
        else
            checked.errors = {error};
    }
    keepFirst(options.maximalErrors, checked);
    return checked;
}

} // namespace ROUTERDOCUMENTS
