// SPDX-License-Identifier: MIT
// The operations on whole binary forms, plain and compressed.

#include "modelkit/ClassNames.h"
#include "modelkit/Compression.h"
#include "modelkit/Devices.h"
#include "modelkit/DocumentContext.h"
#include "modelkit/DocumentOperation.h"
#include "modelkit/FormHeader.h"
#include "modelkit/IMKObject.h"
#include "modelkit/Limits.h"
#include "modelkit/NotRepresentableException.h"
#include "modelkit/ReplaceFile.h"

#include <QtCore/QDataStream>
#include <QtCore/QFile>
#include <QtCore/QIODevice>

#include <utility>

namespace MODELKIT {

namespace {

// Reads one form into an object.
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

    // The same for the form inside a compressed one, whose size has a limit of its own.
    bool AdmitsInside(const FormHeader& header)
    {
        Failure failure;
        return header.BeginsFormOf(m_id, m_object.GetObjectName(), Limits::anySize, failure)
               || m_operation.Fail(failure);
    }

    // Reads the form whose header was admitted. Behind: the number of ignored bytes after the form.
    bool Read(const FormHeader& header, const QByteArray& content, qint64 behind)
    {
        return header.id == m_id ? ReadPlain(content, m_order, behind) : ReadCompressed(content, behind);
    }

    // Ending: why the device broke off after the bytes, if it did.
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
                // Another exception is already in flight.
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
            // When the lengths are wrong, what was reported may be about bytes that were never entries.
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

// Reads from the stream's device until the form has that many bytes. False, with the failure recorded, when
// they are not there.
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
        // Whoever began a transaction rolls it back.
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

// Goes back to the beginning, so that an object of another class can try to read a form that was refused.
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

// The object's form; a null byte array, with the failure recorded, when nothing may be written.
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

// The compressed form.
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

// Writes the form to the stream's device. For a null form the failure is already recorded.
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
