// SPDX-License-Identifier: MIT
/// \file
/// The abstract base of all document objects.
#pragma once

#include "modelkit/Exceptions.h"
#include "modelkit/Export.h"
#include "modelkit/Failure.h"
#include "modelkit/Limits.h"
#include "modelkit/Logger.h"
#include "modelkit/ObjectTypes.h"
#include "modelkit/XmlLayout.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <cstddef>
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
/// The order of the virtual operations is part of the library's binary interface: new ones may only
/// be added behind the last.
///
/// An object must not be used from two threads at once, not even for reading: the validation flag
/// and the logger are written by const operations.
class MODELKIT_EXPORT IMKObject
{
public:
    IMKObject(const IMKObject&) = delete;
    IMKObject& operator=(const IMKObject&) = delete;

    virtual ~IMKObject();

    /// True when the object holds the data that it must have to be written under validation.
    virtual bool HasData() const = 0;

    /// Forgets the content; defaults stay.
    virtual void Reset() = 0;

    /// Applies the object's rules to its content and to the objects that it owns.
    /// \param flag handed unchanged to the owned objects.
    /// \throws MKException (a class below it) at the first rule that is broken.
    virtual void Check(bool flag) const = 0;

    /// `Check(false)`.
    virtual void Check() const = 0;

    /// \name Invalid markers
    /// One value of each type stands for "no value": `SetInvalid` stores it, `IsValid` is false
    /// for it and true for every other value. The markers are: a quiet NaN (any NaN is invalid)
    /// for `float` and `double`, the largest value for `unsigned int`, the smallest value for `int`
    /// and `long long`, the null string, and an invalid `QDateTime`. A `bool` is always valid.
    /// The markers are independent of what the members of a record accept.
    /// @{
    virtual bool IsValid(float value) const;            ///< false for the marker
    virtual bool IsValid(bool value) const;             ///< false for the marker
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
    /// \throws MKException what `Check()` throws, when validation is on. The object has then written
    /// nothing; when the failing object is an owned one, the elements around it stay open.
    virtual void GetXml(QXmlStreamWriter& writer) const = 0;

    /// Writes the object as one binary frame at the stream's position.
    ///
    /// The frame is \a id (only when \a writeId is true), the number of bytes that follow the
    /// length, and the content. A device outside memory gets it in one piece when it is complete; what
    /// it does not take shows in the stream's status. The stream's byte order is used as it stands.
    /// A lone surrogate in a text is written as a question mark; the operations on whole documents
    /// refuse it instead.
    /// \returns false when validation is on and `HasData()` is false; nothing is written then.
    /// \throws MKException what `Check()` throws, when validation is on; nothing is written then
    /// unless it is an owned object that fails; a device outside memory gets nothing even then.
    virtual bool GetBinary(QDataStream& stream, int id, bool writeId) const = 0;

    /// Reads the content of one binary frame of \a length bytes; the caller has consumed the id and
    /// the length. Members that the frame does not hold keep their values.
    /// \throws BinaryParsingException when the bytes read and \a length disagree; members read until
    /// then keep their new values.
    virtual void SetBinary(QDataStream& stream, int length) = 0;

    /// \name Whole documents
    ///
    /// Every operation that reads replaces the content and obeys the Limits. It returns false, with
    /// the reason in GetLastFailure(), when the input cannot be read, is no document of this object
    /// or exceeds a limit. What a record throws passes through unchanged, with its place attached.
    /// The object is then unchanged as long as nothing of its own element or frame was read;
    /// otherwise it holds what was read until the failure.
    ///
    /// Reading from a device begins at its position. A closed device is opened for the time of reading. A
    /// device that delivers later, such as a socket, is waited for, as long as Limits::waitingTime says; when
    /// that was not enough the failure is of kind Failure::NotWholeYet, and device and object are as they
    /// were, unless the device was closed before. (Files that are pipes wait by themselves, without a limit.)
    ///
    /// Every failure, exceptions included, is written to the logger as an error in one sentence.
    /// @{

    /// Replaces the content by that of an XML document whose root element carries the object's name. The
    /// encoding that the declaration names does not matter, but must be known to Qt.
    /// \param check whether `Check()` is called after reading.
    /// \throws MKException what reading and `Check()` throw.
    virtual bool SetXmlString(const QString& xml, bool check);

    /// As above, from bytes in the encoding of the byte order mark, or else of the declaration, or else
    /// UTF-8. Accepted are UTF-8, UTF-16, UTF-32 and encodings that extend ASCII and keep no state, such as
    /// ISO-8859, windows-125x, KOI8, EUC-JP, Shift_JIS, GB18030 and Big5, as far as Qt knows them; a
    /// declaration of another one is a Failure::EncodingRefused.
    bool SetXmlBytes(const QByteArray& xml, bool check = false);

    /// Replaces the content by that of a whole-object binary form, plain or compressed, as
    /// GetBinaryRepresentation() and GetCompressedBinaryRepresentation() write it in big-endian byte
    /// order. Bytes behind the form are ignored, which a ReadingReport tells.
    /// \throws MKException what `SetBinary` throws.
    virtual bool SetBinaryRepresentation(QByteArray& bytes);

    /// As above.
    bool SetBinaryRepresentation(const QByteArray& bytes);

    /// As above; reads from the stream's position in the stream's byte order and leaves the stream
    /// behind the form.
    ///
    /// Where the form is not whole, what was there is put back. On a device in memory or a file the failure
    /// is of kind Failure::NotABinaryForm and the stream's status `ReadPastEnd`: call again when there is
    /// more. On a device that delivers later it is of kind Failure::NotWholeYet. Only when such a device
    /// failed or was closed, which is a Failure::InputOutput, or a pipe has ended, what was there is gone.
    virtual bool SetBinaryRepresentation(QDataStream& stream);

    /// Takes over what \a other has set, on top of the own content; the items of lists are appended.
    /// What is taken over is what the binary form carries: texts, the selected payload of a fragment, and the
    /// invalid value for a number that is no enumerator; but doubles keep their full precision. Neither
    /// validation flag nor completeness of \a other matters; the rules of this object's setters apply when
    /// its validation is on. \returns false, changing nothing, when \a other is an object of another class or
    /// a text holds half of a surrogate pair. \throws MKException what the setters throw; what was taken over
    /// until then stays.
    virtual bool MergeMKObject(const IMKObject& other);

    /// @}

    /// The kind that the object was constructed with.
    virtual ObjectTypes GetObjectType();

    /// The object's name: for a record its class name, which is also its XML element's name and the
    /// beginning of its messages.
    virtual const QString& GetObjectName() const;

    /// Reads the element on whose start the reader stands: calls ProcessXmlStartElement() for each
    /// start element inside it and returns with the reader on the end element of the same name, or
    /// at the end of the input. Errors of well-formedness stay in the reader. A reader that does not
    /// stand on a start element is left as it is.
    virtual void ProcessXml(QXmlStreamReader& reader);

    /// \name Whole documents
    /// @{

    /// The object as an XML document with declaration, indented by two blanks.
    /// \returns a null string, with the reason in GetLastFailure(), when a text holds a character
    /// that XML cannot carry, or validation is on and `HasData()` is false.
    /// \throws MKException what `GetXml` throws.
    virtual QString GetXmlString();

    /// As above, without white space between the elements.
    QString GetCompactXmlString() const;

    /// As above, in UTF-8, which the declaration names: the bytes that SaveXml() and SaveCompactXml() write.
    /// A null byte array on failure.
    QByteArray GetXmlBytes(XmlLayout layout = XmlLayout::Indented) const;

    /// Writes the whole-object form: the binary frame with the object's type code as its id, in the byte
    /// order of the stream. The device gets it in one piece, and a file is flushed. To save a file use
    /// SaveBinary().
    ///
    /// Whether it was written is in GetLastFailure(), and the stream's status is `WriteFailed` when the
    /// device did not take it all. Nothing at all is written when validation is on and `HasData()` is false,
    /// or when a text holds half of a surrogate pair. \throws MKException what `GetBinary` throws; nothing is
    /// written then.
    virtual void GetBinaryRepresentation(QDataStream& stream) const;

    /// The whole-object form in big-endian byte order; empty, with the reason in GetLastFailure(), when
    /// nothing is written.
    /// \throws MKException what `GetBinary` throws.
    virtual QByteArray GetBinaryRepresentationAsQByteArray();

    /// Writes the whole-object form compressed with zlib; otherwise as GetBinaryRepresentation().
    /// \param level from 0 (none) to 9 (smallest), -1 for zlib's default; others are clamped.
    /// \throws MKException what `GetBinary` throws.
    virtual void GetCompressedBinaryRepresentation(QDataStream& stream, int level) const;

    /// As above, as a byte array in big-endian byte order.
    virtual QByteArray GetCompressedBinaryRepresentationAsQByteArray(int level);

    /// Replaces the content by that of an XML file, in an encoding as with SetXmlBytes().
    /// \throws MKException what reading throws.
    virtual bool LoadXml(const QString& path);

    /// As above, from the position of an open file, which may be a pipe or standard input, to its
    /// end; a closed one is opened for the time of reading.
    virtual bool LoadXml(QFile* file);

    /// As above, from any device.
    bool LoadXml(QIODevice* device);
    /// Fails, as with any file or device that is null.
    bool LoadXml(std::nullptr_t);

    /// Replaces the content by that of a file in the whole-object form, plain or compressed, in
    /// big-endian byte order. Bytes behind the form are ignored, which a ReadingReport tells.
    /// \throws MKException what reading throws.
    bool LoadBinary(const QString& path);

    /// As above; the file as with LoadXml().
    virtual bool LoadBinary(QFile* file);

    /// As above, from any device, which is read to its end.
    bool LoadBinary(QIODevice* device);
    /// Fails, as with any file or device that is null.
    bool LoadBinary(std::nullptr_t);

    /// Saves the object as an XML document in UTF-8 with declaration, indented by two blanks. An
    /// existing file stays as it is until the new one is written whole, and then is replaced at once.
    /// \returns false, with the reason in GetLastFailure(), when the file cannot be written, a text
    /// holds a character that XML cannot carry, or validation is on and `HasData()` is false.
    /// \throws MKException what `GetXml` throws.
    virtual bool SaveXml(const QString& path) const;

    /// As above, without white space between the elements.
    bool SaveCompactXml(const QString& path) const;

    /// Saves the object in the whole-object form, in big-endian byte order, replacing an existing file as
    /// SaveXml() does.
    /// \returns false, with the reason in GetLastFailure(), when the file cannot be written, a text holds
    /// half of a surrogate pair, or validation is on and `HasData()` is false. \throws MKException what
    /// `GetBinary` throws.
    bool SaveBinary(const QString& path) const;

    /// As above, compressed.
    /// \param level as with GetCompressedBinaryRepresentation().
    bool SaveCompressed(const QString& path, int level = -1) const;

    /// @}

    /// Switches the rules of setters, readers and writers on or off, also in the owned objects.
    virtual void SetValidate(bool validate) const;

    /// The validation flag; off in a new object.
    virtual bool GetValidate() const;

    /// Sets the logger, also in the owned objects.
    virtual void SetLogger(std::shared_ptr<Logger> logger) const;

    /// Lets go of the logger; the owned objects follow at their owner's next operation.
    virtual void ResetLogger() const;

    /// The version of the library.
    virtual const QString& GetVersion() const;

    /// Sets the kind and the type code; records ignore it.
    virtual void SetObjectType(ObjectTypes type);

    /// The logger, or none.
    std::shared_ptr<Logger> GetLogger() const;

    /// Why the calling thread's last operation on a whole document failed; of kind Failure::None when
    /// it succeeded. It stays until the thread's next such operation, on whichever object.
    static const Failure& GetLastFailure();

    /// Moves the stream behind the payload of a binary entry that the object does not know.
    /// \param length the announced number of payload bytes; nothing is consumed when it is negative.
    /// \param tag the entry's tag.
    /// \returns the number of bytes consumed: fewer than \a length when the stream ends before.
    int skipCurrentElement(QDataStream& stream, int length, int tag) const;

protected:
    IMKObject();
    /// An object with that type code and without a name.
    explicit IMKObject(ObjectTypes type);

    /// Gives the object its name, which is also that of its XML element.
    virtual void SetObjectName(const QString& name);

    /// Reads the child element on whose start the reader stands and leaves the reader on its end. An
    /// element that the object does not know is left at the next tag of the same name.
    virtual void ProcessXmlStartElement(QXmlStreamReader& reader) = 0;

    /// The text of the element on whose start the reader stands, without that of child elements;
    /// leaves the reader on the element's end. Never a null string. A reader that does not stand on
    /// a start element is left as it is and gives an empty text.
    QString GetTextValue(QXmlStreamReader& reader);

    /// \name Settings of owned objects
    /// For an owner that knows the class of what it owns: name, validation flag and logger without
    /// virtual calls. Nothing is handed further down.
    /// @{

    /// The name.
    const QString& OwnName() const { return m_objectName; }
    /// The validation flag.
    bool OwnValidate() const { return m_validate; }
    /// The logger.
    const std::shared_ptr<Logger>& OwnLogger() const { return m_logger; }
    /// Takes over validation flag and logger.
    void ApplySettings(bool validate, const std::shared_ptr<Logger>& logger) const
    {
        m_validate = validate;
        ShareLogger(m_logger, logger);
    }
    /// `held = logger`. Counting a reference is dear where it must be atomic, and mostly the logger
    /// is the same.
    static void ShareLogger(std::shared_ptr<Logger>& held, const std::shared_ptr<Logger>& logger)
    {
        if (held != logger || held.owner_before(logger) || logger.owner_before(held))
            held = logger;
    }
    /// @}

    /// Identifies the class of a record; the object's kind in other objects.
    long long m_typeCode = 0;

private:
    QString m_objectName;
    mutable std::shared_ptr<Logger> m_logger;
    ObjectTypes m_objectType = ObjectTypes::Undefined;
    mutable bool m_validate = false;
};

} // namespace MODELKIT
