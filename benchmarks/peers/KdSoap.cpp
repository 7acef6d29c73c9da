// SPDX-License-Identifier: MIT
// A value tree of KDSoap, written as XML. KDSoap can only read XML that is the answer of a server, so there
// is no benchmark of reading.

#include "Peer.h"

#include <KDSoapClient/KDSoapValue.h>

namespace benchmarks {

namespace {

QString text(const std::string& value) { return QString::fromStdString(value); }

struct Sink
{
    KDSoapValueList& payload;

    KDSoapValueList& record(const QString& name)
    {
        payload.append(KDSoapValue(name, KDSoapValueList()));
        return payload.last().childValues();
    }

    void mastershipState(const std::string& client)
    {
        auto& state = record(QStringLiteral("MastershipState"));
        state.addArgument(QStringLiteral("State"), QStringLiteral("MasterPresent"));
        state.addArgument(QStringLiteral("MasterClientID"), text(client));
    }
    void acquireMastership(bool success)
    {
        record(QStringLiteral("AcquireMastership")).addArgument(QStringLiteral("Success"), success);
    }
    void releaseMastership(bool success)
    {
        record(QStringLiteral("ReleaseMastership")).addArgument(QStringLiteral("Success"), success);
    }
    void ostraInterfacePort(unsigned int port)
    {
        record(QStringLiteral("OstraInterfacePort")).addArgument(QStringLiteral("Port"), port);
    }
    void connectServer(const std::string& address, unsigned int port)
    {
        auto& server = record(QStringLiteral("PelVtConnectServer"));
        server.addArgument(QStringLiteral("Address"), text(address));
        server.addArgument(QStringLiteral("Port"), port);
    }
    void routerServerPort(unsigned int port)
    {
        record(QStringLiteral("RouterVtServerPort")).addArgument(QStringLiteral("Port"), port);
    }
    void params(double frequency, double demodulation, double bandwidth, double span)
    {
        auto& params = record(QStringLiteral("DF_Params"));
        params.addArgument(QStringLiteral("Frequency"), frequency);
        params.addArgument(QStringLiteral("DemodulationFrequency"), demodulation);
        params.addArgument(QStringLiteral("Bandwidth"), bandwidth);
        params.addArgument(QStringLiteral("PanoramaSpan"), span);
    }
};

std::shared_ptr<KDSoapValue> build(int fragments)
{
    KDSoapValueList message;
    message.addArgument(QStringLiteral("Type"), QStringLiteral("Reply"));
    message.addArgument(QStringLiteral("MessageID"), canonicalMessageId);
    for (int i = 0; i < fragments; ++i) {
        KDSoapValueList payload;
        fillFragment(i, Sink{payload});
        message.append(KDSoapValue(QStringLiteral("Fragment"), payload));
    }
    KDSoapValueList document;
    document.append(KDSoapValue(QStringLiteral("PelLu300RouterMessage"), message));
    return std::make_shared<KDSoapValue>(QStringLiteral("PelLu300RouterInterfaceXml"), document);
}

std::shared_ptr<std::string> write(const KDSoapValue& document)
{
    return std::make_shared<std::string>(document.toXml().toStdString());
}

} // namespace

void addKdSoap()
{
    const Peer<KDSoapValue> peer{"KDSoap", build, write, nullptr, isCanonicalXml};
    addTime("GetXml", peer.name, writing(peer));
}

} // namespace benchmarks
