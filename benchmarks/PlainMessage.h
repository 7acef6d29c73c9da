// SPDX-License-Identifier: MIT
// What an application would write by hand instead of using the library: plain structs, and loops over
// the streams of Qt or over memory. They hold the same values in the same forms, without setters,
// flags, validation or explained failures.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QDataStream>
#include <QtCore/QIODevice>
#include <QtCore/QString>
#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>

#include <variant>
#include <vector>

namespace benchmarks {

struct PlainState
{
    int state = -1;
    QString client;
    bool operator==(const PlainState& o) const { return state == o.state && client == o.client; }
};

template <int tag>
struct PlainSuccess
{
    bool success = false;
    bool operator==(const PlainSuccess& o) const { return success == o.success; }
};

template <int tag>
struct PlainPort
{
    unsigned int port = 0;
    bool operator==(const PlainPort& o) const { return port == o.port; }
};

struct PlainServer
{
    QString address;
    unsigned int port = 0;
    bool operator==(const PlainServer& o) const { return address == o.address && port == o.port; }
};

struct PlainParams
{
    double frequency = 0;
    double demodulation = 0;
    double bandwidth = 0;
    double span = 0;
    bool operator==(const PlainParams& o) const
    {
        return frequency == o.frequency && demodulation == o.demodulation && bandwidth == o.bandwidth
               && span == o.span;
    }
};

using PlainFragment = std::variant<PlainState, PlainSuccess<1>, PlainSuccess<2>, PlainPort<3>, PlainServer,
                                   PlainPort<5>, PlainParams>;

struct PlainMessage
{
    int type = -1;
    unsigned int id = 0;
    std::vector<PlainFragment> fragments;
    bool operator==(const PlainMessage& o) const
    {
        return type == o.type && id == o.id && fragments == o.fragments;
    }
};

PlainMessage plainMessage(int fragments);

QByteArray plainXml(const PlainMessage& message);
QString plainXmlString(const PlainMessage& message);
PlainMessage readPlainXml(const QByteArray& xml);

// Whole documents: indented, with a declaration.
QString plainDocument(const PlainMessage& message);
QByteArray plainDocumentBytes(const PlainMessage& message);
PlainMessage readPlainDocument(const QString& xml);

// With QDataStream; seeks back to write the lengths.
QByteArray plainStream(const PlainMessage& message);
PlainMessage readPlainStream(const QByteArray& frame);

// Through a pointer into memory: the minimum of work.
QByteArray encode(const PlainMessage& message);
PlainMessage decode(const QByteArray& frame);

} // namespace benchmarks
