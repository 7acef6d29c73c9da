// The whole-object binary form, plain and compressed.
//
// Plain: the object's binary frame with the low 32 bits of its type code as id. Compressed: the
// marker below, the number of bytes that follow, and the plain form in big-endian byte order as
// `qCompress` packs it. Reading tells them apart by the first word.

#include "modelkit/IMKObject.h"

#include <QtCore/QDataStream>
#include <QtCore/QFile>
#include <QtCore/QIODevice>

#include <algorithm>

namespace MODELKIT {

namespace {

constexpr int compressedMarker = 0x4D4B5A31;

int frameId(long long typeCode) { return static_cast<int>(static_cast<unsigned int>(typeCode)); }

} // namespace

void IMKObject::GetBinaryRepresentation(QDataStream& stream) const
{
    GetBinary(stream, frameId(m_typeCode), true);
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
    {
        QDataStream plainStream(&plain, QIODevice::WriteOnly);
        GetBinaryRepresentation(plainStream);
    }
    stream << compressedMarker << qCompress(plain, std::clamp(level, -1, 9));
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
    QDataStream stream(bytes);
    return SetBinaryRepresentation(stream);
}

bool IMKObject::SetBinaryRepresentation(QDataStream& stream)
{
    int id = 0;
    stream >> id;
    if (stream.status() != QDataStream::Ok)
        return false;
    if (id == compressedMarker) {
        QByteArray packed;
        stream >> packed;
        const QByteArray plain = qUncompress(packed);
        QDataStream plainStream(plain);
        int plainId = 0;
        plainStream >> plainId;
        plainStream.device()->seek(0);
        return plainId != compressedMarker && SetBinaryRepresentation(plainStream);
    }
    int length = 0;
    stream >> length;
    if (stream.status() != QDataStream::Ok || id != frameId(m_typeCode))
        return false;
    Reset();
    SetBinary(stream, length);
    return true;
}

bool IMKObject::LoadBinary(QFile* file)
{
    if (!file)
        return false;
    const bool wasOpen = file->isOpen();
    if (!wasOpen && !file->open(QIODevice::ReadOnly))
        return false;
    QByteArray bytes = file->readAll();
    const bool complete = file->error() == QFileDevice::NoError;
    if (!wasOpen)
        file->close();
    return complete && SetBinaryRepresentation(bytes);
}

} // namespace MODELKIT
