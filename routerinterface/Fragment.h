// SPDX-License-Identifier: MIT
/// \file
/// The record `Fragment`.
#pragma once

#include "routerinterface/AcquireMastership.h"
#include "routerinterface/DF_Params.h"
#include "routerinterface/MastershipState.h"
#include "routerinterface/OstraInterfacePort.h"
#include "routerinterface/PelVtConnectServer.h"
#include "routerinterface/Record.h"
#include "routerinterface/ReleaseMastership.h"
#include "routerinterface/RouterVtServerPort.h"

namespace PELLU300ROUTERINTERFACEXML {

/// The payload unit of a message: one of several records, selected by a choice.
///
/// Only the selected payload is written, compared and checked. Selecting another one does not clear
/// the first; it stays set until a reset. The enumerators carry the names of the payload classes,
/// so inside this class the classes are named with their namespace.
class ROUTERINTERFACE_EXPORT Fragment : public MODELKIT::IMKObject
{
public:
    /// Identifies the class; also the id of its whole-object binary form.
    static constexpr long long id = -767521452;

    /// The payload that a fragment carries. -1 stands for none.
    enum ChoiceFragment : int
    {
        MastershipState = 0,    ///< who is master of the router
        AcquireMastership = 1,  ///< a client wants to become master, and whether it has
        ReleaseMastership = 2,  ///< a client does not want to be master any more, and whether it is not
        OstraInterfacePort = 3, ///< a port of the router
        PelVtConnectServer = 4, ///< the server to connect to
        RouterVtServerPort = 5, ///< the port of a server
        DF_Params = 6           ///< the parameters of the receiver
    };

    /// An empty record: no data block, validation off, no logger.
    Fragment();
    /// Copies the data and the validation flag, not the logger. The copy has a data block of its own.
    Fragment(const Fragment& source);
    /// Shares the data of \a source until either record is next touched, even by a getter. Validation
    /// flag and logger stay.
    Fragment& operator=(const Fragment& source);
    /// Takes the data, the validation flag and the logger of \a source in constant time. References into the
    /// data stay valid. \a source is empty then: it has no data block, but keeps its flag and its logger, and
    /// can be used like a new record.
    Fragment(Fragment&& source) noexcept;
    ~Fragment() override;

    /// Exchanges the data of both records in constant time. Their validation flags and loggers stay. To move
    /// into a record that exists already, swap: assignment always shares the data, and never throws either.
    void swap(Fragment& other) noexcept;
    /// The same.
    friend void swap(Fragment& a, Fragment& b) noexcept { a.swap(b); }

    /// \name Content as a whole
    /// @{

    /// Whether a payload is selected and holds its data.
    bool HasData() const override;
    /// Whether a payload is selected.
    bool AnyData() const;
    /// Whether the record has a data block: false in a new record and after assignment from such a one,
    /// true after the first getter, setter, check, reading or writing.
    bool IsInitialized() const;
    /// Puts every payload back to its default, marks it as not set and selects none; defaults stay.
    void Reset() override;
    /// Resets, then applies the defaults inside each payload. None is selected.
    /// \throws OutOfRangeException what the payload's setter throws for its default.
    void ResetToDefault();
    /// Whether both have selected the same payload, with equal content, or none.
    bool operator==(const Fragment& other) const;
    /// The opposite of equality.
    bool operator!=(const Fragment& other) const;
    /// The class's id.
    static long long GetId();

    /// @}
    /// \name Checking and diagnostics
    /// @{

    /// Demands, when validation is on, that the selected payload is set or holds its data.
    /// \throws IncompleteDefinitionException "Fragment:Check failed. The mandatory member m_... is not
    /// set or mandatory data of the member is not set."
    void Check(bool flag) const override;
    /// `Check(false)`.
    void Check() const override;
    /// Switches validation on or off, here and in the payloads.
    void SetValidate(bool validate) const override;
    /// Sets the logger, here and in the payloads.
    void SetLogger(std::shared_ptr<MODELKIT::Logger> logger) const override;
    /// Does nothing: the type code of a record is its id.
    void SetObjectType(MODELKIT::ObjectTypes type) override;

    /// @}
    /// \name Written forms
    /// @{

    /// Writes the element `Fragment` with the element of the selected payload, if that is set. Writes
    /// nothing when validation is on and HasData() is false.
    /// \throws MKException what Check() and the payload's Check() throw, when validation is on.
    void GetXml(QXmlStreamWriter& writer) const override;
    /// Reads the element on whose start the reader stands: every payload element is selected and read
    /// into, the last one stays selected; unknown elements are skipped.
    /// \throws MKException what reading the payload throws; the payload stays selected and its flag
    /// as it was.
    void ProcessXml(QXmlStreamReader& reader) override;
    /// Writes the frame with the entry of the selected payload, if that is set.
    /// \returns false, writing nothing, when validation is on and HasData() is false.
    /// \throws MKException what Check() and the payload's Check() throw, when validation is on.
    bool GetBinary(QDataStream& stream, int frameId, bool writeId) const override;
    /// Reads a frame's entries: every payload is selected and read into, the last one stays selected;
    /// unknown entries are skipped.
    /// \throws MKException what reading the payload throws.
    /// \throws BinaryParsingException "Fragment::SetBinary(...): Length error occurred during processing
    /// of binary representation"; payloads read until then keep their new values.
    void SetBinary(QDataStream& stream, int length) override;

    /// @}

    /// \name Choice
    /// @{

    /// The selected payload; GetInvalidChoiceFragment() when there is none. The reference stands for
    /// the choice in place until the record is next copied.
    const ChoiceFragment& GetChoiceFragment() const;
    /// Resets the record and selects a payload, which then holds its default and is marked as set. A
    /// number that is neither an enumerator nor the invalid value is refused as that is while validation
    /// is on; otherwise it leaves the record reset, with nothing selected.
    /// \throws OutOfRangeException "Invalid enum value set in 'Fragment'." when \a choice is the
    /// invalid value, whether validation is on or off; the record is reset.
    void InitChoice(const ChoiceFragment& choice);
    /// Selects nothing; the payloads stay as they are.
    void ResetChoiceFragment();
    /// The name of \a choice; a null string for the invalid value and for other numbers.
    QString ChoiceFragmentToName(const ChoiceFragment& choice) const;
    /// The payload called \a name (case counts); the invalid value when there is none.
    ChoiceFragment NameToChoiceFragment(const QString& name) const;
    /// The names of all payloads in the order of their values.
    static QStringList GetChoiceFragments();
    /// The same names for display, translated in the context "QObject".
    static QStringList GetGUIChoiceFragments();
    /// Whether \a choice differs from the invalid value; its range is not tested.
    bool IsValidChoiceFragment(const ChoiceFragment& choice) const;
    /// The value that stands for "none": -1.
    const ChoiceFragment& GetInvalidChoiceFragment() const;

    /// @}

    /// \name MastershipState
    /// Who is master.
    /// @{

    /// The payload for changing in place. Selects this member and marks it as set.
    PELLU300ROUTERINTERFACEXML::MastershipState& GetMastershipState();
    /// The payload, whether it is selected or not.
    const PELLU300ROUTERINTERFACEXML::MastershipState& GetMastershipState() const;
    /// Takes over the data of \a value, selects this member and marks it as set. The payload keeps
    /// its own validation flag and logger.
    void SetMastershipState(const PELLU300ROUTERINTERFACEXML::MastershipState& value);
    /// Whether the member has been given a value since the last reset; it may be set without being
    /// selected.
    bool IsMastershipStateSet() const;
    /// Puts the payload back to its default and marks it as not set. The choice stays where it is.
    void ResetMastershipState();
    /// The default payload; an empty record unless changed.
    const PELLU300ROUTERINTERFACEXML::MastershipState& GetDefaultMastershipState() const;
    /// Changes the default payload; the current one follows at the next reset.
    void SetDefaultMastershipState(const PELLU300ROUTERINTERFACEXML::MastershipState& value);
    /// True: every payload is valid.
    bool IsValidMastershipState(const PELLU300ROUTERINTERFACEXML::MastershipState& value) const;

    /// @}

    /// \name AcquireMastership
    /// The outcome of acquiring mastership.
    /// @{

    /// The payload for changing in place. Selects this member and marks it as set.
    PELLU300ROUTERINTERFACEXML::AcquireMastership& GetAcquireMastership();
    /// The payload, whether it is selected or not.
    const PELLU300ROUTERINTERFACEXML::AcquireMastership& GetAcquireMastership() const;
    /// Takes over the data of \a value, selects this member and marks it as set. The payload keeps
    /// its own validation flag and logger.
    void SetAcquireMastership(const PELLU300ROUTERINTERFACEXML::AcquireMastership& value);
    /// Whether the member has been given a value since the last reset; it may be set without being
    /// selected.
    bool IsAcquireMastershipSet() const;
    /// Puts the payload back to its default and marks it as not set. The choice stays where it is.
    void ResetAcquireMastership();
    /// The default payload; an empty record unless changed.
    const PELLU300ROUTERINTERFACEXML::AcquireMastership& GetDefaultAcquireMastership() const;
    /// Changes the default payload; the current one follows at the next reset.
    void SetDefaultAcquireMastership(const PELLU300ROUTERINTERFACEXML::AcquireMastership& value);
    /// True: every payload is valid.
    bool IsValidAcquireMastership(const PELLU300ROUTERINTERFACEXML::AcquireMastership& value) const;

    /// @}

    /// \name ReleaseMastership
    /// The outcome of releasing mastership.
    /// @{

    /// The payload for changing in place. Selects this member and marks it as set.
    PELLU300ROUTERINTERFACEXML::ReleaseMastership& GetReleaseMastership();
    /// The payload, whether it is selected or not.
    const PELLU300ROUTERINTERFACEXML::ReleaseMastership& GetReleaseMastership() const;
    /// Takes over the data of \a value, selects this member and marks it as set. The payload keeps
    /// its own validation flag and logger.
    void SetReleaseMastership(const PELLU300ROUTERINTERFACEXML::ReleaseMastership& value);
    /// Whether the member has been given a value since the last reset; it may be set without being
    /// selected.
    bool IsReleaseMastershipSet() const;
    /// Puts the payload back to its default and marks it as not set. The choice stays where it is.
    void ResetReleaseMastership();
    /// The default payload; an empty record unless changed.
    const PELLU300ROUTERINTERFACEXML::ReleaseMastership& GetDefaultReleaseMastership() const;
    /// Changes the default payload; the current one follows at the next reset.
    void SetDefaultReleaseMastership(const PELLU300ROUTERINTERFACEXML::ReleaseMastership& value);
    /// True: every payload is valid.
    bool IsValidReleaseMastership(const PELLU300ROUTERINTERFACEXML::ReleaseMastership& value) const;

    /// @}

    /// \name OstraInterfacePort
    /// The port of the Ostra interface.
    /// @{

    /// The payload for changing in place. Selects this member and marks it as set.
    PELLU300ROUTERINTERFACEXML::OstraInterfacePort& GetOstraInterfacePort();
    /// The payload, whether it is selected or not.
    const PELLU300ROUTERINTERFACEXML::OstraInterfacePort& GetOstraInterfacePort() const;
    /// Takes over the data of \a value, selects this member and marks it as set. The payload keeps
    /// its own validation flag and logger.
    void SetOstraInterfacePort(const PELLU300ROUTERINTERFACEXML::OstraInterfacePort& value);
    /// Whether the member has been given a value since the last reset; it may be set without being
    /// selected.
    bool IsOstraInterfacePortSet() const;
    /// Puts the payload back to its default and marks it as not set. The choice stays where it is.
    void ResetOstraInterfacePort();
    /// The default payload; an empty record unless changed.
    const PELLU300ROUTERINTERFACEXML::OstraInterfacePort& GetDefaultOstraInterfacePort() const;
    /// Changes the default payload; the current one follows at the next reset.
    void SetDefaultOstraInterfacePort(const PELLU300ROUTERINTERFACEXML::OstraInterfacePort& value);
    /// True: every payload is valid.
    bool IsValidOstraInterfacePort(const PELLU300ROUTERINTERFACEXML::OstraInterfacePort& value) const;

    /// @}

    /// \name PelVtConnectServer
    /// The server to connect to.
    /// @{

    /// The payload for changing in place. Selects this member and marks it as set.
    PELLU300ROUTERINTERFACEXML::PelVtConnectServer& GetPelVtConnectServer();
    /// The payload, whether it is selected or not.
    const PELLU300ROUTERINTERFACEXML::PelVtConnectServer& GetPelVtConnectServer() const;
    /// Takes over the data of \a value, selects this member and marks it as set. The payload keeps
    /// its own validation flag and logger.
    void SetPelVtConnectServer(const PELLU300ROUTERINTERFACEXML::PelVtConnectServer& value);
    /// Whether the member has been given a value since the last reset; it may be set without being
    /// selected.
    bool IsPelVtConnectServerSet() const;
    /// Puts the payload back to its default and marks it as not set. The choice stays where it is.
    void ResetPelVtConnectServer();
    /// The default payload; an empty record unless changed.
    const PELLU300ROUTERINTERFACEXML::PelVtConnectServer& GetDefaultPelVtConnectServer() const;
    /// Changes the default payload; the current one follows at the next reset.
    void SetDefaultPelVtConnectServer(const PELLU300ROUTERINTERFACEXML::PelVtConnectServer& value);
    /// True: every payload is valid.
    bool IsValidPelVtConnectServer(const PELLU300ROUTERINTERFACEXML::PelVtConnectServer& value) const;

    /// @}

    /// \name RouterVtServerPort
    /// The port of the router's server.
    /// @{

    /// The payload for changing in place. Selects this member and marks it as set.
    PELLU300ROUTERINTERFACEXML::RouterVtServerPort& GetRouterVtServerPort();
    /// The payload, whether it is selected or not.
    const PELLU300ROUTERINTERFACEXML::RouterVtServerPort& GetRouterVtServerPort() const;
    /// Takes over the data of \a value, selects this member and marks it as set. The payload keeps
    /// its own validation flag and logger.
    void SetRouterVtServerPort(const PELLU300ROUTERINTERFACEXML::RouterVtServerPort& value);
    /// Whether the member has been given a value since the last reset; it may be set without being
    /// selected.
    bool IsRouterVtServerPortSet() const;
    /// Puts the payload back to its default and marks it as not set. The choice stays where it is.
    void ResetRouterVtServerPort();
    /// The default payload; an empty record unless changed.
    const PELLU300ROUTERINTERFACEXML::RouterVtServerPort& GetDefaultRouterVtServerPort() const;
    /// Changes the default payload; the current one follows at the next reset.
    void SetDefaultRouterVtServerPort(const PELLU300ROUTERINTERFACEXML::RouterVtServerPort& value);
    /// True: every payload is valid.
    bool IsValidRouterVtServerPort(const PELLU300ROUTERINTERFACEXML::RouterVtServerPort& value) const;

    /// @}

    /// \name DF_Params
    /// The tuning of a measurement.
    /// @{

    /// The payload for changing in place. Selects this member and marks it as set.
    PELLU300ROUTERINTERFACEXML::DF_Params& GetDF_Params();
    /// The payload, whether it is selected or not.
    const PELLU300ROUTERINTERFACEXML::DF_Params& GetDF_Params() const;
    /// Takes over the data of \a value, selects this member and marks it as set. The payload keeps
    /// its own validation flag and logger.
    void SetDF_Params(const PELLU300ROUTERINTERFACEXML::DF_Params& value);
    /// Whether the member has been given a value since the last reset; it may be set without being
    /// selected.
    bool IsDF_ParamsSet() const;
    /// Puts the payload back to its default and marks it as not set. The choice stays where it is.
    void ResetDF_Params();
    /// The default payload; an empty record unless changed.
    const PELLU300ROUTERINTERFACEXML::DF_Params& GetDefaultDF_Params() const;
    /// Changes the default payload; the current one follows at the next reset.
    void SetDefaultDF_Params(const PELLU300ROUTERINTERFACEXML::DF_Params& value);
    /// True: every payload is valid.
    bool IsValidDF_Params(const PELLU300ROUTERINTERFACEXML::DF_Params& value) const;

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

/// The names of all enumerators, in value order.
ROUTERINTERFACE_EXPORT const QStringList& NamesOf(Fragment::ChoiceFragment);

} // namespace PELLU300ROUTERINTERFACEXML

Q_DECLARE_TYPEINFO(PELLU300ROUTERINTERFACEXML::Fragment, Q_RELOCATABLE_TYPE);
