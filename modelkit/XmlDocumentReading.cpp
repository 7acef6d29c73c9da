// SPDX-License-Identifier: MIT
// The operations that read whole XML documents.

#include "modelkit/Devices.h"
#include "modelkit/DocumentContext.h"
#include "modelkit/DocumentOperation.h"
#include "modelkit/IMKObject.h"
#include "modelkit/PlainXmlClasses.h"
#include "modelkit/PlainXmlReader.h"
#include "modelkit/Utf8.h"
#include "modelkit/XmlDecoding.h"
#include "modelkit/XmlPath.h"
#include "modelkit/XmlTraps.h"

#include <QtCore/QFile>
#include <QtCore/QIODevice>
#include <QtCore/QXmlStreamReader>

#include <algorithm>

namespace MODELKIT {

namespace {

// The place of the reader's own error. The reader has already gone past it.
Place placeOfError(const QString& text, const QXmlStreamReader& reader)
{
    Place place = XmlPath(text).FindPosition(reader.characterOffset());
    place.column = std::max<qint64>(place.column - 1, 1);
    return place;
}

// Whether the text ends too early. Not checked for a text with a trap, which a reader must not see.
bool breaksOff(const DecodedXml& input)
{
    if (!input.refusedEncoding.isEmpty() || findTrap(input.text, Limits::Get().attributes).kind != Trap::None)
        return false;
    if (!input.isWhole)
        return input.endsInside;
    QXmlStreamReader reader(input.text);
    reader.setNamespaceProcessing(false);
    while (!reader.atEnd())
        reader.readNext();
    return reader.error() == QXmlStreamReader::PrematureEndOfDocumentError;
}

// Reads one document into an object.
class DocumentReading
{
public:
    // Ending: why the device broke off after the text, if it did.
    DocumentReading(DocumentOperation& operation, IMKObject& object, const DecodedXml& input,
                    const Failure& ending = Failure())
        : m_operation(operation), m_object(object), m_input(input), m_text(input.text), m_ending(ending),
          m_context(DocumentContext::Purpose::Reading)
    {}

    bool Read()
    {
        bool isRead = false;
        try {
            isRead = AdmitsText() && ReadRoot();
        } catch (...) {
            try {
                DeliverReport();
            } catch (...) {
                // Another exception is already in flight.
            }
            throw;
        }
        DeliverReport();
        return isRead;
    }

private:
    bool Refuse(const Failure& failure)
    {
        m_context.DropReport();
        return m_operation.Fail(failure);
    }

    bool Refuse(Failure::Kind kind, const QString& text, const Place& place)
    {
        m_context.DropReport();
        return m_operation.Fail(kind, text, place);
    }

    // Whether a reader may see the text: it must be complete and without traps.
    bool AdmitsText()
    {
        if (!m_input.refusedEncoding.isEmpty()) {
            Place place;
            place.line = 1;
            place.column = 1;
            return Refuse(Failure::EncodingRefused,
                          QStringLiteral("The encoding %1 is not accepted.").arg(m_input.refusedEncoding),
                          place);
        }
        const int limit = m_context.GetLimits().attributes;
        const Trap trap = findTrap(m_text, limit);
        if (trap.kind == Trap::Doctype)
            return Refuse(Failure::DoctypeRefused,
                          QStringLiteral("A document type declaration is not accepted."),
                          XmlPath(m_text).FindPosition(trap.characterOffset));
        if (trap.kind == Trap::Attributes)
            return Refuse(Failure::TooManyAttributes,
                          QStringLiteral("An element has more attributes than the limit of %1.").arg(limit),
                          XmlPath(m_text).FindPosition(trap.characterOffset));
        if (m_input.endsInside && m_ending.kind != Failure::None)
            return Refuse(m_ending);
        return m_input.isWhole
               || Refuse(Failure::NotWellFormed, QStringLiteral("Encountered incorrectly encoded content."),
                         XmlPath(m_text).FindPosition(m_text.size()));
    }

    // Reads the next token outside the root element.
    void Next(QXmlStreamReader& reader)
    {
        reader.readNext();
        m_context.CountToken(reader);
    }

    bool ReadRoot()
    {
        QXmlStreamReader reader(m_text);
        // The dialect has no namespaces, and looking up prefixes can take a long time.
        reader.setNamespaceProcessing(false);
        while (!reader.atEnd() && !reader.isStartElement())
            Next(reader);
        if (reader.isStartElement()) {
            if (reader.name() != m_object.GetObjectName())
                return Refuse(Failure::WrongRoot,
                              QStringLiteral("The root element is %1, expected is %2.")
                                  .arg(reader.name().toString(), m_object.GetObjectName()),
                              XmlPath(m_text).Find(reader.characterOffset()));
            ReadObject(reader);
            while (!reader.atEnd())
                Next(reader);
        }
        if (m_context.GetFailure().kind != Failure::None) {
            Failure failure = m_context.GetFailure();
            failure.place = placeOfError(m_text, reader);
            return Refuse(failure);
        }
        if (!reader.hasError())
            return true;
        const Place place = placeOfError(m_text, reader);
        if (reader.error() == QXmlStreamReader::PrematureEndOfDocumentError && m_ending.kind != Failure::None)
            return Refuse(m_ending.kind, m_ending.text, place);
        return Refuse(Failure::NotWellFormed, reader.errorString(), place);
    }

    void ReadObject(QXmlStreamReader& reader)
    {
        try {
            m_object.Reset();
            m_object.ProcessXml(reader);
        } catch (ModelKitException& exception) {
            // If the document is cut off, that is the error, not a missing member that results from it.
            if (m_context.GetFailure().kind != Failure::None || reader.hasError())
                return;
            m_operation.Refuse(exception, XmlPath(m_text).Find(reader.characterOffset()));
            throw;
        }
    }

    void DeliverReport()
    {
        if (!m_context.HasNoticed())
            return;
        XmlPath path(m_text);
        m_context.DeliverReport([&](qint64 characterOffset) {
            Place place = path.Find(characterOffset);
            place.file = m_operation.GetFile();
            return place;
        });
    }

    DocumentOperation& m_operation;
    IMKObject& m_object;
    const DecodedXml& m_input;
    const QString& m_text;
    Failure m_ending;
    DocumentContext m_context;
};

std::string_view viewOf(const QByteArray& bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

// Reads most documents, in a fraction of the time that a stream reader takes. False if the document is not
// plain, a record refuses a value or a limit is exceeded: then it must be read with the stream reader, which
// finds places.
bool readPlainly(IMKObject& object, const QByteArray& utf8)
{
    const PlainXmlClass* const known = plainXmlOf(object);
    DocumentContext context(DocumentContext::Purpose::Reading);
    if (!known || context.IsReporting())
        return false;
    const auto document = PlainXml::Find(viewOf(utf8), context.GetLimits().nestingDepth);
    if (!document)
        return false;
    PlainXmlReader reader(*document);
    if (reader.name() != object.GetObjectName())
        return false;
    try {
        object.Reset();
        known->read(object, reader);
    } catch (const ModelKitException&) {
        return false;
    }
    return context.GetFailure().kind == Failure::None;
}

bool readPlainly(IMKObject& object, const QString& xml)
{
    return plainXmlOf(object) && loneSurrogate(xml) < 0 && readPlainly(object, xml.toUtf8());
}

// Source: text or bytes.
template <class Source>
bool readDocument(DocumentOperation& operation, IMKObject& object, const Source& source, bool check)
{
    DecodedXml decoded;
    const bool isReadPlainly = readPlainly(object, source);
    if (!isReadPlainly) {
        decoded = decodeXml(source);
        if (!DocumentReading(operation, object, decoded).Read())
            return false;
    }
    if (!check)
        return true;
    try {
        object.Check();
    } catch (ModelKitException& exception) {
        if (isReadPlainly)
            decoded = decodeXml(source);
        operation.Refuse(exception, XmlPath(decoded.text).FindElement(exception.GetPlace().path));
        throw;
    }
    return true;
}

template <class Text>
bool isTooLarge(DocumentOperation& operation, const Text& text)
{
    const qint64 limit = Limits::Get().inputSize;
    return text.size() > limit && !operation.Fail(inputTooLarge(limit));
}

bool loadFrom(IMKObject& object, QIODevice* device)
{
    DocumentOperation operation(object, fileNameOf(device));
    if (!device)
        return operation.Fail(Failure::InputOutput, QStringLiteral("No file was given."));
    Input input;
    Failure failure;
    if (!readToEnd(*device, input, failure))
        return operation.Fail(failure);
    if (input.ending.kind == Failure::None && readPlainly(object, input.bytes))
        return true;
    const DecodedXml decoded = decodeXml(input.bytes);
    if (input.ending.kind == Failure::NotWholeYet && breaksOff(decoded)) {
        putBack(*device, input.bytes);
        return operation.Fail(input.ending);
    }
    input.bytes.clear();
    return DocumentReading(operation, object, decoded, input.ending).Read();
}

} // namespace

bool IMKObject::SetXmlString(const QString& xml, bool check)
{
    DocumentOperation operation(*this, QString());
    return !isTooLarge(operation, xml) && readDocument(operation, *this, xml, check);
}

bool IMKObject::SetXmlBytes(const QByteArray& xml, bool check)
{
    DocumentOperation operation(*this, QString());
    return !isTooLarge(operation, xml) && readDocument(operation, *this, xml, check);
}

bool IMKObject::LoadXml(const QString& path)
{
    QFile file(path);
    return LoadXml(&file);
}

bool IMKObject::LoadXml(QFile* file) { return loadFrom(*this, file); }
bool IMKObject::LoadXml(QIODevice* device) { return loadFrom(*this, device); }
bool IMKObject::LoadXml(std::nullptr_t) { return loadFrom(*this, nullptr); }

} // namespace MODELKIT
