// SPDX-License-Identifier: MIT
/// \file
/// The record `DF_Params`.
#pragma once

#include "routerinterface/Record.h"

namespace PELLU300ROUTERINTERFACEXML {

/// The tuning of a direction-finding measurement. Sender and receiver agree on the units; the
/// record only carries numbers. Every double is accepted, NaN and infinities included.
class ROUTERINTERFACE_EXPORT DF_Params : public MODELKIT::IMKObject
{
public:
    /// Identifies the class; also the id of its whole-object binary form.
    static constexpr long long id = -236055652;

    /// An empty record: no data block, validation off, no logger.
    DF_Params();
    /// Copies the data and the validation flag, not the logger. The copy has a data block of its own.
    DF_Params(const DF_Params& source);
    /// Shares the data of \a source until either record is next touched, even by a getter. Validation
    /// flag and logger stay.
    DF_Params& operator=(const DF_Params& source);
    /// Takes the data, the validation flag and the logger of \a source in constant time. References into the
    /// data stay valid. \a source is empty then: it has no data block, but keeps its flag and its logger, and
    /// can be used like a new record.
    DF_Params(DF_Params&& source) noexcept;
    ~DF_Params() override;

    /// Exchanges the data of both records in constant time. Their validation flags and loggers stay. To move
    /// into a record that exists already, swap: assignment always shares the data, and never throws either.
    void swap(DF_Params& other) noexcept;
    /// The same.
    friend void swap(DF_Params& a, DF_Params& b) noexcept { a.swap(b); }

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
    bool operator==(const DF_Params& other) const;
    /// The opposite of equality.
    bool operator!=(const DF_Params& other) const;
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

    /// Writes the element `DF_Params` with one child element for each member that is set.
    void GetXml(QXmlStreamWriter& writer) const override;
    /// Reads the element on whose start the reader stands into the record. Children in any order,
    /// unknown ones are skipped; members without an element keep their values.
    void ProcessXml(QXmlStreamReader& reader) override;
    /// Writes the frame with one entry for each member that is set.
    /// \returns true.
    bool GetBinary(QDataStream& stream, int frameId, bool writeId) const override;
    /// Reads a frame's entries; unknown ones are skipped, members without one keep their values.
    /// \throws BinaryParsingException "DF_Params::SetBinary(...): Length error occurred during processing of
    /// binary representation"; members read until then keep their new values.
    void SetBinary(QDataStream& stream, int length) override;

    /// @}

    /// \name Frequency
    /// The receive frequency. Two decimals travel in the written forms.
    /// @{

    /// The current value; while the member is not set, its default as it was at the last reset.
    double GetFrequency() const;
    /// Stores the value and marks the member as set. Every value is accepted.
    void SetFrequency(double value);
    /// Whether the member has been given a value.
    bool IsFrequencySet() const;
    /// Puts the member back to its default and marks it as not set.
    void ResetFrequency();
    /// The default; \c 0.0 unless changed. Valid until the record is next changed or copied.
    const double& GetDefaultFrequency() const;
    /// Changes the default; the current value follows at the next reset.
    void SetDefaultFrequency(const double& value);
    /// True: every value is valid.
    bool IsValidFrequency(const double& value) const;

    /// @}

    /// \name DemodulationFrequency
    /// The demodulation frequency. Two decimals travel in the written forms.
    /// @{

    /// The current value; while the member is not set, its default as it was at the last reset.
    double GetDemodulationFrequency() const;
    /// Stores the value and marks the member as set. Every value is accepted.
    void SetDemodulationFrequency(double value);
    /// Whether the member has been given a value.
    bool IsDemodulationFrequencySet() const;
    /// Puts the member back to its default and marks it as not set.
    void ResetDemodulationFrequency();
    /// The default; \c 0.0 unless changed. Valid until the record is next changed or copied.
    const double& GetDefaultDemodulationFrequency() const;
    /// Changes the default; the current value follows at the next reset.
    void SetDefaultDemodulationFrequency(const double& value);
    /// True: every value is valid.
    bool IsValidDemodulationFrequency(const double& value) const;

    /// @}

    /// \name Bandwidth
    /// The bandwidth. Two decimals travel in the written forms.
    /// @{

    /// The current value; while the member is not set, its default as it was at the last reset.
    double GetBandwidth() const;
    /// Stores the value and marks the member as set. Every value is accepted.
    void SetBandwidth(double value);
    /// Whether the member has been given a value.
    bool IsBandwidthSet() const;
    /// Puts the member back to its default and marks it as not set.
    void ResetBandwidth();
    /// The default; \c 0.0 unless changed. Valid until the record is next changed or copied.
    const double& GetDefaultBandwidth() const;
    /// Changes the default; the current value follows at the next reset.
    void SetDefaultBandwidth(const double& value);
    /// True: every value is valid.
    bool IsValidBandwidth(const double& value) const;

    /// @}

    /// \name PanoramaSpan
    /// The span of the panorama display. Two decimals travel in the written forms.
    /// @{

    /// The current value; while the member is not set, its default as it was at the last reset.
    double GetPanoramaSpan() const;
    /// Stores the value and marks the member as set. Every value is accepted.
    void SetPanoramaSpan(double value);
    /// Whether the member has been given a value.
    bool IsPanoramaSpanSet() const;
    /// Puts the member back to its default and marks it as not set.
    void ResetPanoramaSpan();
    /// The default; \c 0.0 unless changed. Valid until the record is next changed or copied.
    const double& GetDefaultPanoramaSpan() const;
    /// Changes the default; the current value follows at the next reset.
    void SetDefaultPanoramaSpan(const double& value);
    /// True: every value is valid.
    bool IsValidPanoramaSpan(const double& value) const;

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

Q_DECLARE_TYPEINFO(PELLU300ROUTERINTERFACEXML::DF_Params, Q_RELOCATABLE_TYPE);
