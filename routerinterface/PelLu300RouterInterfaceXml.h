// SPDX-License-Identifier: MIT
/// \file
/// The record `PelLu300RouterInterfaceXml`.
#pragma once

#include "routerinterface/PelLu300RouterMessage.h"
#include "routerinterface/Record.h"

namespace PELLU300ROUTERINTERFACEXML {

/// The document: what is loaded and saved as a whole. It holds one message.
class ROUTERINTERFACE_EXPORT PelLu300RouterInterfaceXml : public MODELKIT::IMKObject
{
public:
    /// Identifies the class; also the id of its whole-object binary form.
    static constexpr long long id = -2058139238;

    /// An empty record: no data block, validation off, no logger.
    PelLu300RouterInterfaceXml();
    /// Copies the data and the validation flag, not the logger. The copy has a data block of its own.
    PelLu300RouterInterfaceXml(const PelLu300RouterInterfaceXml& source);
    /// Shares the data of \a source until either record is next touched, even by a getter. Validation
    /// flag and logger stay.
    PelLu300RouterInterfaceXml& operator=(const PelLu300RouterInterfaceXml& source);
    /// Takes the data, the validation flag and the logger of \a source in constant time. References into the
    /// data stay valid. \a source is empty then: it has no data block, but keeps its flag and its logger, and
    /// can be used like a new record.
    PelLu300RouterInterfaceXml(PelLu300RouterInterfaceXml&& source) noexcept;
    ~PelLu300RouterInterfaceXml() override;

    /// Exchanges the data of both records in constant time. Their validation flags and loggers stay. To move
    /// into a record that exists already, swap: assignment always shares the data, and never throws either.
    void swap(PelLu300RouterInterfaceXml& other) noexcept;
    /// The same.
    friend void swap(PelLu300RouterInterfaceXml& a, PelLu300RouterInterfaceXml& b) noexcept { a.swap(b); }

    /// \name Content as a whole
    /// @{

    /// True: the record always counts as holding its data.
    bool HasData() const override;
    /// Whether the message holds any data.
    bool AnyData() const;
    /// Whether the record has a data block: false in a new record and after assignment from such a one,
    /// true after the first getter, setter, check, reading or writing.
    bool IsInitialized() const;
    /// Puts the message back to its default and marks it as not set; the default stays.
    void Reset() override;
    /// Resets, then sets the message to its default, if that was changed.
    void ResetToDefault();
    /// Whether both have no message set, or equal ones.
    bool operator==(const PelLu300RouterInterfaceXml& other) const;
    /// The opposite of equality.
    bool operator!=(const PelLu300RouterInterfaceXml& other) const;
    /// The class's id.
    static long long GetId();

    /// @}
    /// \name Checking and diagnostics
    /// @{

    /// Checks the message, when it is set.
    /// \throws MKException what PelLu300RouterMessage::Check() throws.
    void Check(bool flag) const override;
    /// `Check(false)`.
    void Check() const override;
    /// Switches validation on or off, here and in the message.
    void SetValidate(bool validate) const override;
    /// Sets the logger, here and in the message.
    void SetLogger(std::shared_ptr<MODELKIT::Logger> logger) const override;
    /// Does nothing: the type code of a record is its id.
    void SetObjectType(MODELKIT::ObjectTypes type) override;

    /// @}
    /// \name Written forms
    /// @{

    /// Writes the element `PelLu300RouterInterfaceXml` with the element of the message, if that is set.
    /// \throws MKException what Check() and the checks of the payloads throw, when validation is on.
    void GetXml(QXmlStreamWriter& writer) const override;
    /// Reads the element on whose start the reader stands. A second message element is read on top of
    /// the first: its members replace those of the first, its items are appended.
    /// \throws MKException what reading the message throws; what was read until then stays.
    void ProcessXml(QXmlStreamReader& reader) override;
    /// Writes the frame with the entry of the message, if that is set.
    /// \returns true.
    /// \throws MKException what Check() and the checks of the payloads throw, when validation is on.
    bool GetBinary(QDataStream& stream, int frameId, bool writeId) const override;
    /// Reads a frame's entries; a second message is read on top of the first, unknown entries are
    /// skipped.
    /// \throws MKException what reading the message throws.
    /// \throws BinaryParsingException "PelLu300RouterInterfaceXml::SetBinary(...): Length error occurred
    /// during processing of binary representation"; what was read until then stays.
    void SetBinary(QDataStream& stream, int length) override;

    /// @}

    /// \name PelLu300RouterMessage
    /// The message.
    /// @{

    /// The record for changing in place. Handing it out counts as setting the member.
    PelLu300RouterMessage& GetPelLu300RouterMessage();
    /// The record; the member's flag stays as it is.
    const PelLu300RouterMessage& GetPelLu300RouterMessage() const;
    /// Takes over the data of \a value and marks the member as set. The member keeps its own
    /// validation flag and logger.
    void SetPelLu300RouterMessage(const PelLu300RouterMessage& value);
    /// Whether the member has been given a value.
    bool IsPelLu300RouterMessageSet() const;
    /// Puts the record back to its default and marks the member as not set.
    void ResetPelLu300RouterMessage();
    /// The default; an empty record unless changed.
    const PelLu300RouterMessage& GetDefaultPelLu300RouterMessage() const;
    /// Changes the default; the current record follows at the next reset.
    void SetDefaultPelLu300RouterMessage(const PelLu300RouterMessage& value);
    /// True: every record is valid.
    bool IsValidPelLu300RouterMessage(const PelLu300RouterMessage& value) const;

    /// @}

protected:
    void ProcessXmlStartElement(QXmlStreamReader& reader) override;

private:
    friend struct machinery::Access;
    struct Data;

    void InitData() const;
    void ConstNoClearReset() const;

    mutable MODELKIT::BlockPointer<Data> m_data;
};

} // namespace PELLU300ROUTERINTERFACEXML

Q_DECLARE_TYPEINFO(PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml, Q_RELOCATABLE_TYPE);
