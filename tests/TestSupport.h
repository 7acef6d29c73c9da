// SPDX-License-Identifier: MIT
// What most tests need: the record classes, both written forms of a record, checking of exceptions, and
// limits. This header is compiled once for all tests.
#pragma once

#include "PayloadRecords.h"

#include "modelkit/Limits.h"
#include "routerinterface/AcquireMastership.h"
#include "routerinterface/DF_Params.h"
#include "routerinterface/Fragment.h"
#include "routerinterface/MastershipState.h"
#include "routerinterface/OstraInterfacePort.h"
#include "routerinterface/PelLu300RouterInterfaceXml.h"
#include "routerinterface/PelLu300RouterMessage.h"
#include "routerinterface/PelVtConnectServer.h"
#include "routerinterface/ReleaseMastership.h"
#include "routerinterface/RouterVtServerPort.h"

#include <QtCore/QBuffer>
#include <QtCore/QByteArray>
#include <QtCore/QDataStream>
#include <QtCore/QString>
#include <QtCore/QVector>
#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <ostream>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>

// GoogleTest prints Qt strings and byte arrays through these.
inline void PrintTo(const QString& text, std::ostream* out)
{
    if (text.isNull())
        *out << "null QString";
    else
        *out << '"' << text.toUtf8().constData() << '"';
}

inline void PrintTo(const QByteArray& bytes, std::ostream* out)
{
    if (bytes.isNull())
        *out << "null QByteArray";
    else
        *out << '"' << bytes.toHex(' ').constData() << '"';
}

namespace testing_support {

using namespace PELLU300ROUTERINTERFACEXML;

#define RECORD_TYPE(Name, value, tag, id) Name,
using AllRecords = ::testing::Types<PAYLOAD_RECORDS(RECORD_TYPE) Fragment, PelLu300RouterMessage,
                                    PelLu300RouterInterfaceXml>;
#undef RECORD_TYPE

// Where a file or folder of the project is, given its path from the project's top folder.
QString projectPath(const char* path);

// The records that the tests have content of, with its written forms.
using RecordsWithSamples = ::testing::Types<OstraInterfacePort, RouterVtServerPort, PelVtConnectServer,
                                            MastershipState, AcquireMastership, ReleaseMastership, DF_Params,
                                            Fragment, PelLu300RouterMessage, PelLu300RouterInterfaceXml>;

// The two records with the member Success.
using SuccessRecords = ::testing::Types<AcquireMastership, ReleaseMastership>;

// Names the tests of a typed test suite after their records.
struct RecordName
{
    template <class R>
    static std::string GetName(int)
    {
        return R().GetObjectName().toStdString();
    }
};

// A QString from UTF-8.
inline QString text(const char* utf8) { return QString::fromUtf8(utf8); }

// An empty text that is not null.
inline QString empty() { return QString(QLatin1String("")); }

// The record as an XML element without declaration and without any added white space.
inline QString xmlOf(const MODELKIT::IMKObject& record)
{
    QString xml;
    QXmlStreamWriter writer(&xml);
    record.GetXml(writer);
    return xml;
}

// Reads an element into the record as a caller of ProcessXml does.
inline void readXml(MODELKIT::IMKObject& record, const QString& xml)
{
    QXmlStreamReader reader(xml);
    ASSERT_TRUE(reader.readNextStartElement());
    record.ProcessXml(reader);
}

// The record's frame, big-endian, without id.
inline QByteArray frameOf(const MODELKIT::IMKObject& record)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    record.GetBinary(stream, 0, false);
    return bytes;
}

// Bytes from hexadecimal digits; spaces are ignored.
inline QByteArray bytes(const char* hex) { return QByteArray::fromHex(hex); }

// The whole-object form of an OstraInterfacePort with port 5000.
inline QByteArray portForm() { return bytes("7F012EB8 00000010 1F980517 00000008 0000000000001388"); }

// Reads a frame that begins with its record length, as a caller of SetBinary does.
inline void readFrame(MODELKIT::IMKObject& record, const QByteArray& frame)
{
    QDataStream stream(frame);
    int length = 0;
    stream >> length;
    record.SetBinary(stream, length);
}

// A fragment that a test recognises by its port, and the ports of all fragments of a message.
inline Fragment withPort(unsigned int port)
{
    Fragment fragment;
    fragment.GetOstraInterfacePort().SetPort(port);
    return fragment;
}
inline QVector<unsigned int> portsOf(const PelLu300RouterMessage& message)
{
    QVector<unsigned int> ports;
    for (const Fragment& fragment : message.GetFragment())
        ports.append(fragment.GetOstraInterfacePort().GetPort());
    return ports;
}

// A record whose protected operations are public.
template <class R>
struct Opened : R
{
    using R::GetTextValue;
    using R::m_typeCode;
    using R::ProcessXmlStartElement;
    using R::SetObjectName;

    Opened() = default;
    explicit Opened(const R& source) : R(source) {}

    using R::operator=;
};

// Whether the two classes can be compared with ==.
template <class Left, class Right, class = void>
struct AreComparable : std::false_type
{
};
template <class Left, class Right>
struct AreComparable<Left, Right,
                     std::void_t<decltype(std::declval<const Left&>() == std::declval<const Right&>())>>
    : std::true_type
{
};

// The current limits with a change, for a MODELKIT::LimitsInScope.
template <class Change>
MODELKIT::Limits limitsWith(const Change& change)
{
    MODELKIT::Limits limits = MODELKIT::Limits::Get();
    change(limits);
    return limits;
}

// Expects that the statement throws an Exception, not a derived class, and returns it.
template <class Exception, class Statement>
Exception thrownBy(Statement&& statement)
{
    try {
        statement();
    } catch (const ModelKitException& exception) {
        EXPECT_TRUE(typeid(exception) == typeid(Exception)) << typeid(exception).name();
        if (const auto* thrown = dynamic_cast<const Exception*>(&exception))
            return *thrown;
        return Exception(exception.GetText());
    }
    ADD_FAILURE() << "nothing was thrown";
    return Exception(QString());
}

// Expects that the statement throws an Exception, not a derived class, with exactly that text, and returns
// it.
template <class Exception, class Statement>
Exception expectThrow(Statement&& statement, const QString& text)
{
    Exception exception = thrownBy<Exception>(statement);
    EXPECT_EQ(exception.GetText(), text);
    EXPECT_EQ(QString::fromUtf8(exception.what()), text);
    return exception;
}

} // namespace testing_support
