// SPDX-License-Identifier: MIT
// The records as contenders.

#include "CanonicalDocument.h"
#include "Operations.h"
#include "Suite.h"

#include "modelkit/LogSinks.h"
#include "modelkit/Logger.h"

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
    {"records", true, false}, {"records, no validation", false, false}, {"records, logger", true, true}};

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
        const auto document = canonicalDocument(fragments);
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

Prepare building()
{
    return [](int fragments) {
        return [=] { return std::make_shared<Document>(canonicalDocument(fragments)); };
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

Prepare smallMessage()
{
    return [](int fragments) {
        return [=] {
            const Document document = canonicalDocument(fragments);
            Document read;
            readFrame(read, frameOf(document));
            require(read.GetPelLu300RouterMessage().GetFragment().size() == fragments);
            return std::shared_ptr<void>();
        };
    };
}

Prepare smallXmlMessage()
{
    return [](int fragments) {
        return [=] {
            Document document = canonicalDocument(fragments);
            Document read;
            require(read.SetXmlString(document.GetXmlString(), false));
            require(read.GetPelLu300RouterMessage().GetFragment().size() == fragments);
            return std::shared_ptr<void>();
        };
    };
}

void readDocument(Document& document, const QString& xml) { require(document.SetXmlString(xml, false)); }
void readDocumentBytes(Document& document, const QByteArray& xml) { require(document.SetXmlBytes(xml)); }

} // namespace

void addRecords()
{
    const Setting& usual = settings[0];
    addTime("document to a string", "records", untilDestroyed([&usual](int fragments) -> Operation {
                const auto document = newDocument(usual, canonicalDocument(fragments));
                return [=] { return keep(document->GetXmlString()); };
            }),
            wholeSizes);
    addTime("document to bytes", "records", untilDestroyed(writing(usual, documentBytesOf)), wholeSizes);
    addTime("document from a string", "records", untilDestroyed(reading(usual, documentOf, readDocument)),
            wholeSizes);
    addTime("document from bytes", "records",
            untilDestroyed(reading(usual, documentBytesOf, readDocumentBytes)), wholeSizes);
    addTime("small message as an XML string", "records", smallXmlMessage(), {1});
    addTime("build", "records", building());
    for (const Setting& setting : settings) {
        addTime("XML write", setting.contender, writing(setting, xmlOf));
        addTime("XML write to a string", setting.contender, writing(setting, xmlStringOf));
        addTime("XML read", setting.contender, reading(setting, xmlOf, parseXml));
        addTime("binary write", setting.contender, writing(setting, frameOf));
        addTime("binary read", setting.contender, reading(setting, frameOf, readFrame));
    }
    addTime("copy", "records", copying(false));
    addTime("copy", "records, payloads touched", copying(true));
    addTime("compare", "records", comparing());
    addTime("small message", "records", smallMessage(), {1});
    addMemory("built document", "records", building());
    addMemory("read document", "records", reading(settings[0], frameOf, readFrame));
}

} // namespace benchmarks
