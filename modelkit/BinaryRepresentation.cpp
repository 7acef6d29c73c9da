// SPDX-License-Identifier: MIT
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
#include "modelkit/Devices.h"
#include "modelkit/DocumentContext.h"
#include "modelkit/DocumentOperation.h"
#include "modelkit/IMKObject.h"
#include "modelkit/NotRepresentableException.h"
#include "modelkit/ReplaceFile.h"

#include <QtCore/QDataStream>
#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtCore/QIODevice>
#include <QtCore/QMutex>
#include <QtCore/QtEndian>

#include <algorithm>
#include <new>
#include <utility>

namespace MODELKIT {

namespace {

constexpr int pieceSize = 64 << 10;
// zlib makes no piece larger than this; see compressBound() in its documentation.
constexpr int maximalPackedPiece = pieceSize + (pieceSize >> 10) + 64;

int frameIdOf(long long typeCode) { return static_cast<int>(static_cast<unsigned int>(typeCode)); }

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

// The first two words of a form.
struct FormHeader
{
    // In bytes.
    static constexpr int size = 8;
    // In the place of the id, where the form is compressed.
    static constexpr int compressedMarker = 0x4D4B5A31;

    int id = 0;
    int length = 0;

    // Bytes: at least as many as the header has.
    FormHeader(const char* bytes, QDataStream::ByteOrder order);

    // Whether a form of the class with that frame id begins like this, plain or compressed, and is not larger
    // than the limit. If not, the failure says why.
    bool BeginsFormOf(int frameId, const QString& className, qint64 limit, Failure& failure) const;
};

QByteArray compressInPieces(const QByteArray& plain, int level)
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
bool inflatePieces(const QByteArray& packed, qint64 limit, QByteArray& plain, Failure& failure)
{
    failure.kind = Failure::DamagedCompression;
    failure.text = QStringLiteral("The compressed form is damaged.");
    int position = 0;
    while (position < packed.size()) {
        failure.place.offset = FormHeader::size + position;
        if (packed.size() - position < 4)
            return false;
        const int size = qFromBigEndian<qint32>(packed.constData() + position);
        position += 4;
        if (size <= 4 || size > maximalPackedPiece || size > packed.size() - position)
            return false;
        // The piece begins with its inflated size, for which memory is taken before inflating.
        const int inflatedSize = qFromBigEndian<qint32>(packed.constData() + position);
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

FormHeader::FormHeader(const char* bytes, QDataStream::ByteOrder order)
    : id(word(bytes, order)), length(word(bytes + 4, order))
{}

bool FormHeader::BeginsFormOf(int frameId, const QString& className, qint64 limit, Failure& failure) const
{
    if (id != frameId && id != compressedMarker) {
        failure.kind = Failure::WrongClass;
        failure.text =
            QStringLiteral("The binary form holds %1, expected is %2.").arg(classNameOf(id), className);
    } else if (length < 0) {
        failure = notAForm(QStringLiteral("The binary form has a negative length."));
    } else if (length > limit - size) {
        failure = inputTooLarge(limit);
    } else {
        return true;
    }
    failure.place.offset = 0;
    return false;
}

// One form that is read into an object.
class FormReading
{
public:
    FormReading(DocumentOperation& operation, IMKObject& object, int id, QDataStream::ByteOrder order)
        : m_operation(operation), m_object(object), m_id(id), m_order(order), m_limits(Limits::Get())
    {}

    const Limits& GetLimits() const { return m_limits; }

    bool Admits(const FormHeader& header)
    {
        Failure failure;
        return header.BeginsFormOf(m_id, m_object.GetObjectName(), m_limits.inputSize, failure)
               || m_operation.Fail(failure);
    }

    // The same for the form inside of a compressed one, whose size has its own limit.
    bool AdmitsInside(const FormHeader& header)
    {
        Failure failure;
        return header.BeginsFormOf(m_id, m_object.GetObjectName(), Limits::anySize, failure)
               || m_operation.Fail(failure);
    }

    // Reads the form whose header has been admitted. Behind: the number of bytes behind it that are ignored.
    bool Read(const FormHeader& header, const QByteArray& content, qint64 behind)
    {
        return header.id == m_id ? ReadPlain(content, m_order, behind) : ReadCompressed(content, behind);
    }

    // Ending: why the device broke off behind the bytes, if it did.
    bool ReadBytes(const QByteArray& bytes, const Failure& ending = Failure())
    {
        const auto fallShort = [&] {
            return m_operation.Fail(ending.kind == Failure::None ? cutOff(bytes.size()) : ending);
        };
        if (bytes.size() > m_limits.inputSize)
            return m_operation.Fail(inputTooLarge(m_limits.inputSize));
        if (bytes.size() < FormHeader::size)
            return fallShort();
        const FormHeader header(bytes.constData(), m_order);
        if (!Admits(header))
            return false;
        const qint64 behind = bytes.size() - FormHeader::size - header.length;
        if (behind < 0)
            return fallShort();
        return Read(header, QByteArray::fromRawData(bytes.constData() + FormHeader::size, header.length),
                    behind);
    }

private:
    bool ReadCompressed(const QByteArray& content, qint64 behind)
    {
        QByteArray plain;
        Failure failure;
        if (!inflatePieces(content, m_limits.inflatedSize, plain, failure))
            return m_operation.Fail(failure);
        if (plain.size() < FormHeader::size)
            return m_operation.Fail(cutOff(plain.size()));
        const FormHeader inner(plain.constData(), QDataStream::BigEndian);
        if (inner.id == FormHeader::compressedMarker)
            return m_operation.Fail(
                notAForm(QStringLiteral("The compressed form holds another compressed form.")));
        if (!AdmitsInside(inner))
            return false;
        const qint64 behindInside = plain.size() - FormHeader::size - inner.length;
        if (behindInside < 0)
            return m_operation.Fail(cutOff(plain.size()));
        return ReadPlain(QByteArray::fromRawData(plain.constData() + FormHeader::size, inner.length),
                         QDataStream::BigEndian, behind + behindInside);
    }

    bool ReadPlain(const QByteArray& content, QDataStream::ByteOrder order, qint64 behind)
    {
        DocumentContext context(DocumentContext::Purpose::Reading);
        context.SetBaseOffset(FormHeader::size);
        bool isRead = false;
        try {
            isRead = ReadContent(context, content, order);
        } catch (...) {
            try {
                DeliverReport(context);
            } catch (...) {
                // The other exception is on its way already.
            }
            throw;
        }
        if (isRead && behind > 0 && context.IsReporting())
            context.Report(ReadingReport::BytesBehind,
                           (behind == 1 ? QStringLiteral("%1 byte behind the binary form was ignored.")
                                        : QStringLiteral("%1 bytes behind the binary form were ignored."))
                               .arg(behind),
                           content.size(), QString());
        DeliverReport(context);
        return isRead;
    }

    static void DeliverReport(DocumentContext& context)
    {
        context.DeliverReport([](qint64) { return Place(); });
    }

    bool ReadContent(DocumentContext& context, const QByteArray& content, QDataStream::ByteOrder order)
    {
        try {
            m_object.Reset();
            QDataStream stream(content);
            stream.setByteOrder(order);
            m_object.SetBinary(stream, static_cast<int>(content.size()));
            return true;
        } catch (ModelKitException& exception) {
            Place place = exception.GetPlace();
            if (place.offset >= 0)
                place.offset += FormHeader::size;
            if (context.GetFailure().kind != Failure::None) {
                context.DropReport();
                Failure failure = context.GetFailure();
                failure.place = place;
                return m_operation.Fail(failure);
            }
            // Where the lengths are wrong, what was noticed may have been none of the entries that were
            // meant.
            if (dynamic_cast<const BinaryParsingException*>(&exception))
                context.DropReport();
            m_operation.Refuse(exception, place);
            throw;
        }
    }

    DocumentOperation& m_operation;
    IMKObject& m_object;
    int m_id;
    QDataStream::ByteOrder m_order;
    Limits m_limits;
};

// Takes a form from the device of a stream until there are so many bytes of it; false, with the failure
// noted, when they are not there.
bool takeForm(DocumentOperation& operation, QDataStream& stream, Intake& intake, qint64 size,
              QByteArray& form)
{
    QIODevice* const device = stream.device();
    switch (intake.Take(size, form)) {
    case Intake::Whole:
        return true;
    case Intake::Late:
    case Intake::Quiet:
        putBack(*device, form);
        // A transaction of the stream's own is rolled back by who began it.
        if (device->isTransactionStarted())
            stream.setStatus(QDataStream::ReadPastEnd);
        return operation.Fail(
            Failure::NotWholeYet,
            QStringLiteral("Only %1 bytes of the binary form have arrived.").arg(form.size()));
    case Intake::Broken:
        stream.setStatus(QDataStream::ReadPastEnd);
        return operation.Fail(cannotRead(device, intake.GetReason()));
    case Intake::Ended:
        break;
    }
    stream.setStatus(QDataStream::ReadPastEnd);
    return operation.Fail(cutOff(form.size()));
}

bool readForm(DocumentOperation& operation, FormReading& reading, QDataStream& stream)
{
    QByteArray form;
    Intake intake(*stream.device(), reading.GetLimits().waitingTime);
    if (!takeForm(operation, stream, intake, FormHeader::size, form))
        return false;
    const FormHeader header(form.constData(), stream.byteOrder());
    if (!reading.Admits(header)) {
        putBack(*stream.device(), form);
        return false;
    }
    return takeForm(operation, stream, intake, FormHeader::size + qint64(header.length), form)
           && reading.Read(header,
                           QByteArray::fromRawData(form.constData() + FormHeader::size, header.length), 0);
}

// A form that was refused can be tried again by an object of another class.
void seekBack(QDataStream& stream, qint64 begin)
{
    if (begin >= 0 && !stream.device()->seek(begin))
        stream.setStatus(QDataStream::ReadCorruptData);
}

bool readStream(DocumentOperation& operation, IMKObject& object, int id, QDataStream& stream)
{
    QIODevice* const device = stream.device();
    if (!device || !device->isReadable())
        return operation.Fail(cannotRead(device, QStringLiteral("it is not open for reading")));
    FormReading reading(operation, object, id, stream.byteOrder());
    const qint64 begin = device->isSequential() ? -1 : device->pos();
    try {
        if (readForm(operation, reading, stream))
            return true;
    } catch (ModelKitException&) {
        throw;
    } catch (...) {
        seekBack(stream, begin);
        throw;
    }
    seekBack(stream, begin);
    return false;
}

// The object's form; a null byte array, with the failure noted, when nothing is to be written.
QByteArray encode(DocumentOperation& operation, const IMKObject& object, int id, const QDataStream& like)
{
    QByteArray form;
    try {
        const DocumentContext context(DocumentContext::Purpose::Writing);
        QDataStream stream(&form, QIODevice::WriteOnly);
        stream.setVersion(like.version());
        stream.setByteOrder(like.byteOrder());
        if (!object.GetBinary(stream, id, true)) {
            operation.Fail(nothingToWrite(object));
            return QByteArray();
        }
    } catch (const NotRepresentableException& exception) {
        operation.Fail(Failure::NotRepresentable, exception.GetText(), exception.GetPlace());
        return QByteArray();
    } catch (ModelKitException& exception) {
        operation.Refuse(exception, exception.GetPlace());
        throw;
    }
    return form;
}

// The same compressed.
QByteArray encodeCompressed(DocumentOperation& operation, const IMKObject& object, int id, int level,
                            QDataStream::ByteOrder order)
{
    QByteArray plain = encode(operation, object, id, QDataStream());
    if (plain.isNull())
        return plain;
    QByteArray form;
    QDataStream stream(&form, QIODevice::WriteOnly);
    stream.setByteOrder(order);
    stream << FormHeader::compressedMarker << compressInPieces(plain, level);
    return form;
}

// Hands a form to the stream's device. A null one has failed already.
void write(DocumentOperation& operation, QDataStream& stream, const QByteArray& form)
{
    if (form.isNull())
        return;
    const auto fail = [&operation](const QString& reason) {
        operation.Fail(cannotWrite(QStringLiteral("binary form"), reason));
    };
    QIODevice* const device = stream.device();
    if (!device)
        return fail(QStringLiteral("No device"));
    if (stream.status() != QDataStream::Ok)
        return fail(QStringLiteral("the stream has failed before"));
    QString reason = QStringLiteral("it is not open for writing");
    if (device->isWritable() && writeAll(*device, form, reason) && flush(*device, reason))
        return;
    stream.setStatus(QDataStream::WriteFailed);
    fail(reason);
}

bool save(DocumentOperation& operation, const QByteArray& form)
{
    Failure failure;
    return !form.isNull() && (ReplaceFile(operation.GetFile(), form, failure) || operation.Fail(failure));
}

} // namespace

bool IsCompressedForm(const QByteArray& form)
{
    return form.size() >= FormHeader::size
           && FormHeader(form.constData(), QDataStream::BigEndian).id == FormHeader::compressedMarker;
}

bool InflateForm(const QByteArray& form, QByteArray& plain, Failure& failure)
{
    plain.clear();
    if (!IsCompressedForm(form)) {
        failure = notAForm(QStringLiteral("The bytes do not begin as a compressed form."));
        return false;
    }
    const FormHeader header(form.constData(), QDataStream::BigEndian);
    if (!header.BeginsFormOf(FormHeader::compressedMarker, QString(), Limits::Get().inputSize, failure))
        return false;
    const auto there = std::min<qint64>(header.length, form.size() - FormHeader::size);
    const bool inflated =
        inflatePieces(QByteArray::fromRawData(form.constData() + FormHeader::size, static_cast<int>(there)),
                      Limits::Get().inflatedSize, plain, failure);
    if (there == header.length)
        return inflated;
    failure = cutOff(form.size());
    return false;
}

bool registerClass(long long typeCode, const QString& name)
{
    const QMutexLocker lock(&classNamesMutex());
    classNames().insert(frameIdOf(typeCode), name);
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
    DocumentOperation operation(*this, fileNameOf(stream.device()));
    write(operation, stream, encode(operation, *this, frameIdOf(m_typeCode), stream));
}

QByteArray IMKObject::GetBinaryRepresentationAsQByteArray()
{
    DocumentOperation operation(*this, QString());
    return encode(operation, *this, frameIdOf(m_typeCode), QDataStream());
}

void IMKObject::GetCompressedBinaryRepresentation(QDataStream& stream, int level) const
{
    DocumentOperation operation(*this, fileNameOf(stream.device()));
    write(operation, stream,
          encodeCompressed(operation, *this, frameIdOf(m_typeCode), level, stream.byteOrder()));
}

QByteArray IMKObject::GetCompressedBinaryRepresentationAsQByteArray(int level)
{
    DocumentOperation operation(*this, QString());
    return encodeCompressed(operation, *this, frameIdOf(m_typeCode), level, QDataStream::BigEndian);
}

bool IMKObject::SaveBinary(const QString& path) const
{
    DocumentOperation operation(*this, path);
    return save(operation, encode(operation, *this, frameIdOf(m_typeCode), QDataStream()));
}

bool IMKObject::SaveCompressed(const QString& path, int level) const
{
    DocumentOperation operation(*this, path);
    return save(operation,
                encodeCompressed(operation, *this, frameIdOf(m_typeCode), level, QDataStream::BigEndian));
}

bool IMKObject::SetBinaryRepresentation(QByteArray& bytes)
{
    return SetBinaryRepresentation(std::as_const(bytes));
}

bool IMKObject::SetBinaryRepresentation(const QByteArray& bytes)
{
    DocumentOperation operation(*this, QString());
    return FormReading(operation, *this, frameIdOf(m_typeCode), QDataStream::BigEndian).ReadBytes(bytes);
}

bool IMKObject::SetBinaryRepresentation(QDataStream& stream)
{
    DocumentOperation operation(*this, fileNameOf(stream.device()));
    return readStream(operation, *this, frameIdOf(m_typeCode), stream);
}

bool IMKObject::LoadBinary(const QString& path)
{
    QFile file(path);
    return LoadBinary(&file);
}

bool IMKObject::LoadBinary(QFile* file) { return LoadBinary(static_cast<QIODevice*>(file)); }
bool IMKObject::LoadBinary(std::nullptr_t) { return LoadBinary(static_cast<QIODevice*>(nullptr)); }

bool IMKObject::LoadBinary(QIODevice* device)
{
    DocumentOperation operation(*this, fileNameOf(device));
    if (!device)
        return operation.Fail(Failure::InputOutput, QStringLiteral("No file was given."));
    Input input;
    Failure failure;
    if (!readToEnd(*device, input, failure))
        return operation.Fail(failure);
    if (FormReading(operation, *this, frameIdOf(m_typeCode), QDataStream::BigEndian)
            .ReadBytes(input.bytes, input.ending))
        return true;
    if (operation.GetOwnFailure().kind == Failure::NotWholeYet)
        putBack(*device, input.bytes);
    return false;
}

} // namespace MODELKIT
