// SPDX-License-Identifier: MIT
// Messages on connections: channels beside a loop by hand, and the reader beside reading messages that were
// found by hand.

#include "CanonicalDocument.h"
#include "Operations.h"
#include "PlainMessage.h"
#include "Results.h"
#include "SocketPair.h"

#include "link/MessageChannel.h"
#include "link/MessageReader.h"

#include <QtCore/QtEndian>

#include <algorithm>
#include <vector>

namespace benchmarks {

namespace {

using ROUTERDOCUMENTS::Form;
using ROUTERLINK::MessageChannel;
using ROUTERLINK::MessageReader;

Document emptyDocument()
{
    Document document;
    document.SetValidate(true);
    return document;
}

class Channel : public Contact
{
public:
    Channel(QLocalSocket& socket, Form form)
        : m_message(canonicalDocument(1)), m_channel(socket, {form, ROUTERDOCUMENTS::Validation::On})
    {
        QObject::connect(&m_channel, &MessageChannel::UnexpectedReply, [this](const Document& document) {
            require(document.GetPelLu300RouterMessage().GetFragment().size() == 1);
            received();
        });
    }

    void send() override { require(m_channel.Send(m_message)); }

private:
    const Document m_message;
    MessageChannel m_channel;
};

MakeEnd channelIn(Form form)
{
    return [form](QLocalSocket& socket) { return std::make_unique<Channel>(socket, form); };
}

using Write = QByteArray (*)(const PlainMessage& message);
using Read = PlainMessage (*)(const QByteArray& form);

// A length in front of each form, and a transaction that waits for all of it.
class StreamLoop : public Contact
{
public:
    StreamLoop(QLocalSocket& socket, Write write, Read read)
        : m_message(plainMessage(1)), m_in(&socket), m_out(&socket), m_write(write), m_read(read)
    {
        QObject::connect(&socket, &QIODevice::readyRead, &socket, [this] { readArrived(); });
    }

    void send() override
    {
        m_out << m_write(m_message);
        require(m_out.status() == QDataStream::Ok);
    }

private:
    void readArrived()
    {
        while (true) {
            QByteArray form;
            m_in.startTransaction();
            m_in >> form;
            if (!m_in.commitTransaction())
                return;
            require(m_read(form).fragments.size() == 1);
            received();
        }
    }

    const PlainMessage m_message;
    // Of their own, because the first one fails whenever a message has not arrived whole.
    QDataStream m_in;
    QDataStream m_out;
    const Write m_write;
    const Read m_read;
};

MakeEnd loopWith(Write write, Read read)
{
    return [=](QLocalSocket& socket) { return std::make_unique<StreamLoop>(socket, write, read); };
}

QByteArray binaryForm()
{
    Document document = canonicalDocument(1);
    return document.GetBinaryRepresentationAsQByteArray();
}

// In one line.
QByteArray xmlForm()
{
    QByteArray xml = canonicalDocument(1).GetXmlBytes(MODELKIT::XmlLayout::Compact);
    return xml.endsWith('\n') ? xml : xml + '\n';
}

constexpr int block = 1 << 16;

// Reads messages that arrive in blocks as large as those of a channel.
Prepare readingWithReader(const QByteArray& message)
{
    return [=](int messages) {
        const QByteArray bytes = message.repeated(messages);
        return [=] {
            Document document = emptyDocument();
            MessageReader reader;
            int count = 0;
            for (int begin = 0; begin < bytes.size(); begin += block) {
                reader.AddData(bytes.constData() + begin, std::min<qint64>(block, bytes.size() - begin));
                while (reader.Next(document) == MessageReader::Ready)
                    ++count;
            }
            require(count == messages);
            return std::shared_ptr<void>();
        };
    };
}

// What a message takes without a reader: its end is known, and it only is read. Size(rest) finds the size of
// the first message.
template <class Size, class Take>
Prepare readingByHand(const QByteArray& message, const Size& size, const Take& take)
{
    return [=](int messages) {
        const QByteArray bytes = message.repeated(messages);
        return [=] {
            int begin = 0;
            for (int i = 0; i < messages; ++i) {
                const int length = size(bytes, begin);
                take(QByteArray::fromRawData(bytes.constData() + begin, length));
                begin += length;
            }
            require(begin == bytes.size());
            return std::shared_ptr<void>();
        };
    };
}

int binarySize(const QByteArray& bytes, int begin)
{
    return 8 + qFromBigEndian<qint32>(bytes.constData() + begin + 4);
}

int lineSize(const QByteArray& bytes, int begin)
{
    return static_cast<int>(bytes.indexOf('\n', begin)) + 1 - begin;
}

// Reads into the same document again and again.
template <class ReadInto>
auto intoDocument(const ReadInto& read)
{
    const auto document = std::make_shared<Document>(emptyDocument());
    return [=](const QByteArray& form) { require(read(*document, form)); };
}

constexpr int wordSize = 4;

} // namespace

void addLinks()
{
    const std::vector<int> many = {1000};
    const auto binaryLoop = loopWith(plainStream, readPlainStream);
    addTime(binaryThroughSockets, own, streaming(channelIn(Form::Binary)), many);
    addTime(binaryThroughSockets, "Qt loop", streaming(binaryLoop), many);
    addTime(xmlThroughSockets, own, streaming(channelIn(Form::Xml)), many);
    addTime(xmlThroughSockets, "Qt loop", streaming(loopWith(plainXml, readPlainXml)), many);
    addTime(thereAndBack, own, answering(channelIn(Form::Binary)), {1});
    addTime(thereAndBack, "Qt loop", answering(binaryLoop), {1});

    const char* const byHand = "records, found by hand";
    addTime("MessageReader, binary", own, readingWithReader(binaryForm()), many);
    addTime(
        "MessageReader, binary", byHand,
        readingByHand(binaryForm(), binarySize, intoDocument([](Document& document, const QByteArray& form) {
                          return document.SetBinaryRepresentation(form);
                      })),
        many);
    addTime("MessageReader, binary", "Qt loop",
            readingByHand(binaryForm(), binarySize,
                          [](const QByteArray& form) {
                              // The class id stands in front of the frame.
                              const auto frame = QByteArray::fromRawData(form.constData() + wordSize,
                                                                         form.size() - wordSize);
                              require(readPlainStream(frame).fragments.size() == 1);
                          }),
            many);
    addTime("MessageReader, XML", own, readingWithReader(xmlForm()), many);
    addTime("MessageReader, XML", byHand,
            readingByHand(xmlForm(), lineSize, intoDocument([](Document& document, const QByteArray& form) {
                              return document.SetXmlBytes(form);
                          })),
            many);
    addTime("MessageReader, XML", "Qt loop",
            readingByHand(xmlForm(), lineSize,
                          [](const QByteArray& form) { require(readPlainXml(form).fragments.size() == 1); }),
            many);
}

} // namespace benchmarks
