// SPDX-License-Identifier: MIT
// The records as contenders.

#include "CanonicalDocument.h"
#include "Operations.h"
#include "Results.h"
#include "Suite.h"

#include "modelkit/LogSinks.h"
#include "modelkit/Logger.h"

#include <QtCore/QBuffer>

namespace benchmarks {

namespace {

// The settings of the documents.
struct Setting
{
    const char* contender;
    bool validate;
    bool hasLogger;
};

constexpr Setting settings[] = {
    {own, true, false}, {"records, no validation", false, false}, {"records, logger", true, true}};

std::shared_ptr<Document> newDocument(const Setting& setting, Document document = Document())
{
    auto result = std::make_shared<Document>(document);
    result->SetValidate(setting.validate);
    if (setting.hasLogger)
        result->SetLogger(std::make_shared<MODELKIT::Logger>(std::make_shared<MODELKIT::MemoryLogSink>()));
    return result;
}

template <class Result>
std::shared_ptr<void> keep(Result result)
{
    return std::make_shared<Result>(std::move(result));
}

// An operation that writes a document.
template <class Write>
Prepare writing(const Setting& setting, const Write& write)
{
    return [=](int fragments) {
        const auto document = newDocument(setting, canonicalDocument(fragments));
        return [=] { return keep(write(*document)); };
    };
}

// An operation that reads a document from the result of write().
template <class Write, class Read>
Prepare reading(const Setting& setting, const Write& write, const Read& read)
{
    return [=](int fragments) {
        auto document = canonicalDocument(fragments);
        const auto form = write(document);
        const auto logger = newDocument(setting)->GetLogger();
        const auto work = [=] {
            auto result = std::make_shared<Document>();
            result->SetValidate(setting.validate);
            result->SetLogger(logger);
            read(*result, form);
            return result;
        };
        require(*work() == document);
        return work;
    };
}

Prepare building(Document (*build)(int fragments))
{
    return [=](int fragments) {
        require(build(fragments) == canonicalDocument(fragments));
        return [=] { return std::make_shared<Document>(build(fragments)); };
    };
}

std::shared_ptr<Document> copyOf(const Document& document)
{
    auto copy = std::make_shared<Document>(document);
    // A copy shares everything until it is accessed.
    copy->GetPelLu300RouterMessage().GetFragment();
    return copy;
}

Prepare copying(bool touchPayloads)
{
    return [=](int fragments) {
        const auto document = newDocument(settings[0], canonicalDocument(fragments));
        require(*copyOf(*document) == *document);
        return [=] {
            auto copy = copyOf(*document);
            if (touchPayloads)
                for (auto& fragment : copy->GetPelLu300RouterMessage().GetFragment())
                    touchPayload(fragment);
            return copy;
        };
    };
}

Prepare comparing()
{
    return [](int fragments) {
        const auto document = newDocument(settings[0], canonicalDocument(fragments));
        const auto other = newDocument(settings[0], canonicalDocument(fragments));
        require(*document == *other);
        return
            [=] { return *document == *other ? std::shared_ptr<void>() : std::shared_ptr<void>(document); };
    };
}

Prepare passing(void (*pass)())
{
    return [=](int) {
        return [=] {
            pass();
            return std::shared_ptr<void>();
        };
    };
}

QString documentString(Document& document) { return document.GetXmlString(); }
void readDocument(Document& document, const QString& xml) { require(document.SetXmlString(xml, false)); }

void loadDocument(Document& document, const QByteArray& xml)
{
    QBuffer buffer;
    buffer.setData(xml);
    require(document.LoadXml(&buffer));
}

QByteArray formOf(Document& document) { return document.GetBinaryRepresentationAsQByteArray(); }
void readForm(Document& document, const QByteArray& form) { require(document.SetBinaryRepresentation(form)); }

} // namespace

void addRecords()
{
    const Setting& usual = settings[0];
    addTime("build", own, building(canonicalDocument));
    addTime("build", "records, copies appended", building(documentOfCopies));
    addTime("GetXmlString", own, writing(usual, documentString));
    addTime("GetXmlString", settings[1].contender, writing(settings[1], documentString));
    addTime("SetXmlString", own, reading(usual, documentString, readDocument));
    addTime("SetXmlString", settings[1].contender, reading(settings[1], documentString, readDocument));
    addTime("SaveXml without the disk", own, writing(usual, documentBytesOf));
    addTime("LoadXml without the disk", own, reading(usual, documentBytesOf, loadDocument));
    for (const Setting& setting : settings) {
        addTime("GetXml", setting.contender, writing(setting, xmlOf));
        addTime("GetXml to a string", setting.contender, writing(setting, xmlStringOf));
        addTime("ProcessXml", setting.contender, reading(setting, xmlOf, parseXml));
        addTime("GetBinary", setting.contender, writing(setting, frameOf));
        addTime("SetBinary", setting.contender, reading(setting, frameOf, readFrame));
    }
    addTime("GetBinaryRepresentation", own, writing(usual, formOf));
    addTime("SetBinaryRepresentation", own, reading(usual, formOf, readForm));
    addTime("message as XML", own, passing(passSmallXmlMessage), {1});
    addTime("message in binary", own, passing(passSmallMessage), {1});
    addTime("message in binary", "records, whole form", passing(passSmallForm), {1});
    addTime("copy", own, copying(false));
    addTime("copy", "records, payloads touched", copying(true));
    addTime("compare", own, comparing());
    addMemory("built document", own, building(canonicalDocument));
    addMemory("read document", own, reading(usual, frameOf, readFrame));
}

} // namespace benchmarks
