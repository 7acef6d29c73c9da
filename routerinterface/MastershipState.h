// SPDX-License-Identifier: MIT
/// \file
/// The record `MastershipState`.
#pragma once

#include "routerinterface/Record.h"

namespace PELLU300ROUTERINTERFACEXML {

/// Says who is master of the router.
class ROUTERINTERFACE_EXPORT MastershipState : public MODELKIT::IMKObject
{
public:
    /// Identifies the class; also the id of its whole-object binary form.
    static constexpr long long id = -687910292;

    /// Who controls the router.
    enum State : int
    {
        NoMasterPresent = 0, ///< no client does
        MasterPresent = 1,   ///< a client does
        RouterIsMaster = 2   ///< the router itself does
    };

    /// An empty record: no data block, validation off, no logger.
    MastershipState();
    /// Copies the data and the validation flag, not the logger. The copy has a data block of its own.
    MastershipState(const MastershipState& source);
    /// Shares the data of \a source until either record is next touched, even by a getter. Validation
    /// flag and logger stay.
    MastershipState& operator=(const MastershipState& source);
    /// Takes the data, the validation flag and the logger of \a source in constant time. References into the
    /// data stay valid. \a source is empty then: it has no data block, but keeps its flag and its logger, and
    /// can be used like a new record.
    MastershipState(MastershipState&& source) noexcept;
    ~MastershipState() override;

    /// Exchanges the data of both records in constant time. Their validation flags and loggers stay. To move
    /// into a record that exists already, swap: assignment always shares the data, and never throws either.
    void swap(MastershipState& other) noexcept;
    /// The same.
    friend void swap(MastershipState& a, MastershipState& b) noexcept { a.swap(b); }

    /// \name Content as a whole
    /// @{

    /// True: the record always counts as holding its data.
    bool HasData() const override;
    /// Whether the state is set or the client id is not a null string.
    bool AnyData() const;
    /// Whether the record has a data block: false in a new record and after assignment from such a one,
    /// true after the first getter, setter, check, reading or writing.
    bool IsInitialized() const;
    /// Puts every member back and marks it as not set; defaults stay.
    void Reset() override;
    /// Resets, then gives every member whose default was changed that default, marked as set. A null
    /// default client id is left out.
    /// \throws OutOfRangeException what SetState() throws for the default state.
    void ResetToDefault();
    /// Whether the same members are set, to equal values. Defaults do not count.
    bool operator==(const MastershipState& other) const;
    /// The opposite of equality.
    bool operator!=(const MastershipState& other) const;
    /// The class's id.
    static long long GetId();

    /// @}
    /// \name Checking and diagnostics
    /// @{

    /// Demands that a state that is set is an enumerator and a client id that is set is not a null
    /// string, whether validation is on or off.
    /// \throws OutOfRangeException "MastershipState: Please set State properly." or
    /// "MastershipState: Please set MasterClientID properly."
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

    /// Writes the element `MastershipState` with one child element for each member that is set.
    /// \throws OutOfRangeException what Check() throws, when validation is on; nothing is written then.
    void GetXml(QXmlStreamWriter& writer) const override;
    /// Reads the element on whose start the reader stands into the record. Children in any order,
    /// unknown ones are skipped; members without an element keep their values.
    /// \throws OutOfRangeException what SetState() throws for an unknown name.
    void ProcessXml(QXmlStreamReader& reader) override;
    /// Writes the frame with one entry for each member that is set.
    /// \returns true.
    /// \throws OutOfRangeException what Check() throws, when validation is on; nothing is written then.
    bool GetBinary(QDataStream& stream, int frameId, bool writeId) const override;
    /// Reads a frame's entries; unknown ones are skipped, members without one keep their values.
    /// \throws OutOfRangeException what the setters throw.
    /// \throws BinaryParsingException "MastershipState::SetBinary(...): Length error occurred during
    /// processing of binary representation"; members read until then keep their new values.
    void SetBinary(QDataStream& stream, int length) override;

    /// @}

    /// \name State
    /// Who controls the router.
    /// @{

    /// The current value; while the member is not set, its default as it was at the last reset (at first
    /// -1).
    State GetState() const;
    /// Stores the value and marks the member as set.
    /// \throws OutOfRangeException "enum is not valid (classname=MastershipState,membername=m_state)" when
    /// \a value is no enumerator and validation is on; the member keeps its value. With validation
    /// off any number is stored.
    void SetState(const State& value);
    /// Whether the member has been given a value.
    bool IsStateSet() const;
    /// Puts the member back to its default and marks it as not set.
    void ResetState();
    /// The default; -1 unless changed. Valid until the record is next changed or copied.
    const State& GetDefaultState() const;
    /// Changes the default; the current value follows at the next reset. Any number is accepted.
    void SetDefaultState(const State& value);
    /// Whether \a value is an enumerator.
    bool IsValidState(const State& value) const;
    /// The value that stands for "none" and that NameToState() gives for an unknown name; -1 unless
    /// changed. Valid until the record is next changed or copied.
    const State& GetInvalidState() const;
    /// Changes the value that stands for "none".
    void SetInvalidState(const State& value);
    /// The name of \a value; a null string when it is no enumerator.
    QString StateToName(const State& value) const;
    /// The enumerator called \a name (case counts); GetInvalidState() when there is none.
    State NameToState(const QString& name) const;
    /// The name of the current value.
    QString GetStateAsString() const;
    /// The names of all enumerators in the order of their values.
    static QStringList GetStates();
    /// The same names for display, translated in the context "QObject".
    static QStringList GetGUIStates();

    /// @}

    /// \name MasterClientID
    /// The client that is master. A null string stands for no text at all; an empty one is a text
    /// like any other.
    /// @{

    /// The current text; a null string while the member is not set.
    QString GetMasterClientID();
    /// Stores the text and marks the member as set.
    /// \throws OutOfRangeException "MastershipState: Please set MasterClientID properly." when \a value is a
    /// null string and validation is on; the member keeps its value.
    void SetMasterClientID(QString value);
    /// Whether the member has been given a value.
    bool IsMasterClientIDSet() const;
    /// Makes the text a null string, whatever the default, and marks the member as not set.
    void ResetMasterClientID();
    /// The default; a null string unless changed. Valid until the record is next changed or copied.
    const QString& GetDefaultMasterClientID() const;
    /// Changes the default, which takes effect with ResetToDefault() only.
    void SetDefaultMasterClientID(const QString& value);
    /// Whether \a value is not a null string.
    bool IsValidMasterClientID(const QString& value) const;

    /// @}

    /// \name Translation
    /// Look \a text up in the installed translations, in the context
    /// "PELLU300ROUTERINTERFACEXML::MastershipState". Both forms take UTF-8.
    /// @{

    /// The translation of the text; \a text itself without one. \a disambiguation tells equal texts apart;
    /// may be null.
    static QString tr(const char* text, const char* disambiguation = nullptr);
    /// The translation of \a text for \a n things; \a disambiguation tells equal texts apart and may be null.
    static QString tr(const char* text, const char* disambiguation, int n);
    /// The translation of the text; \a text itself without one. \a disambiguation tells equal texts apart;
    /// may be null.
    static QString trUtf8(const char* text, const char* disambiguation = nullptr);
    /// The translation of \a text for \a n things; \a disambiguation tells equal texts apart and may be null.
    static QString trUtf8(const char* text, const char* disambiguation, int n);
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
ROUTERINTERFACE_EXPORT const QStringList& NamesOf(MastershipState::State);

} // namespace PELLU300ROUTERINTERFACEXML

Q_DECLARE_TYPEINFO(PELLU300ROUTERINTERFACEXML::MastershipState, Q_RELOCATABLE_TYPE);
