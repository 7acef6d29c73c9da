// SPDX-License-Identifier: MIT
// The classes that CodeSynthesis XSD generates from the schema (C++/Tree mapping). Reading and writing go
// through a DOM of Xerces-C++. Nothing is validated against the schema.

#include "Peer.h"

#include "router.hxx"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLFormatter.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace benchmarks {

namespace {

using router_xsd::Document;

struct Sink
{
    router_xsd::Fragment& fragment;

    static router_xsd::Outcome outcome(bool success)
    {
        router_xsd::Outcome outcome;
        outcome.Success(success);
        return outcome;
    }
    static router_xsd::PortPayload port(unsigned int number)
    {
        router_xsd::PortPayload payload;
        payload.Port(number);
        return payload;
    }

    void mastershipState(const std::string& client)
    {
        router_xsd::MastershipState state;
        state.State(router_xsd::MasterState::MasterPresent);
        state.MasterClientID(client);
        fragment.MastershipState(state);
    }
    void acquireMastership(bool success) { fragment.AcquireMastership(outcome(success)); }
    void releaseMastership(bool success) { fragment.ReleaseMastership(outcome(success)); }
    void ostraInterfacePort(unsigned int number) { fragment.OstraInterfacePort(port(number)); }
    void connectServer(const std::string& address, unsigned int number)
    {
        router_xsd::ConnectServer server;
        server.Address(address);
        server.Port(number);
        fragment.PelVtConnectServer(server);
    }
    void routerServerPort(unsigned int number) { fragment.RouterVtServerPort(port(number)); }
    void params(double frequency, double demodulation, double bandwidth, double span)
    {
        router_xsd::Params params;
        params.Frequency(frequency);
        params.DemodulationFrequency(demodulation);
        params.Bandwidth(bandwidth);
        params.PanoramaSpan(span);
        fragment.DF_Params(params);
    }
};

std::shared_ptr<Document> build(int fragments)
{
    auto message = std::make_unique<router_xsd::Message>();
    message->Type(router_xsd::MessageType::Reply);
    message->MessageID(canonicalMessageId);
    for (int i = 0; i < fragments; ++i) {
        auto fragment = std::make_unique<router_xsd::Fragment>();
        fillFragment(i, Sink{*fragment});
        message->Fragment().push_back(std::move(fragment));
    }
    auto document = std::make_shared<Document>();
    document->PelLu300RouterMessage(std::move(message));
    return document;
}

struct Appender : xercesc::XMLFormatTarget
{
    std::string text;

    void writeChars(const XMLByte* bytes, XMLSize_t count, xercesc::XMLFormatter*) override
    {
        text.append(reinterpret_cast<const char*>(bytes), count);
    }
};

std::shared_ptr<std::string> write(const Document& document)
{
    using xml_schema::flags;
    Appender output;
    router_xsd::PelLu300RouterInterfaceXml(output, document, {}, "UTF-8",
                                           flags::dont_initialize | flags::no_xml_declaration
                                               | flags::dont_pretty_print);
    return std::make_shared<std::string>(std::move(output.text));
}

std::shared_ptr<Document> read(const std::string& xml)
{
    using xml_schema::flags;
    xercesc::MemBufInputSource input(reinterpret_cast<const XMLByte*>(xml.data()), xml.size(), "message");
    return router_xsd::PelLu300RouterInterfaceXml(input, flags::dont_initialize | flags::dont_validate);
}

} // namespace

void addXsd()
{
    xercesc::XMLPlatformUtils::Initialize();
    const Peer<Document> peer{"CodeSynthesis XSD", build, write, read, isCanonicalXml};
    addTime("build", peer.name, building(peer));
    addTime("GetXml", peer.name, writing(peer));
    addTime("ProcessXml", peer.name, reading(peer, canonicalXml));
    addTime("copy", peer.name, copying(peer, [](Document& copy) {
                copy.PelLu300RouterMessage()->MessageID(canonicalMessageId + 1);
            }));
    addMemory("built document", peer.name, building(peer));
    addMemory("read document", peer.name, reading(peer, canonicalXml));
}

} // namespace benchmarks
