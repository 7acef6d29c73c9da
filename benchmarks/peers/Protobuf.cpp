// SPDX-License-Identifier: MIT
// Protocol Buffers, in their own binary form.

#include "Peer.h"
#ifdef HAVE_QT_NETWORK
    #include "benchmarks/SocketPair.h"

    #include <QtCore/QtEndian>
#endif

#include "message.pb.h"

#include <google/protobuf/util/message_differencer.h>

namespace benchmarks {

namespace {

using router_protobuf::Document;

struct Sink
{
    router_protobuf::Fragment& fragment;

    void mastershipState(const std::string& client)
    {
        auto& state = *fragment.mutable_mastership_state();
        state.set_state(router_protobuf::MastershipState::MASTER_PRESENT);
        state.set_master_client_id(client);
    }
    void acquireMastership(bool success) { fragment.mutable_acquire_mastership()->set_success(success); }
    void releaseMastership(bool success) { fragment.mutable_release_mastership()->set_success(success); }
    void ostraInterfacePort(unsigned int port) { fragment.mutable_ostra_interface_port()->set_port(port); }
    void connectServer(const std::string& address, unsigned int port)
    {
        auto& server = *fragment.mutable_connect_server();
        server.set_address(address);
        server.set_port(port);
    }
    void routerServerPort(unsigned int port) { fragment.mutable_router_server_port()->set_port(port); }
    void params(double frequency, double demodulation, double bandwidth, double span)
    {
        auto& params = *fragment.mutable_params();
        params.set_frequency(frequency);
        params.set_demodulation_frequency(demodulation);
        params.set_bandwidth(bandwidth);
        params.set_panorama_span(span);
    }
};

void fill(Document& document, int fragments)
{
    auto& message = *document.mutable_message();
    message.set_type(router_protobuf::Message::REPLY);
    message.set_message_id(canonicalMessageId);
    for (int i = 0; i < fragments; ++i)
        fillFragment(i, Sink{*message.add_fragment()});
}

std::shared_ptr<Document> build(int fragments)
{
    auto document = std::make_shared<Document>();
    fill(*document, fragments);
    return document;
}

std::shared_ptr<std::string> write(const Document& document)
{
    return std::make_shared<std::string>(document.SerializeAsString());
}

std::shared_ptr<Document> read(const std::string& form)
{
    auto document = std::make_shared<Document>();
    require(document->ParseFromString(form));
    return document;
}

bool isCanonical(const std::string& form, int fragments)
{
    const auto document = read(form);
    return document->message().fragment_size() == fragments
           && google::protobuf::util::MessageDifferencer::Equals(*document, *build(fragments));
}

Prepare smallMessage()
{
    return [](int fragments) {
        require(isCanonical(*write(*build(fragments)), fragments));
        return [=] {
            Document document;
            fill(document, fragments);
            Document copy;
            require(copy.ParseFromString(document.SerializeAsString()));
            require(copy.message().fragment_size() == fragments);
            return std::shared_ptr<void>();
        };
    };
}

#ifdef HAVE_QT_NETWORK
// A length in front of each message.
class Link : public Contact
{
public:
    explicit Link(QLocalSocket& socket) : m_socket(socket), m_message(build(1))
    {
        QObject::connect(&socket, &QIODevice::readyRead, &socket, [this] { readArrived(); });
    }

    void send() override
    {
        std::string bytes(lengthSize, '\0');
        require(m_message->AppendToString(&bytes));
        qToBigEndian(static_cast<quint32>(bytes.size() - lengthSize), bytes.data());
        require(m_socket.write(bytes.data(), static_cast<qint64>(bytes.size()))
                == static_cast<qint64>(bytes.size()));
    }

private:
    void readArrived()
    {
        m_arrived += m_socket.readAll();
        int begin = 0;
        while (m_arrived.size() - begin >= lengthSize) {
            const auto length = static_cast<int>(qFromBigEndian<quint32>(m_arrived.constData() + begin));
            if (m_arrived.size() - begin - lengthSize < length)
                break;
            Document document;
            require(document.ParseFromArray(m_arrived.constData() + begin + lengthSize, length));
            require(document.message().fragment_size() == 1);
            begin += lengthSize + length;
            received();
        }
        m_arrived.remove(0, begin);
    }

    static constexpr int lengthSize = 4;
    QLocalSocket& m_socket;
    const std::shared_ptr<const Document> m_message;
    QByteArray m_arrived;
};
#endif

} // namespace

void addProtobuf()
{
    const Peer<Document> peer{"protobuf", build, write, read, isCanonical};
    const auto form = [](int fragments) { return *write(*build(fragments)); };
    addTime("build", peer.name, building(peer));
    addTime("GetBinary", peer.name, writing(peer));
    addTime("SetBinary", peer.name, reading(peer, form));
    addTime("copy", peer.name, copying(peer, [](Document& copy) {
                copy.mutable_message()->set_message_id(canonicalMessageId + 1);
            }));
    addTime("message in binary", peer.name, smallMessage(), {1});
#ifdef HAVE_QT_NETWORK
    const MakeEnd makeLink = [](QLocalSocket& socket) { return std::make_unique<Link>(socket); };
    addTime(binaryThroughSockets, peer.name, streaming(makeLink), {1000});
    addTime(thereAndBack, peer.name, answering(makeLink), {1});
#endif
    addMemory("built document", peer.name, building(peer));
    addMemory("read document", peer.name, reading(peer, form));
}

} // namespace benchmarks
