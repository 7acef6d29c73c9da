// The operations on whole XML documents, merging, and how the operations on whole documents end.

#include "modelkit/WholeDocument.h"

#include "modelkit/DocumentContext.h"
#include "modelkit/XmlPath.h"
#include "modelkit/XmlText.h"

#include <QtCore/QDataStream>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QIODevice>
#include <QtCore/QSaveFile>
#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>

#include <algorithm>
#include <typeinfo>

namespace MODELKIT {

namespace {

thread_local Failure lastFailure;

} // namespace

const Failure& IMKObject::GetLastFailure() { return lastFailure; }

DocumentOperation::DocumentOperation(const IMKObject& object, const QString& file)
    : m_object(object), m_file(file)
{
    lastFailure = Failure();
}

bool DocumentOperation::Fail(const Failure& failure)
{
    lastFailure = failure;
    lastFailure.place.file = m_file;
    if (const auto logger = m_object.GetLogger())
        logger->Log(Logger::Error, lastFailure.GetSentence());
    return false;
}

bool DocumentOperation::Fail(Failure::Kind kind, const QString& text, const Place& place)
{
    Failure failure;
    failure.kind = kind;
    failure.text = text;
    failure.place = place;
    return Fail(failure);
}

void DocumentOperation::Refuse(ModelKitException& exception, Place place)
{
    place.file = m_file;
    exception.SetPlace(place);
    Fail(Failure::Refused, exception.GetText(), place);
}

Failure inputTooLarge(qint64 limit)
{
    Failure failure;
    failure.kind = Failure::InputTooLarge;
    failure.text = QStringLiteral("The input is larger than the limit of %1 bytes.").arg(limit);
    return failure;
}

bool readDevice(QIODevice& device, qint64 limit, QByteArray& bytes, Failure& failure)
{
    constexpr qint64 step = qint64(1) << 20;
    bytes.clear();
    if (!device.isSequential())
        bytes.reserve(static_cast<int>(std::clamp<qint64>(device.size() - device.pos(), 0, limit)));
    while (true) {
        const QByteArray more = device.read(std::min(step, limit + 1 - bytes.size()));
        if (more.isEmpty()) {
            if (device.isSequential() && device.waitForReadyRead(-1))
                continue;
            return true;
        }
        bytes += more;
        if (bytes.size() > limit) {
            failure = inputTooLarge(limit);
            return false;
        }
    }
}

bool readFile(QFile& file, QByteArray& bytes, Failure& failure)
{
    const bool wasOpen = file.isOpen();
    bool read = wasOpen || file.open(QIODevice::ReadOnly);
    if (read) {
        read = readDevice(file, Limits::Get().inputSize, bytes, failure);
        if (read && file.error() != QFileDevice::NoError)
            read = false;
    }
    if (!read && failure.kind == Failure::None) {
        failure.kind = Failure::InputOutput;
        failure.text = QStringLiteral("The file cannot be read: %1.").arg(file.errorString());
    }
    if (!wasOpen)
        file.close();
    return read;
}

namespace {

// Where the reader has stopped over an error of its own.
template <class Input>
Place placeOfError(const Input& input, const QXmlStreamReader& reader)
{
    Place place = XmlPath(input).Find(reader.characterOffset());
    place.line = reader.lineNumber();
    place.column = std::max<qint64>(reader.columnNumber(), 1);
    return place;
}

// Gives the entries of the report, which the reading has noted as offsets, their places.
template <class Input>
void placeReport(const Input& input, const QString& file, DocumentContext& context)
{
    if (context.GetUnplaced().isEmpty())
        return;
    XmlPath path(input);
    context.PlaceReport([&](qint64 characterOffset) {
        Place place = path.Find(characterOffset);
        place.file = file;
        return place;
    });
}

// What the reader must not see.
template <class Input>
bool refuseTrap(DocumentOperation& operation, const Input& input, const Limits& limits)
{
    const Trap trap = findTrap(input, limits.attributes);
    if (trap.kind == Trap::None)
        return true;
    const Place place = XmlPath(input).FindPosition(trap.characterOffset);
    if (trap.kind == Trap::Doctype)
        return operation.Fail(Failure::DoctypeRefused,
                              QStringLiteral("A document type declaration is not accepted."), place);
    return operation.Fail(
        Failure::TooManyAttributes,
        QStringLiteral("An element has more attributes than the limit of %1.").arg(limits.attributes), place);
}

template <class Input>
bool readRoot(DocumentOperation& operation, IMKObject& object, const Input& input, DocumentContext& context)
{
    QXmlStreamReader reader(input);
    // The dialect has no namespaces, and looking prefixes up can take long.
    reader.setNamespaceProcessing(false);
    while (!reader.atEnd() && !reader.isStartElement()) {
        reader.readNext();
        context.CountToken(reader);
    }
    // Whatever was wrong with the document or beyond a limit.
    const auto isBroken = [&] { return context.GetFailure().kind != Failure::None || reader.hasError(); };
    if (reader.isStartElement()) {
        if (reader.name() != object.GetObjectName())
            return operation.Fail(Failure::WrongRoot,
                                  QStringLiteral("The root element is %1, expected is %2.")
                                      .arg(reader.name().toString(), object.GetObjectName()),
                                  XmlPath(input).Find(reader.characterOffset()));
        try {
            object.Reset();
            object.ProcessXml(reader);
        } catch (ModelKitException& exception) {
            // What is missing from a document that breaks off is not the record's to complain about.
            if (!isBroken()) {
                operation.Refuse(exception, XmlPath(input).Find(reader.characterOffset()));
                throw;
            }
        }
        while (!reader.atEnd()) {
            reader.readNext();
            context.CountToken(reader);
        }
    }
    if (context.GetFailure().kind != Failure::None) {
        Failure failure = context.GetFailure();
        failure.place = placeOfError(input, reader);
        return operation.Fail(failure);
    }
    if (reader.hasError())
        return operation.Fail(Failure::NotWellFormed, reader.errorString(), placeOfError(input, reader));
    return true;
}

template <class Input>
bool readDocument(DocumentOperation& operation, IMKObject& object, const Input& input)
{
    DocumentContext context(DocumentContext::Purpose::Reading);
    if (!refuseTrap(operation, input, context.GetLimits()))
        return false;
    bool isRead = false;
    try {
        isRead = readRoot(operation, object, input, context);
    } catch (ModelKitException&) {
        placeReport(input, operation.GetFile(), context);
        throw;
    }
    placeReport(input, operation.GetFile(), context);
    return isRead;
}

// Keeps what a writer writes and notes how much that was when the writer first met a character that
// XML cannot carry: the writer leaves the character out and only raises its error.
class ErrorLocator : public QIODevice
{
public:
    ErrorLocator() { open(QIODevice::WriteOnly); }

    void Watch(const QXmlStreamWriter& writer) { m_writer = &writer; }

    Place Find() const
    {
        const auto characters = QString::fromUtf8(m_bytes.left(m_sizeAtError)).size();
        return XmlPath(m_bytes).Find(characters);
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

void writeDocument(const IMKObject& object, QXmlStreamWriter& writer, bool asFile)
{
    // The text of a file is encoded behind the writer's back, so the declaration names the encoding
    // by hand.
    if (asFile)
        writer.writeProcessingInstruction(QStringLiteral("xml"),
                                          QStringLiteral("version=\"1.0\" encoding=\"UTF-8\""));
    else
        writer.writeStartDocument();
    writer.setAutoFormatting(true);
    writer.setAutoFormattingIndent(2);
    object.GetXml(writer);
    writer.writeEndDocument();
}

// The position of the first half of a surrogate pair without its other half; -1 if there is none.
qint64 loneSurrogate(const QString& text)
{
    const auto size = text.size();
    for (auto i = size - size; i < size; ++i) {
        if (!text.at(i).isSurrogate())
            continue;
        if (text.at(i).isHighSurrogate() && i + 1 < size && text.at(i + 1).isLowSurrogate())
            ++i;
        else
            return i;
    }
    return -1;
}

bool writeText(DocumentOperation& operation, const IMKObject& object, bool asFile, QString& xml)
{
    try {
        QXmlStreamWriter writer(&xml);
        writeDocument(object, writer, asFile);
        const QString unrepresentable = QStringLiteral("A text holds a character that XML cannot carry.");
        if (writer.hasError()) {
            ErrorLocator locator;
            QXmlStreamWriter second(&locator);
            locator.Watch(second);
            writeDocument(object, second, asFile);
            return operation.Fail(Failure::NotRepresentable, unrepresentable, locator.Find());
        }
        const qint64 position = loneSurrogate(xml);
        if (position >= 0)
            return operation.Fail(Failure::NotRepresentable, unrepresentable, XmlPath(xml).Find(position));
    } catch (ModelKitException& exception) {
        operation.Refuse(exception, exception.GetPlace());
        throw;
    }
    // A reader takes a carriage return for the end of a line, unless it is written as a reference.
    xml.replace(QLatin1Char('\r'), QLatin1String("&#13;"));
    return true;
}

} // namespace

bool IMKObject::SetXmlString(const QString& xml, bool check)
{
    DocumentOperation operation(*this, QString());
    const qint64 limit = Limits::Get().inputSize;
    if (xml.size() > limit)
        return operation.Fail(inputTooLarge(limit));
    if (!readDocument(operation, *this, xml))
        return false;
    if (check) {
        try {
            Check();
        } catch (ModelKitException& exception) {
            operation.Refuse(exception, XmlPath(xml).FindElement(exception.GetPlace().path));
            throw;
        }
    }
    return true;
}

QString IMKObject::GetXmlString()
{
    DocumentOperation operation(*this, QString());
    QString xml;
    return writeText(operation, *this, false, xml) ? xml : QString();
}

bool IMKObject::LoadXml(const QString& path)
{
    QFile file(path);
    return LoadXml(&file);
}

bool IMKObject::LoadXml(QFile* file)
{
    DocumentOperation operation(*this, file ? file->fileName() : QString());
    if (!file)
        return operation.Fail(Failure::InputOutput, QStringLiteral("No file was given."));
    QByteArray bytes;
    Failure failure;
    if (!readFile(*file, bytes, failure))
        return operation.Fail(failure);
    return readDocument(operation, *this, bytes);
}

bool IMKObject::SaveXml(const QString& path) const
{
    DocumentOperation operation(*this, path);
    QString xml;
    if (!writeText(operation, *this, true, xml))
        return false;
    // Replacing a device or a pipe by a file is not what saving to it means.
    const QFileInfo existing(path);
    if (existing.exists() && !existing.isFile())
        return operation.Fail(
            Failure::InputOutput,
            QStringLiteral("The file cannot be written: it exists and is no regular file."));
    const QByteArray bytes = xml.toUtf8();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        return operation.Fail(Failure::InputOutput,
                              QStringLiteral("The file cannot be written: %1.").arg(file.errorString()));
    return true;
}

bool IMKObject::MergeMKObject(const IMKObject& other)
{
    DocumentOperation operation(*this, QString());
    if (typeid(*this) != typeid(other))
        return operation.Fail(
            Failure::WrongClass,
            QStringLiteral("A %1 cannot be merged into a %2.").arg(other.GetObjectName(), GetObjectName()));
    try {
        // The binary form carries what is set, and reading it merges.
        DocumentContext transfer(DocumentContext::Purpose::Transfer);
        QByteArray frame;
        {
            QDataStream stream(&frame, QIODevice::WriteOnly);
            other.GetBinary(stream, 0, false);
        }
        QDataStream stream(frame);
        int length = 0;
        stream >> length;
        SetBinary(stream, length);
    } catch (ModelKitException& exception) {
        // The offset in the carrier means nothing to anybody.
        Place place = exception.GetPlace();
        place.offset = -1;
        operation.Refuse(exception, place);
        throw;
    }
    return true;
}

} // namespace MODELKIT
