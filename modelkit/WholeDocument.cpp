// The operations on whole XML documents, and merging.

#include "modelkit/IMKObject.h"

#include <QtCore/QDataStream>
#include <QtCore/QFile>
#include <QtCore/QIODevice>
#include <QtCore/QSaveFile>
#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>

#include <typeinfo>

namespace MODELKIT {

namespace {

bool readDocument(IMKObject& object, QXmlStreamReader& reader)
{
    if (!reader.readNextStartElement() || reader.name() != object.GetObjectName())
        return false;
    object.Reset();
    object.ProcessXml(reader);
    while (!reader.atEnd())
        reader.readNext();
    return !reader.hasError();
}

void writeDocument(const IMKObject& object, QXmlStreamWriter& writer)
{
    writer.setAutoFormatting(true);
    writer.setAutoFormattingIndent(2);
    writer.writeStartDocument();
    object.GetXml(writer);
    writer.writeEndDocument();
}

} // namespace

bool IMKObject::SetXmlString(const QString& xml, bool check)
{
    QXmlStreamReader reader(xml);
    if (!readDocument(*this, reader))
        return false;
    if (check)
        Check();
    return true;
}

QString IMKObject::GetXmlString()
{
    QString xml;
    QXmlStreamWriter writer(&xml);
    writeDocument(*this, writer);
    return xml;
}

bool IMKObject::LoadXml(const QString& path)
{
    QFile file(path);
    return LoadXml(&file);
}

bool IMKObject::LoadXml(QFile* file)
{
    if (!file)
        return false;
    const bool wasOpen = file->isOpen();
    if (!wasOpen && !file->open(QIODevice::ReadOnly))
        return false;
    // Read to the end first: a half-read device must not keep the object half-filled with a
    // document that an I/O error cut off.
    const QByteArray bytes = file->readAll();
    const bool complete = file->error() == QFileDevice::NoError;
    if (!wasOpen)
        file->close();
    if (!complete)
        return false;
    QXmlStreamReader reader(bytes);
    return readDocument(*this, reader);
}

bool IMKObject::SaveXml(const QString& path) const
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QXmlStreamWriter writer(&file);
    writeDocument(*this, writer);
    return !writer.hasError() && file.commit();
}

bool IMKObject::MergeMKObject(const IMKObject& other)
{
    if (typeid(*this) != typeid(other))
        return false;
    // The binary form carries exactly what is set, and reading it merges. It is written without
    // validation: what the other object has set is to be taken over, whether it is complete or not.
    QByteArray frame;
    {
        const bool validate = other.GetValidate();
        other.SetValidate(false);
        QDataStream stream(&frame, QIODevice::WriteOnly);
        other.GetBinary(stream, 0, false);
        other.SetValidate(validate);
    }
    QDataStream stream(frame);
    int length = 0;
    stream >> length;
    SetBinary(stream, length);
    return true;
}

} // namespace MODELKIT
