// The whole-object binary form, plain and compressed.
//
// Plain: the object's binary frame with the low 32 bits of its type code as id, that is
//
//     id, length, content of that length
//
// Compressed: the plain form in big-endian byte order, cut into pieces that are compressed one by one,
//
//     marker, length, content of that length: { length of the piece, piece as qCompress makes it } ...
//
// Reading tells them apart by the first word. The pieces are what bounds inflating: `qUncompress`
// cannot be stopped, but what it can make of one piece is limited by the piece's length.

#include "modelkit/BinaryForm.h"
#include "modelkit/ClassNames.h"
#include "modelkit/DocumentContext.h"
#include "modelkit/WholeDocument.h"

#include <QtCore/QBuffer>
#include <QtCore/QDataStream>
#include <QtCore/QFile>
#include <QtCore/QFileDevice>
#include <QtCore/QHash>
#include <QtCore/QIODevice>
#include <QtCore/QMutex>
#include <QtCore/QtEndian>

#include <algorithm>
#include <new>

namespace MODELKIT {

namespace {

constexpr int compressedMarker = 0x4D4B5A31;
constexpr int pieceSize = 64 << 10;
// zlib makes no piece larger than this; see compressBound() in its documentation.
constexpr int maximalPackedPiece = pieceSize + (pieceSize >> 10) + 64;
constexpr int headerSize = 8;

int frameId(long long typeCode) { return static_cast<int>(static_cast<unsigned int>(typeCode)); }

QHash<int, QString>& classNames()
{
    static QHash<int, QString> names;
    return names;
}

QMutex& classNamesMutex()
{
    static QMutex mutex;
    return mutex;
}

int word(const char* bytes, QDataStream::ByteOrder order)
{
    return order == QDataStream::BigEndian ? qFromBigEndian<qint32>(bytes) : qFromLittleEndian<qint32>(bytes);
}

QByteArray compress(const QByteArray& plain, int level)
{
    QByteArray packed;
    QDataStream stream(&packed, QIODevice::WriteOnly);
    for (int begin = 0; begin < plain.size(); begin += pieceSize) {
        const QByteArray piece = qCompress(plain.mid(begin, pieceSize), std::clamp(level, -1, 9));
        // A level in range leaves one reason.
        if (piece.isEmpty())
            throw std::bad_alloc();
        stream << piece;
    }
    return packed;
}

// False, with the failure filled in, when the pieces are damaged or hold more than limit bytes.
bool inflate(const QByteArray& packed, qint64 limit, QByteArray& plain, Failure& failure)
{
    failure.kind = Failure::DamagedCompression;
    failure.text = QStringLiteral("The compressed form is damaged.");
    int position = 0;
    while (position < packed.size()) {
        failure.place.offset = headerSize + position;
        if (packed.size() - position < 4)
            return false;
        const int size = word(packed.constData() + position, QDataStream::BigEndian);
        position += 4;
        if (size <= 4 || size > maximalPackedPiece || size > packed.size() - position)
            return false;
        // The piece begins with its inflated size, for which memory is taken before inflating.
        const int inflatedSize = word(packed.constData() + position, QDataStream::BigEndian);
        if (inflatedSize <= 0 || inflatedSize > pieceSize)
            return false;
        if (plain.size() + inflatedSize > limit) {
            failure.kind = Failure::InflatedTooLarge;
            failure.text =
                QStringLiteral("The inflated form is larger than the limit of %1 bytes.").arg(limit);
            return false;
        }
        const QByteArray piece =
            qUncompress(reinterpret_cast<const uchar*>(packed.constData()) + position, size);
        if (piece.size() != inflatedSize)
            return false;
        plain += piece;
        position += size;
    }
    failure = Failure();
    return true;
}

// The first words of a form.
struct Header
{
    int id = 0;
    int length = 0;

    Header(const char* bytes, QDataStream::ByteOrder order)
        : id(word(bytes, order)), length(word(bytes + 4, order))
    {}
};

Failure notAForm(const QString& text)
{
    Failure failure;
    failure.kind = Failure::NotABinaryForm;
    failure.text = text;
    return failure;
}

Failure cutOff(qint64 bytes)
{
    Failure failure = notAForm(QStringLiteral("The binary form is cut off."));
    failure.place.offset = bytes;
    return failure;
}

// Whether the header can begin a form of the object; otherwise the failure says why not.
bool accepts(const Header& header, int id, const QString& name, Failure& failure)
{
    if (header.id != id && header.id != compressedMarker) {
        failure.kind = Failure::WrongClass;
        failure.text =
            QStringLiteral("The binary form holds %1, expected is %2.").arg(classNameOf(header.id), name);
    } else if (header.length < 0) {
        failure = notAForm(QStringLiteral("The binary form has a negative length."));
    } else if (header.length > Limits::Get().inputSize - headerSize) {
        failure = inputTooLarge(Limits::Get().inputSize);
    } else {
        return true;
    }
    failure.place.offset = 0;
    return false;
}

// Reads the content of a plain form into the object.
bool readPlain(DocumentOperation& operation, IMKObject& object, const QByteArray& content,
               QDataStream::ByteOrder order)
{
    DocumentContext context(DocumentContext::Purpose::Reading);
    context.SetBaseOffset(headerSize);
    try {
        object.Reset();
        QDataStream stream(content);
        stream.setByteOrder(order);
        object.SetBinary(stream, static_cast<int>(content.size()));
    } catch (ModelKitException& exception) {
        Place place = exception.GetPlace();
        if (place.offset >= 0)
            place.offset += headerSize;
        if (context.GetFailure().kind != Failure::None) {
            Failure failure = context.GetFailure();
            failure.place = place;
            return operation.Fail(failure);
        }
        operation.Refuse(exception, place);
        throw;
    }
    return true;
}

// Reads the form whose header has been accepted.
bool readForm(DocumentOperation& operation, IMKObject& object, int id, const Header& header,
              const QByteArray& content, QDataStream::ByteOrder order)
{
    if (header.id == id)
        return readPlain(operation, object, content, order);
    QByteArray plain;
    Failure failure;
    if (!inflate(content, Limits::Get().inflatedSize, plain, failure))
        return operation.Fail(failure);
    if (plain.size() < headerSize)
        return operation.Fail(cutOff(plain.size()));
    const Header inner(plain.constData(), QDataStream::BigEndian);
    if (inner.id == compressedMarker)
        return operation.Fail(notAForm(QStringLiteral("The compressed form holds another compressed form.")));
    if (!accepts(inner, id, object.GetObjectName(), failure))
        return operation.Fail(failure);
    if (inner.length > plain.size() - headerSize)
        return operation.Fail(cutOff(plain.size()));
    return readPlain(operation, object, QByteArray::fromRawData(plain.constData() + headerSize, inner.length),
                     QDataStream::BigEndian);
}

bool readBytes(DocumentOperation& operation, IMKObject& object, int id, const QByteArray& bytes)
{
    const qint64 limit = Limits::Get().inputSize;
    if (bytes.size() > limit)
        return operation.Fail(inputTooLarge(limit));
    if (bytes.size() < headerSize)
        return operation.Fail(cutOff(bytes.size()));
    const Header header(bytes.constData(), QDataStream::BigEndian);
    Failure failure;
    if (!accepts(header, id, object.GetObjectName(), failure))
        return operation.Fail(failure);
    if (header.length > bytes.size() - headerSize)
        return operation.Fail(cutOff(bytes.size()));
    return readForm(operation, object, id, header,
                    QByteArray::fromRawData(bytes.constData() + headerSize, header.length),
                    QDataStream::BigEndian);
}

// Reads exactly that many bytes, waiting for a device that cannot seek; memory grows with what comes.
bool readExactly(QDataStream& stream, int size, QByteArray& bytes)
{
    constexpr int step = 1 << 20;
    QIODevice* device = stream.device();
    while (bytes.size() < size) {
        const int have = static_cast<int>(bytes.size());
        bytes.resize(have + std::min(step, size - have));
        const int got =
            std::max(stream.readRawData(bytes.data() + have, static_cast<int>(bytes.size()) - have), 0);
        bytes.resize(have + got);
        if (bytes.size() == size)
            break;
        if (got == 0 && !(device && device->isSequential() && device->waitForReadyRead(-1)))
            return false;
        // That the rest was not there yet is no failure.
        stream.resetStatus();
    }
    return true;
}

// The name of the file on which the stream works, if it does.
QString fileOf(const QDataStream& stream)
{
    const auto* file = qobject_cast<const QFileDevice*>(stream.device());
    return file ? file->fileName() : QString();
}

// Notes the failure when the stream or its file has not taken what was written.
void requireWritten(DocumentOperation& operation, QDataStream& stream)
{
    auto* file = qobject_cast<QFileDevice*>(stream.device());
    const bool isFlushed = !file || file->flush();
    if (stream.device() && stream.status() == QDataStream::Ok && isFlushed)
        return;
    const QString reason = stream.device() ? stream.device()->errorString() : QStringLiteral("No device");
    operation.Fail(Failure::InputOutput,
                   QStringLiteral("The binary form cannot be written: %1.").arg(reason));
}

bool readStream(DocumentOperation& operation, IMKObject& object, int id, QDataStream& stream)
{
    QByteArray bytes;
    if (!readExactly(stream, headerSize, bytes))
        return operation.Fail(cutOff(bytes.size()));
    const Header header(bytes.constData(), stream.byteOrder());
    Failure failure;
    if (!accepts(header, id, object.GetObjectName(), failure))
        return operation.Fail(failure);
    QByteArray content;
    if (!readExactly(stream, header.length, content))
        return operation.Fail(cutOff(headerSize + content.size()));
    return readForm(operation, object, id, header, content, stream.byteOrder());
}

} // namespace

bool IsCompressedForm(const QByteArray& form)
{
    return form.size() >= headerSize
           && Header(form.constData(), QDataStream::BigEndian).id == compressedMarker;
}

bool InflateForm(const QByteArray& form, QByteArray& plain, Failure& failure)
{
    plain.clear();
    if (!IsCompressedForm(form)) {
        failure = notAForm(QStringLiteral("The bytes do not begin as a compressed form."));
        return false;
    }
    const Header header(form.constData(), QDataStream::BigEndian);
    if (!accepts(header, compressedMarker, QString(), failure))
        return false;
    const auto there = std::min<qint64>(header.length, form.size() - headerSize);
    const bool inflated =
        inflate(QByteArray::fromRawData(form.constData() + headerSize, static_cast<int>(there)),
                Limits::Get().inflatedSize, plain, failure);
    if (there == header.length)
        return inflated;
    failure = cutOff(form.size());
    return false;
}

bool registerClass(long long typeCode, const QString& name)
{
    const QMutexLocker lock(&classNamesMutex());
    classNames().insert(frameId(typeCode), name);
    return true;
}

QString classNameOf(int id)
{
    const QMutexLocker lock(&classNamesMutex());
    return classNames().value(
        id, QStringLiteral("class 0x%1").arg(static_cast<unsigned int>(id), 8, 16, QLatin1Char('0')));
}

void IMKObject::GetBinaryRepresentation(QDataStream& stream) const
{
    DocumentOperation operation(*this, fileOf(stream));
    try {
        GetBinary(stream, frameId(m_typeCode), true);
    } catch (ModelKitException& exception) {
        operation.Refuse(exception, exception.GetPlace());
        throw;
    }
    requireWritten(operation, stream);
}

QByteArray IMKObject::GetBinaryRepresentationAsQByteArray()
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    GetBinaryRepresentation(stream);
    return bytes;
}

void IMKObject::GetCompressedBinaryRepresentation(QDataStream& stream, int level) const
{
    QByteArray plain;
    QDataStream plainStream(&plain, QIODevice::WriteOnly);
    GetBinaryRepresentation(plainStream);
    if (plain.isEmpty())
        return;
    DocumentOperation operation(*this, fileOf(stream));
    stream << compressedMarker << compress(plain, level);
    requireWritten(operation, stream);
}

QByteArray IMKObject::GetCompressedBinaryRepresentationAsQByteArray(int level)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    GetCompressedBinaryRepresentation(stream, level);
    return bytes;
}

bool IMKObject::SetBinaryRepresentation(QByteArray& bytes)
{
    DocumentOperation operation(*this, QString());
    return readBytes(operation, *this, frameId(m_typeCode), bytes);
}

bool IMKObject::SetBinaryRepresentation(QDataStream& stream)
{
    DocumentOperation operation(*this, fileOf(stream));
    QIODevice* device = stream.device();
    const qint64 begin = device && !device->isSequential() ? device->pos() : -1;
    const bool read = readStream(operation, *this, frameId(m_typeCode), stream);
    // A form that was refused can be tried again by an object of another class.
    if (!read && begin >= 0)
        device->seek(begin);
    return read;
}

bool IMKObject::LoadBinary(QFile* file)
{
    DocumentOperation operation(*this, file ? file->fileName() : QString());
    if (!file)
        return operation.Fail(Failure::InputOutput, QStringLiteral("No file was given."));
    QByteArray bytes;
    Failure failure;
    if (!readFile(*file, bytes, failure))
        return operation.Fail(failure);
    return readBytes(operation, *this, frameId(m_typeCode), bytes);
}

} // namespace MODELKIT
