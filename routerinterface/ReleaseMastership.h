// SPDX-License-Identifier: MIT
/// \file
/// The record `ReleaseMastership`.
#pragma once

#include "routerinterface/Record.h"

namespace PELLU300ROUTERINTERFACEXML {

/// The outcome of a request to give mastership up; without outcome, the request itself.
class ROUTERINTERFACE_EXPORT ReleaseMastership : public MODELKIT::IMKObject
{
public:
    /// Identifies the class; also the id of its whole-object binary form.
    static constexpr long long id = 1597604052;

    /// An empty record: no data block, validation off, no logger.
    ReleaseMastership();
    /// Copies the data and the validation flag, not the logger. The copy has a data block of its own.
    ReleaseMastership(const ReleaseMastership& source);
    /// Shares the data of \a source until either record is next touched, even by a getter. Validation
    /// flag and logger stay.
    ReleaseMastership& operator=(const ReleaseMastership& source);
    /// Takes the data, the validation flag and the logger of \a source in constant time. References into the
    /// data stay valid. \a source is empty then: it has no data block, but keeps its flag and its logger, and
    /// can be used like a new record.
    ReleaseMastership(ReleaseMastership&& source) noexcept;
    ~ReleaseMastership() override;

    /// Exchanges the data of both records in constant time. Their validation flags and loggers stay. To move
    /// into a record that exists already, swap: assignment always shares the data, and never throws either.
    void swap(ReleaseMastership& other) noexcept;
    /// The same.
    friend void swap(ReleaseMastership& a, ReleaseMastership& b) noexcept { a.swap(b); }

    /// \name Content as a whole
    /// @{

    /// True: the record always counts as holding its data.
    bool HasData() const override;
    /// Whether any member is set.
    bool AnyData() const;
    /// Whether the record has a data block: false in a new record and after assignment from such a one,
    /// true after the first getter, setter, check, reading or writing.
    bool IsInitialized() const;
    /// Puts every member back and marks it as not set; defaults stay.
    void Reset() override;
    /// Resets, then gives every member whose default was changed that default, marked as set.
    void ResetToDefault();
    /// Whether the same members are set, to equal values. Defaults do not count.
    bool operator==(const ReleaseMastership& other) const;
    /// The opposite of equality.
    bool operator!=(const ReleaseMastership& other) const;
    /// The class's id.
    static long long GetId();

    /// @}
    /// \name Checking and diagnostics
    /// @{

    /// Never throws: the members have no rules. Also gives the record its data block.
    void Check(bool flag) const override;
    /// `Check(false)`.
    void Check() const override;
    /// Switches validation on or off.
    void SetValidate(bool validate) const override;
    /// Sets the logger.
    void SetLogger(std::shared_ptr<MODELKIT::Logger> logger) const override;
    /// Does nothing: the type code of a record is its id.
    void SetObjectType(MODELKIT::ObjectTypes type) override;

    /// @}
    /// \name Written forms
    /// @{

    /// Writes the element `ReleaseMastership` with one child element for each member that is set.
    void GetXml(QXmlStreamWriter& writer) const override;
    /// Reads the element on whose start the reader stands into the record; unknown children are
    /// skipped. "false" and "0" in any case are false, any other text is true.
    /// \throws InvalidXmlException "Please set a value or a default for the boolean 'Success' in
    /// 'ReleaseMastership'." when the text is empty and validation is on; with validation off it is false.
    void ProcessXml(QXmlStreamReader& reader) override;
    /// Writes the frame with one entry for each member that is set.
    /// \returns true.
    bool GetBinary(QDataStream& stream, int frameId, bool writeId) const override;
    /// Reads a frame's entries; unknown ones are skipped, members without one keep their values.
    /// \throws BinaryParsingException "ReleaseMastership::SetBinary(...): Length error occurred during
    /// processing of binary representation"; members read until then keep their new values.
    void SetBinary(QDataStream& stream, int length) override;

    /// @}

    /// \name Success
    /// Whether the request succeeded.
    /// @{

    /// The current value; while the member is not set, its default as it was at the last reset.
    bool GetSuccess() const;
    /// Stores the value and marks the member as set. Every value is accepted.
    void SetSuccess(bool value);
    /// Whether the member has been given a value.
    bool IsSuccessSet() const;
    /// Puts the member back to its default and marks it as not set.
    void ResetSuccess();
    /// The default; \c false unless changed. Valid until the record is next changed or copied.
    const bool& GetDefaultSuccess() const;
    /// Changes the default; the current value follows at the next reset.
    void SetDefaultSuccess(const bool& value);
    /// True: every value is valid.
    bool IsValidSuccess(const bool& value) const;

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

Q_DECLARE_TYPEINFO(PELLU300ROUTERINTERFACEXML::ReleaseMastership, Q_RELOCATABLE_TYPE);
