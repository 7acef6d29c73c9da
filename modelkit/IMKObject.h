// SPDX-License-Identifier: MIT
/// \file
/// The abstract base of all document objects.
#pragma once

#include "modelkit/Exceptions.h"
#include "modelkit/Export.h"
#include "modelkit/Failure.h"
#include "modelkit/HeldLogger.h"
#include "modelkit/Limits.h"
#include "modelkit/Logger.h"
#include "modelkit/ObjectTypes.h"
#include "modelkit/XmlLayout.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <cstddef>
#include <cstdint>
#include <memory>

class QDataStream;
class QDateTime;
class QFile;
class QIODevice;
class QXmlStreamReader;
class QXmlStreamWriter;

namespace MODELKIT {

/// Base of every document object: an object name, a type code, the validation flag, the logger and
/// the operations on whole documents, which are built on the object's own `GetXml`, `ProcessXml`,
/// `GetBinary` and `SetBinary`.
///
/// The order of the virtual operations is part of the library's binary interface: a new one may only
/// be added after the last.
///
/// An object must not be used from two threads at once, not even for reading: the validation flag
/// and the logger are written by const operations.
class MODELKIT_EXPORT IMKObject
{
public:
    /// Not copied: each class of objects decides itself what a copy of it holds.
    IMKObject(const IMKObject&) = delete;
    /// Not copied: each class of objects decides itself what a copy of it holds.
    IMKObject& operator=(const IMKObject&) = delete;

    /// Destroys the object. Data that another record shares, and the logger, live on with those who hold
    /// them.
    virtual ~IMKObject();

    /// Whether the object holds the data without which it is not written while validation is on.
    virtual bool HasData() const = 0;

    /// Discards the content. Defaults stay.
    virtual void Reset() = 0;

    /// Applies the object's rules to its content and to the objects that it owns. The content stays as it is.
    /// \param flag for classes of your own, in which it may mean anything. All records ignore it: they check
    /// the same for true and false.
    /// \throws MKException (a class derived from it) at the first rule that is broken.
    virtual void Check(bool flag) const = 0;

    /// `Check(false)`.
    virtual void Check() const = 0;

    /// \name Invalid markers
    /// For programs that keep values of plain types beside objects and need one that means "no value":
    /// `SetInvalid` stores it, and `IsValid` is false for it and true for every other value. None of these
    /// operations changes or reads the object. The markers are a quiet NaN for `float` and `double` (any NaN
    /// is invalid), the largest value of `unsigned int`, the smallest value of `int` and `long long`, the
    /// null string, and an invalid `QDateTime`. A `bool` is always valid.
    /// The markers are independent of what the members of a record accept.
    /// @{
    virtual bool IsValid(float value) const;            ///< false for the marker
    virtual bool IsValid(bool value) const;             ///< always true
    virtual bool IsValid(unsigned int value) const;     ///< false for the marker
    virtual bool IsValid(long long value) const;        ///< false for the marker
    virtual bool IsValid(const QDateTime& value) const; ///< false for the marker
    virtual bool IsValid(const QString& value) const;   ///< false for the marker
    virtual bool IsValid(double value) const;           ///< false for the marker
    virtual bool IsValid(int value) const;              ///< false for the marker
    virtual void SetInvalid(float& value) const;        ///< stores the marker
    virtual void SetInvalid(unsigned int& value) const; ///< stores the marker
    virtual void SetInvalid(long long& value) const;    ///< stores the marker
    virtual void SetInvalid(QString& value) const;      ///< stores the marker
    virtual void SetInvalid(double& value) const;       ///< stores the marker
    virtual void SetInvalid(int& value) const;          ///< stores the marker
    /// @}

    /// Writes the object as one element at the writer's position; starts and ends no document.
    /// \throws MKException what `Check()` throws, when validation is on. The object that fails has
    /// written nothing; when it is an owned object, the elements around it stay open.
    virtual void GetXml(QXmlStreamWriter& writer) const = 0;

    /// Writes the object as one binary frame at the stream's position.
    ///
    /// The frame consists of \a id (only when \a writeId is true), the length of the content in bytes,
    /// and the content. A device that is not in memory receives the complete frame in one piece; the
    /// stream's status tells when the device did not accept all of it. The stream's byte order applies.
    /// A lone surrogate in a text is written as a question mark; the operations on whole documents
    /// refuse it instead.
    /// \returns false when validation is on and `HasData()` is false; nothing is written then.
    /// \throws MKException what `Check()` throws, when validation is on. Nothing is written then, unless an
    /// owned object fails and the device is in memory.
    virtual bool GetBinary(QDataStream& stream, int id, bool writeId) const = 0;

    /// Reads the content of one binary frame, which is \a length bytes long. The caller has already read
    /// the id and the length from \a stream. Members that the frame does not hold keep their values.
    /// \throws BinaryParsingException when the bytes read do not add up to \a length; members read so far
    /// keep their new values.
    virtual void SetBinary(QDataStream& stream, int length) = 0;

    /// \name Whole documents
    ///
    /// Every operation that reads replaces the content and obeys the Limits. It returns false, with
    /// the reason in GetLastFailure(), when the input cannot be read, is not a document of this object
    /// or exceeds a limit. An exception that a record throws passes through with its place attached.
    /// After a failure the object is unchanged if reading had not yet reached its own element or frame;
    /// otherwise it holds what was read before the failure.
    ///
    /// Reading from a device begins at its current position. A closed device is opened while it is read. On a
    /// device whose data arrive later, such as a socket, reading waits for up to Limits::waitingTime. When
    /// that is not enough, the failure is of kind Failure::NotWholeYet, and device and object are as they
    /// were, unless the device was closed before. (Reading a file that is a pipe waits without a limit.)
    ///
    /// Every failure, including every exception, is logged as one error.
    /// @{

    /// Replaces the content by that of an XML document whose root element has the object's name. The encoding
    /// in the XML declaration has no effect, but Qt must know it.
    /// \param xml the document; at most Limits::inputSize characters.
    /// \param check whether to call `Check()` after reading.
    /// \throws MKException what reading and `Check()` throw.
    virtual bool SetXmlString(const QString& xml, bool check);

    /// Like SetXmlString(), from the bytes \a xml, with the same meaning of \a check. The byte order mark
    /// determines the encoding, or else the XML declaration; without both it is UTF-8. UTF-8, UTF-16 and
    /// UTF-32 are accepted, and so are the stateless encodings that extend ASCII, such as ISO-8859,
    /// windows-125x, KOI8, EUC-JP, Shift_JIS, GB18030 and Big5, if Qt knows them. Any other declared encoding
    /// is a Failure::EncodingRefused.
    bool SetXmlBytes(const QByteArray& xml, bool check = false);

    /// Replaces the content by that of a whole-object binary form, plain or compressed, as
    /// GetBinaryRepresentation() and GetCompressedBinaryRepresentation() write it in big-endian byte
    /// order. Bytes after the form are ignored; a ReadingReport mentions them.
    /// \throws MKException what `SetBinary` throws.
    virtual bool SetBinaryRepresentation(QByteArray& bytes);

    /// The same for bytes that are const; both only read them.
    /// \throws MKException what `SetBinary` throws.
    bool SetBinaryRepresentation(const QByteArray& bytes);

    /// Replaces the content by that of such a form; reads from the stream's position, in the stream's byte
    /// order, and leaves the stream after the form.
    ///
    /// When the form is incomplete, the bytes that were read are put back, and the call can be repeated when
    /// there are more. On a file or a device in memory the failure is of kind Failure::NotABinaryForm and the
    /// stream's status is `ReadPastEnd`. On a device whose data arrive later it is of kind
    /// Failure::NotWholeYet. The bytes are lost only when such a device failed or was closed, which is a
    /// Failure::InputOutput, or when a pipe has ended.
    /// \throws MKException what `SetBinary` throws.
    virtual bool SetBinaryRepresentation(QDataStream& stream);

    /// Adds what is set in \a other to this object's content: values that are set in \a other replace those
    /// of this object, and list items are appended.
    ///
    /// Values are transferred as in the binary form: only the selected payload of a fragment, and the invalid
    /// value in place of a number that is no enumerator. But doubles keep their full precision.
    /// \a other need not be complete, and its validation flag has no effect. When validation is on in this
    /// object, the rules of its setters apply.
    /// \returns false, changing nothing, when \a other is an object of another class or a text holds half of
    /// a surrogate pair.
    /// \throws MKException what the setters throw; what was transferred before stays.
    virtual bool MergeMKObject(const IMKObject& other);

    /// @}

    /// The kind with which the object was constructed, or which SetObjectType() has set. For a record it is
    /// that of the record from which it was copied, ObjectTypes::Undefined at first; nothing depends on it.
    virtual ObjectTypes GetObjectType();

    /// The object's name. For a record it is the class name, which is also the name of its XML element and
    /// the beginning of its messages.
    virtual const QString& GetObjectName() const;

    /// Reads the element at whose start tag the reader is: calls ProcessXmlStartElement() for each
    /// start tag inside it and returns with the reader at the end tag of the same name, or at the end of
    /// the input. When the XML is not well-formed, the reader holds the error. A reader that is not at a
    /// start tag is left as it is.
    virtual void ProcessXml(QXmlStreamReader& reader);

    /// \name Whole documents
    /// @{

    /// The object as an XML document with an XML declaration, indented by two spaces.
    /// \returns a null string, with the reason in GetLastFailure(), when a text holds a character
    /// that XML cannot represent, or when validation is on and `HasData()` is false.
    /// \throws MKException what `GetXml` throws.
    virtual QString GetXmlString();

    /// Like GetXmlString(), without white space between elements.
    /// \throws MKException what `GetXml` throws.
    QString GetCompactXmlString() const;

    /// Like GetXmlString(), in UTF-8, which the XML declaration names: the bytes that SaveXml() and
    /// SaveCompactXml() write.
    /// \param layout whether the elements are indented
    /// \returns a null byte array, with the reason in GetLastFailure(), where GetXmlString() returns a null
    /// string.
    /// \throws MKException what `GetXml` throws.
    QByteArray GetXmlBytes(XmlLayout layout = XmlLayout::Indented) const;

    /// Writes the whole-object form: the binary frame with the object's type code as its id, in the byte
    /// order of the stream. The device receives it in one piece, and a file is flushed. Use SaveBinary() to
    /// save a file.
    ///
    /// GetLastFailure() tells whether it was written; the stream's status is `WriteFailed` when the device
    /// did not accept all of it. Nothing is written when validation is on and `HasData()` is false, or when a
    /// text holds half of a surrogate pair.
    /// \throws MKException what `GetBinary` throws; nothing is written then.
    virtual void GetBinaryRepresentation(QDataStream& stream) const;

    /// The whole-object form in big-endian byte order; empty, with the reason in GetLastFailure(), where
    /// GetBinaryRepresentation() writes nothing.
    /// \throws MKException what `GetBinary` throws.
    virtual QByteArray GetBinaryRepresentationAsQByteArray();

    /// Writes the whole-object form, compressed with zlib, to \a stream; otherwise as
    /// GetBinaryRepresentation().
    /// \param level from 0 (none) to 9 (smallest), or -1 for zlib's default; other values are clamped.
    /// \throws MKException what `GetBinary` throws.
    virtual void GetCompressedBinaryRepresentation(QDataStream& stream, int level) const;

    /// The whole-object form compressed with zlib, in big-endian byte order; empty, with the reason in
    /// GetLastFailure(), where GetBinaryRepresentation() writes nothing.
    /// \param level as for GetCompressedBinaryRepresentation().
    /// \throws MKException what `GetBinary` throws.
    virtual QByteArray GetCompressedBinaryRepresentationAsQByteArray(int level);

    /// Replaces the content by that of an XML file, in any encoding that SetXmlBytes() accepts.
    /// \throws MKException what reading throws.
    virtual bool LoadXml(const QString& path);

    /// Replaces the content by that of an XML file, from the current position of an open file, which may be a
    /// pipe or standard input, to its end. A closed file is opened while it is read. A null pointer is a
    /// Failure::InputOutput.
    /// \throws MKException what reading throws.
    virtual bool LoadXml(QFile* file);

    /// The same from any device.
    /// \throws MKException what reading throws.
    bool LoadXml(QIODevice* device);
    /// Fails like a null pointer to a file or device.
    bool LoadXml(std::nullptr_t);

    /// Replaces the content by that of a file in the whole-object form, plain or compressed, in
    /// big-endian byte order. Bytes after the form are ignored; a ReadingReport mentions them.
    /// \throws MKException what reading throws.
    bool LoadBinary(const QString& path);

    /// Replaces the content by that of such a file, which may be open or closed as for LoadXml().
    /// \throws MKException what reading throws.
    virtual bool LoadBinary(QFile* file);

    /// The same from any device, which is read to its end.
    /// \throws MKException what reading throws.
    bool LoadBinary(QIODevice* device);
    /// Fails like a null pointer to a file or device.
    bool LoadBinary(std::nullptr_t);

    /// Saves the object as an XML document in UTF-8 with an XML declaration, indented by two spaces. An
    /// existing file is replaced atomically, once the new one is completely written.
    /// \returns false, with the reason in GetLastFailure(), when the file cannot be written, a text
    /// holds a character that XML cannot represent, or validation is on and `HasData()` is false.
    /// \throws MKException what `GetXml` throws.
    virtual bool SaveXml(const QString& path) const;

    /// Like SaveXml(), without white space between elements.
    /// \throws MKException what `GetXml` throws.
    bool SaveCompactXml(const QString& path) const;

    /// Saves the object in the whole-object form, in big-endian byte order, replacing an existing file as
    /// SaveXml() does.
    /// \returns false, with the reason in GetLastFailure(), when the file cannot be written, a text holds
    /// half of a surrogate pair, or validation is on and `HasData()` is false.
    /// \throws MKException what `GetBinary` throws.
    bool SaveBinary(const QString& path) const;

    /// Like SaveBinary(), compressed.
    /// \param path the file
    /// \param level as for GetCompressedBinaryRepresentation().
    bool SaveCompressed(const QString& path, int level = -1) const;

    /// @}

    /// Switches the rules of setters, readers and writers on or off, in this object and the owned objects.
    /// The content is not checked.
    virtual void SetValidate(bool validate) const;

    /// The validation flag; off in a new object.
    virtual bool GetValidate() const;

    /// Sets the logger of this object and the owned objects.
    virtual void SetLogger(std::shared_ptr<Logger> logger) const;

    /// Releases the logger. The owned objects release it at their owner's next operation.
    virtual void ResetLogger() const;

    /// The version of the library.
    virtual const QString& GetVersion() const;

    /// Sets the kind, and the number of \a type as the type code. Records ignore it: their type code is the
    /// id of their class.
    virtual void SetObjectType(ObjectTypes type);

    /// The logger; null when there is none.
    std::shared_ptr<Logger> GetLogger() const;

    /// Why the calling thread's last operation on a whole document failed; of kind Failure::None when
    /// it succeeded. The thread's next such operation, on any object, replaces it.
    static const Failure& GetLastFailure();

    /// Skips the payload of a binary entry that the object does not know.
    /// \param length the payload's announced length in bytes; nothing is skipped when it is negative.
    /// \param tag the entry's tag; it has no effect.
    /// \returns the number of bytes skipped, which is less than \a length when the stream ends early.
    int skipCurrentElement(QDataStream& stream, int length, int tag) const;

protected:
    /// An object of the kind ObjectTypes::Undefined. It has no name.
    IMKObject();
    /// An object of that kind, which is also its type code. It has no name.
    explicit IMKObject(ObjectTypes type);

    /// Sets the object's name, which is also the name of its XML element.
    virtual void SetObjectName(const QString& name);

    /// Reads the child element at whose start tag the reader is and leaves the reader at its end tag. When
    /// the object does not know the element, the reader is left at the next tag of the same name.
    virtual void ProcessXmlStartElement(QXmlStreamReader& reader) = 0;

    /// The text of the element at whose start tag the reader is, without the text of child elements;
    /// leaves the reader at the element's end tag. Never a null string. A reader that is not at a start tag
    /// is left as it is, and the text is empty.
    QString GetTextValue(QXmlStreamReader& reader);

    /// \name Settings of owned objects
    /// Name, validation flag and logger without virtual calls, for an owner that knows the class of what it
    /// owns. Nothing is passed further down.
    /// @{

    /// The name.
    const QString& OwnName() const { return m_objectName; }
    /// Takes over the name.
    void TakeName(QString&& name) { m_objectName.swap(name); }
    /// The validation flag.
    bool OwnValidate() const { return m_validate; }
    /// The logger.
    const HeldLogger& OwnLogger() const { return m_logger; }
    /// Takes over the validation flag \a validate and the \a logger.
    void ApplySettings(bool validate, const HeldLogger& logger) const
    {
        m_validate = validate;
        m_logger = logger;
    }

    /// How far behind this object its owner has kept memory free for its data, in a unit that both agree on;
    /// 0 if it has not.
    std::uint8_t RoomDistance() const { return m_room.distance; }
    /// Sets that distance.
    void SetRoomDistance(std::uint8_t distance) const { m_room.distance = distance; }
    /// @}

    /// Identifies the class of a record; the object's kind in other objects.
    long long m_typeCode = 0;

private:
    QString m_objectName;
    mutable HeldLogger m_logger;
    ObjectTypes m_objectType = ObjectTypes::Undefined;
    mutable bool m_validate = false;

    // Stays with the object: a copy lies elsewhere.
    struct Room
    {
        Room() noexcept = default;
        Room(const Room&) noexcept {}
        Room& operator=(const Room&) noexcept { return *this; }
        std::uint8_t distance = 0;
    };
    mutable Room m_room;
};

} // namespace MODELKIT
