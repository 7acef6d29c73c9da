// SPDX-License-Identifier: MIT
#include "documents/Document.h"

#include "documents/DocumentError.h"
#include "documents/Frames.h"
#include "documents/JsonForm.h"
#include "documents/JsonPlaces.h"
#include "documents/ReadingFailures.h"

#include "modelkit/BinaryForm.h"
#include "modelkit/XmlPlaces.h"

namespace ROUTERDOCUMENTS {

using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

// Calls the action, and turns the exception of a record into a DocumentError.
template <class Action>
auto explained(const Action& action) -> decltype(action())
{
    try {
        return action();
    } catch (const ModelKitException& exception) {
        throw DocumentError(exception);
    }
}

// The class of the root, for bytes that are not of the document's class.
const RecordInfo* classOf(const QByteArray& bytes, Form form)
{
    if (form == Form::Xml)
        return RecordInfo::Find(MODELKIT::RootNameOfXml(bytes));
    if (form == Form::Binary)
        return ClassOfBinary(bytes);
    QByteArray plain;
    MODELKIT::Failure failure;
    MODELKIT::InflateForm(bytes, plain, failure);
    return ClassOfBinary(plain);
}

// The record; null when the bytes are not a form of the class. GetLastFailure() then tells why.
std::unique_ptr<MODELKIT::IMKObject> readAs(const RecordInfo& info, const QByteArray& bytes, Form form,
                                            Validation validation)
{
    auto record = info.Create();
    record->SetValidate(validation == Validation::On);
    const bool isRead =
        form == Form::Xml ? record->SetXmlBytes(bytes) : record->SetBinaryRepresentation(bytes);
    return isRead ? std::move(record) : nullptr;
}

// Expected: the class of the root; null admits all.
std::unique_ptr<MODELKIT::IMKObject> readByLibrary(const QByteArray& bytes, Form form, Validation validation,
                                                   const RecordInfo* expected)
{
    using MODELKIT::Failure;
    // The document's class goes first, because its failures explain best why bytes are not a document.
    auto record = readAs(expected ? *expected : RecordInfo::Document(), bytes, form, validation);
    const Failure failure = MODELKIT::IMKObject::GetLastFailure();
    if (!expected && (failure.kind == Failure::WrongRoot || failure.kind == Failure::WrongClass))
        if (const RecordInfo* info = classOf(bytes, form))
            record = readAs(*info, bytes, form, validation);
    if (record)
        return record;
    const Failure last = MODELKIT::IMKObject::GetLastFailure();
    // The name of another root is no mistake in writing when the class is expected.
    const bool isOtherRoot = expected && last.kind == Failure::WrongRoot;
    throw DocumentError(form == Form::Xml && !isOtherRoot ? explainedForXml(last, bytes) : last);
}

std::unique_ptr<MODELKIT::IMKObject> readJson(const QByteArray& bytes, const ReadingOptions& options)
{
    auto record = FromJson(bytes, options.validation);
    const RecordInfo& info = RecordInfo::Of(*record);
    if (!options.info || options.info == &info)
        return record;
    throw DocumentError(
        {MODELKIT::Failure::WrongRoot,
         QStringLiteral("The root is %1, expected is %2.").arg(info.GetName(), options.info->GetName()),
         findInJson(bytes, QLatin1Char('/') + info.GetName())});
}

// A bare frame. Document: receives the record and the form.
void readBare(const QByteArray& bytes, const FrameFormat& format, const ReadingOptions& options,
              Document& document)
{
    const bool isCompressed = isCompressedFrame(bytes, format);
    document.form = isCompressed ? Form::Compressed : Form::Binary;
    document.record = isCompressed ? readByLibrary(inUsualOrder(bytes, format), Form::Compressed,
                                                   options.validation, options.info)
                                   : readFrame(bytes, format, options.info, options.validation);
}

// Applies the rules to a record after reading it.
void check(const MODELKIT::IMKObject& record, const QByteArray& bytes, Form form)
{
    try {
        record.Check();
    } catch (ModelKitException& exception) {
        if (form == Form::Xml)
            exception.SetPlace(MODELKIT::FindInXml(bytes, exception.GetPlace().path));
        else if (form == Form::Json || form == Form::JsonLines)
            exception.SetPlace(findInJson(bytes, exception.GetPlace().path));
        throw;
    }
}

// Empty when the form cannot represent the record.
QByteArray encodeUnchecked(MODELKIT::IMKObject& record, Form form)
{
    constexpr int usualLevel = -1;
    switch (form) {
    case Form::Xml:
        return record.GetXmlBytes();
    case Form::Binary:
        return record.GetBinaryRepresentationAsQByteArray();
    case Form::Compressed:
        return record.GetCompressedBinaryRepresentationAsQByteArray(usualLevel);
    case Form::Json:
        return ToJson(record);
    case Form::JsonLines:
        break;
    }
    return ToJsonLine(record);
}

// A document in one of the forms. Document: receives the record and the form.
void readInForm(const QByteArray& bytes, const ReadingOptions& options, Document& document)
{
    document.form = options.form.value_or(FormOfContent(bytes));
    if (!options.form)
        requireForm(bytes, document.form);
    const bool isJson = document.form == Form::Json || document.form == Form::JsonLines;
    document.record = isJson ? readJson(bytes, options)
                             : readByLibrary(bytes, document.form, options.validation, options.info);
}

} // namespace

Document ReadDocument(const QByteArray& bytes, const ReadingOptions& options)
{
    return explained([&] {
        Document document;
        document.frame = options.frame;
        document.size = bytes.size();
        if (options.frame)
            readBare(bytes, *options.frame, options, document);
        else
            readInForm(bytes, options, document);
        document.info = &RecordInfo::Of(*document.record);
        if (options.validation == Validation::On)
            check(*document.record, bytes, document.form);
        return document;
    });
}

QByteArray WriteDocument(MODELKIT::IMKObject& record, Form form)
{
    return explained([&] {
        if (record.GetValidate() && !record.HasData())
            throw IncompleteDefinitionException(
                QStringLiteral("%1 holds no data.").arg(record.GetObjectName()));
        QByteArray bytes = encodeUnchecked(record, form);
        if (bytes.isEmpty())
            throw DocumentError(MODELKIT::IMKObject::GetLastFailure());
        return bytes;
    });
}

} // namespace ROUTERDOCUMENTS
