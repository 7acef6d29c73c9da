// SPDX-License-Identifier: MIT
// pugixml, bound to the plain structs by hand.

#include "Peer.h"

#include <pugixml.hpp>

#include <array>
#include <charconv>
#include <cstring>

namespace benchmarks {

namespace {

constexpr std::array<const char*, 3> typeNames{"Request", "Reply", "Event"};
constexpr std::array<const char*, 3> stateNames{"NoMasterPresent", "MasterPresent", "RouterIsMaster"};
constexpr std::array<const char*, 7> payloadNames{
    "MastershipState",    "AcquireMastership",  "ReleaseMastership", "OstraInterfacePort",
    "PelVtConnectServer", "RouterVtServerPort", "DF_Params"};

template <std::size_t size>
int indexOf(const std::array<const char*, size>& names, const char* name)
{
    for (std::size_t i = 0; i < size; ++i)
        if (std::strcmp(names[i], name) == 0)
            return static_cast<int>(i);
    return -1;
}

struct Filler
{
    pugi::xml_node node;

    template <class T>
    void child(const char* name, T value)
    {
        node.append_child(name).text().set(value);
    }
    void child(const char* name, const QString& value) { child(name, value.toUtf8().constData()); }
    void child(const char* name, double value)
    {
        char text[330];
        *std::to_chars(text, text + sizeof text - 1, value, std::chars_format::fixed, 2).ptr = '\0';
        child(name, static_cast<const char*>(text));
    }

    void operator()(const PlainState& payload)
    {
        child("State", stateNames[static_cast<std::size_t>(payload.state)]);
        child("MasterClientID", payload.client);
    }
    template <int tag>
    void operator()(const PlainSuccess<tag>& payload)
    {
        child("Success", payload.success);
    }
    template <int tag>
    void operator()(const PlainPort<tag>& payload)
    {
        child("Port", payload.port);
    }
    void operator()(const PlainServer& payload)
    {
        child("Address", payload.address);
        child("Port", payload.port);
    }
    void operator()(const PlainParams& payload)
    {
        child("Frequency", payload.frequency);
        child("DemodulationFrequency", payload.demodulation);
        child("Bandwidth", payload.bandwidth);
        child("PanoramaSpan", payload.span);
    }
};

struct Appender : pugi::xml_writer
{
    std::string text;

    void write(const void* data, size_t size) override { text.append(static_cast<const char*>(data), size); }
};

std::shared_ptr<std::string> write(const PlainMessage& message)
{
    pugi::xml_document document;
    pugi::xml_node root =
        document.append_child("PelLu300RouterInterfaceXml").append_child("PelLu300RouterMessage");
    Filler filler{root};
    filler.child("Type", typeNames[static_cast<std::size_t>(message.type)]);
    filler.child("MessageID", message.id);
    for (const PlainFragment& fragment : message.fragments)
        std::visit(Filler{root.append_child("Fragment").append_child(payloadNames[fragment.index()])},
                   fragment);
    Appender output;
    document.save(output, "", pugi::format_raw | pugi::format_no_declaration);
    return std::make_shared<std::string>(std::move(output.text));
}

PlainFragment readPayload(const pugi::xml_node& node)
{
    const auto child = [&](const char* name) { return node.child(name).text(); };
    const auto text = [&](const char* name) { return QString::fromUtf8(child(name).get()); };
    const auto success = [&] { return child("Success").as_bool(); };
    const auto port = [&] { return child("Port").as_uint(); };
    switch (indexOf(payloadNames, node.name())) {
    case 0:
        return PlainState{indexOf(stateNames, child("State").get()), text("MasterClientID")};
    case 1:
        return PlainSuccess<1>{success()};
    case 2:
        return PlainSuccess<2>{success()};
    case 3:
        return PlainPort<3>{port()};
    case 4:
        return PlainServer{text("Address"), port()};
    case 5:
        return PlainPort<5>{port()};
    default:
        return PlainParams{child("Frequency").as_double(), child("DemodulationFrequency").as_double(),
                           child("Bandwidth").as_double(), child("PanoramaSpan").as_double()};
    }
}

std::shared_ptr<PlainMessage> read(const std::string& xml)
{
    pugi::xml_document document;
    require(document.load_buffer(xml.data(), xml.size()));
    const pugi::xml_node root = document.first_child().first_child();
    auto message = std::make_shared<PlainMessage>();
    message->type = indexOf(typeNames, root.child("Type").text().get());
    message->id = root.child("MessageID").text().as_uint();
    for (const pugi::xml_node& fragment : root.children("Fragment"))
        message->fragments.push_back(readPayload(fragment.first_child()));
    return message;
}

std::shared_ptr<PlainMessage> build(int fragments)
{
    return std::make_shared<PlainMessage>(plainMessage(fragments));
}

bool isCanonical(const std::string& xml, int fragments) { return xml == canonicalXml(fragments); }

} // namespace

void addPugixml()
{
    const Peer<PlainMessage> peer{"pugixml", build, write, read, isCanonical};
    addTime("GetXml", peer.name, writing(peer));
    addTime("ProcessXml", peer.name, reading(peer, canonicalXml));
}

} // namespace benchmarks
