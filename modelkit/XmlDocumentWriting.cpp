// SPDX-License-Identifier: MIT
// The operations that write whole XML documents.

#include "modelkit/DocumentOperation.h"
#include "modelkit/IMKObject.h"
#include "modelkit/PlainXmlClasses.h"
#include "modelkit/PlainXmlWriter.h"
#include "modelkit/ReplaceFile.h"
#include "modelkit/Utf8.h"
#include "modelkit/XmlPath.h"

#include <QtCore/QIODevice>
#include <QtCore/QXmlStreamWriter>

#include <optional>
#include <utility>

namespace MODELKIT {

namespace {

// Finds the first character that XML cannot represent. The writer leaves it out and only sets an error flag,
// so this device notes how much was written before.
class ErrorLocator : public QIODevice
{
public:
    ErrorLocator() { open(QIODevice::WriteOnly); }

    void Watch(const QXmlStreamWriter& writer) { m_writer = &writer; }

    Place Find() const
    {
        const auto characters = QString::fromUtf8(m_bytes.left(m_sizeAtError)).size();
        return XmlPath(QString::fromUtf8(m_bytes)).Find(characters);
    }

protected:
    qint64 readData(char*, qint64) override { return -1; }

    qint64 writeData(const char* data, qint64 size) override
    {
        m_bytes.append(data, static_cast<int>(size));
        if (m_sizeAtError < 0 && m_writer && m_writer->hasError())
            m_sizeAtError = static_cast<int>(m_bytes.size());
        return size;
    }

private:
    const QXmlStreamWriter* m_writer = nullptr;
    QByteArray m_bytes;
    int m_sizeAtError = -1;
};

void writeDocument(const IMKObject& object, QXmlStreamWriter& writer, XmlLayout layout, Declare declare)
{
    // The writer does not know that its text will be encoded in UTF-8.
    if (declare == Declare::Encoding)
        writer.writeProcessingInstruction(QStringLiteral("xml"),
                                          QStringLiteral("version=\"1.0\" encoding=\"UTF-8\""));
    else
        writer.writeStartDocument();
    writer.setAutoFormatting(layout == XmlLayout::Indented);
    writer.setAutoFormattingIndent(2);
    object.GetXml(writer);
    writer.writeEndDocument();
}

// Writes a document with the stream writer. A null string when the operation failed.
QString writeByStream(DocumentOperation& operation, const IMKObject& object, XmlLayout layout,
                      Declare declare)
{
    QString xml;
    const QString unrepresentable = QStringLiteral("A text holds a character that XML cannot carry.");
    QXmlStreamWriter writer(&xml);
    writeDocument(object, writer, layout, declare);
    if (writer.hasError()) {
        ErrorLocator locator;
        QXmlStreamWriter second(&locator);
        locator.Watch(second);
        writeDocument(object, second, layout, declare);
        operation.Fail(Failure::NotRepresentable, unrepresentable, locator.Find());
        return QString();
    }
    const qint64 position = loneSurrogate(xml);
    if (position >= 0) {
        operation.Fail(Failure::NotRepresentable, unrepresentable, XmlPath(xml).Find(position));
        return QString();
    }
    // A reader reads a carriage return as a line break, unless it is written as a character reference.
    xml.replace(QLatin1Char('\r'), QLatin1String("&#13;"));
    return xml;
}

// Writes nearly all documents, in a fraction of the time that a stream writer takes. A null byte array for
// the others. With a drain, it is the last piece of the document.
QByteArray writePlainly(const IMKObject& object, XmlLayout layout, Declare declare,
                        PlainXmlWriter::Drain drain = nullptr)
{
    const PlainXmlClass* const known = plainXmlOf(object);
    if (!known)
        return QByteArray();
    PlainXmlWriter writer(layout, declare, PlainXmlWriter::largestDocument, std::move(drain));
    known->write(object, writer);
    return writer.takeDocument();
}

QString toText(const QByteArray& utf8) { return QString::fromUtf8(utf8); }
QByteArray toBytes(const QByteArray& utf8) { return utf8; }
QString toText(const QString& text) { return text; }
QByteArray toBytes(const QString& text) { return text.toUtf8(); }

// Runs write(), which tells whether it has written the object. False if nothing may be written.
template <class Write>
bool writeAsAllowed(DocumentOperation& operation, const IMKObject& object, const Write& write)
{
    try {
        if (!write())
            return false;
        if (!object.GetValidate() || object.HasData())
            return true;
    } catch (ModelKitException& exception) {
        operation.Refuse(exception, exception.GetPlace());
        throw;
    }
    return operation.Fail(nothingToWrite(object));
}

// The document as convert() gives it, from UTF-8 or from a string; null when the operation failed.
template <class Convert>
auto write(DocumentOperation& operation, const IMKObject& object, XmlLayout layout, Declare declare,
           const Convert& convert)
{
    using Written = decltype(convert(QString()));
    Written written;
    const bool isWritten = writeAsAllowed(operation, object, [&] {
        const QByteArray plain = writePlainly(object, layout, declare);
        written =
            plain.isNull() ? convert(writeByStream(operation, object, layout, declare)) : convert(plain);
        return !written.isNull();
    });
    return isWritten ? written : Written();
}

QString writeText(DocumentOperation& operation, const IMKObject& object, XmlLayout layout)
{
    return write(operation, object, layout, Declare::Version, [](const auto& xml) { return toText(xml); });
}

QByteArray writeBytes(DocumentOperation& operation, const IMKObject& object, XmlLayout layout)
{
    return write(operation, object, layout, Declare::Encoding, [](const auto& xml) { return toBytes(xml); });
}

// A file that is written piece by piece. A failure shows when it is committed, so that what is wrong with the
// object comes first.
class PiecewiseFile
{
public:
    explicit PiecewiseFile(const QString& path) : m_path(path) {}

    void Put(const QByteArray& piece)
    {
        if (!m_file && !HasFailed()) {
            m_file.emplace();
            m_file->Open(m_path, m_failure);
        }
        if (!HasFailed())
            m_file->Write(piece, m_failure);
    }

    void Restart()
    {
        m_file.reset();
        m_failure = Failure();
    }

    bool Commit(Failure& failure)
    {
        if (!HasFailed())
            m_file->Commit(m_failure);
        failure = m_failure;
        return !HasFailed();
    }

private:
    bool HasFailed() const { return m_failure.kind != Failure::None; }

    QString m_path;
    std::optional<FileReplacement> m_file;
    Failure m_failure;
};

bool save(const IMKObject& object, const QString& path, XmlLayout layout)
{
    DocumentOperation operation(object, path);
    PiecewiseFile file(path);
    const bool isWritten = writeAsAllowed(operation, object, [&] {
        QByteArray last = writePlainly(object, layout, Declare::Encoding,
                                       [&file](const QByteArray& piece) { file.Put(piece); });
        if (last.isNull()) {
            file.Restart();
            last = toBytes(writeByStream(operation, object, layout, Declare::Encoding));
        }
        if (last.isNull())
            return false;
        file.Put(last);
        return true;
    });
    Failure failure;
    return isWritten && (file.Commit(failure) || operation.Fail(failure));
}

} // namespace

QString IMKObject::GetXmlString()
{
    DocumentOperation operation(*this, QString());
    return writeText(operation, *this, XmlLayout::Indented);
}

QString IMKObject::GetCompactXmlString() const
{
    DocumentOperation operation(*this, QString());
    return writeText(operation, *this, XmlLayout::Compact);
}

QByteArray IMKObject::GetXmlBytes(XmlLayout layout) const
{
    DocumentOperation operation(*this, QString());
    return writeBytes(operation, *this, layout);
}

bool IMKObject::SaveXml(const QString& path) const { return save(*this, path, XmlLayout::Indented); }
bool IMKObject::SaveCompactXml(const QString& path) const { return save(*this, path, XmlLayout::Compact); }

} // namespace MODELKIT
