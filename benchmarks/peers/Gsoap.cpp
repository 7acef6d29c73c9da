// SPDX-License-Identifier: MIT
// The structs that soapcpp2 generates from router.gsoap, as XML without an envelope.

#include "Peer.h"

#include "router_soapH.h"

#include <sstream>

// Names have no prefixes. The runtime library looks for this table.
[[gnu::visibility("default")]] struct Namespace namespaces[] = {{nullptr, nullptr, nullptr, nullptr}};

namespace benchmarks {

namespace {

using Document = PelLu300RouterInterfaceXml;

// All memory of a document belongs to a context. Contexts for reading and writing are reused, as in an
// application, because setting one up costs more than a small message.
using Context = std::shared_ptr<soap>;

Context newContext(soap_mode mode = SOAP_XML_TREE)
{
    const Context context(soap_new1(mode), soap_free);
    context->double_format = "%.2f";
    return context;
}

// A context holds the memory of one document at a time.
std::shared_ptr<Document> newDocument(const Context& context)
{
    return {soap_new_PelLu300RouterInterfaceXml(context.get()), [context](Document*) {
                soap_destroy(context.get());
                soap_end(context.get());
            }};
}

struct Sink
{
    soap* context;
    Fragment& fragment;

    template <class T>
    T* make(T value)
    {
        return new (soap_malloc(context, sizeof(T))) T(value);
    }
    std::string* make(const std::string& value)
    {
        std::string* text = soap_new_std__string(context);
        *text = value;
        return text;
    }
    Outcome* outcome(bool success) { return soap_new_set_Outcome(context, make(success)); }
    PortPayload* port(unsigned int port) { return soap_new_set_PortPayload(context, make(port)); }

    void mastershipState(const std::string& client)
    {
        fragment.MastershipState =
            soap_new_set_MastershipState(context, make(MasterState::MasterPresent), make(client));
    }
    void acquireMastership(bool success) { fragment.AcquireMastership = outcome(success); }
    void releaseMastership(bool success) { fragment.ReleaseMastership = outcome(success); }
    void ostraInterfacePort(unsigned int number) { fragment.OstraInterfacePort = port(number); }
    void connectServer(const std::string& address, unsigned int number)
    {
        fragment.PelVtConnectServer = soap_new_set_ConnectServer(context, make(address), make(number));
    }
    void routerServerPort(unsigned int number) { fragment.RouterVtServerPort = port(number); }
    void params(double frequency, double demodulation, double bandwidth, double span)
    {
        fragment.DF_USCOREParams =
            soap_new_set_Params(context, make(frequency), make(demodulation), make(bandwidth), make(span));
    }
};

std::shared_ptr<Document> build(int fragments)
{
    const Context context = newContext();
    auto document = newDocument(context);
    document->PelLu300RouterMessage = soap_new_Message(context.get());
    auto& message = *document->PelLu300RouterMessage;
    message.Fragment.resize(static_cast<std::size_t>(fragments));
    for (int i = 0; i < fragments; ++i)
        fillFragment(i, Sink{context.get(), message.Fragment[static_cast<std::size_t>(i)]});
    Sink values{context.get(), message.Fragment.front()};
    message.Type = values.make(MessageType::Reply);
    message.MessageID = values.make(canonicalMessageId);
    return document;
}

template <soap_mode mode>
std::shared_ptr<std::string> write(const Document& document)
{
    static const Context context = newContext(mode);
    std::ostringstream output;
    context->os = &output;
    require(soap_write_PelLu300RouterInterfaceXml(context.get(), &document) == SOAP_OK);
    return std::make_shared<std::string>(output.str());
}

std::shared_ptr<Document> read(const std::string& xml)
{
    static const Context context = newContext();
    std::istringstream input(xml);
    context->is = &input;
    auto document = newDocument(context);
    require(soap_read_PelLu300RouterInterfaceXml(context.get(), document.get()) == SOAP_OK);
    return document;
}

} // namespace

void addGsoap()
{
    const Peer<Document> peer{"gSOAP", build, write<SOAP_XML_TREE>, read, isCanonicalXml};
    const Peer<Document> indenting{"gSOAP", build, write<SOAP_XML_TREE | SOAP_XML_INDENT>, read,
                                   isCanonicalXml};
    addTime("SaveXml without the disk", peer.name, writing(indenting));
    addTime("LoadXml without the disk", peer.name, reading(peer, canonicalXmlDocument));
    addTime("GetXml", peer.name, writing(peer));
    addTime("ProcessXml", peer.name, reading(peer, canonicalXml));
}

} // namespace benchmarks
