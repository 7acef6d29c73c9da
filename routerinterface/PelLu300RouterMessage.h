// SPDX-License-Identifier: MIT
/// \file
/// The record `PelLu300RouterMessage`.
#pragma once

#include "routerinterface/Fragment.h"
#include "routerinterface/Record.h"

namespace PELLU300ROUTERINTERFACEXML {

/// The message: what it is, a number that identifies it, and an ordered list of payload items.
class ROUTERINTERFACE_EXPORT PelLu300RouterMessage : public MODELKIT::IMKObject
{
public:
    /// Identifies the class; also the id of its whole-object binary form.
    static constexpr long long id = -356475558;

    /// What a message is.
    enum Type : int
    {
        Request = 0, ///< a client asks for something
        Reply = 1,   ///< the answer to a request
        Event = 2    ///< something that happened without a request
    };

    /// An empty record: no data block, validation off, no logger.
    PelLu300RouterMessage();
    /// Copies the data and the validation flag, not the logger. The copy has a data block of its own.
    PelLu300RouterMessage(const PelLu300RouterMessage& source);
    /// Shares the data of \a source until either record is next touched, even by a getter. Validation
    /// flag and logger stay.
    PelLu300RouterMessage& operator=(const PelLu300RouterMessage& source);
    /// Takes the data, the validation flag and the logger of \a source in constant time. References into the
    /// data stay valid. \a source is empty then: it has no data block, but keeps its flag and its logger, and
    /// can be used like a new record.
    PelLu300RouterMessage(PelLu300RouterMessage&& source) noexcept;
    ~PelLu300RouterMessage() override;

    /// Exchanges the data of both records in constant time. Their validation flags and loggers stay. To move
    /// into a record that exists already, swap: assignment always shares the data, and never throws either.
    void swap(PelLu300RouterMessage& other) noexcept;
    /// The same.
    friend void swap(PelLu300RouterMessage& a, PelLu300RouterMessage& b) noexcept { a.swap(b); }

    /// \name Content as a whole
    /// @{

    /// Whether the type is set.
    bool HasData() const override;
    /// Whether the type or the number is set or the list holds an item.
    bool AnyData() const;
    /// Whether the record has a data block: false in a new record and after assignment from such a one,
    /// true after the first getter, setter, check, reading or writing.
    bool IsInitialized() const;
    /// Puts every member back and marks it as not set; defaults stay.
    void Reset() override;
    /// Resets, then gives every member whose default was changed that default, marked as set; a default
    /// item is appended to the list.
    /// \throws MKException what SetType() and AppendFragment() throw for the defaults.
    void ResetToDefault();
    /// Whether the same members are set, to equal values. Defaults do not count.
    bool operator==(const PelLu300RouterMessage& other) const;
    /// The opposite of equality.
    bool operator!=(const PelLu300RouterMessage& other) const;
    /// The class's id.
    static long long GetId();

    /// @}
    /// \name Checking and diagnostics
    /// @{

    /// Demands that the type is set and an enumerator, whether validation is on or off; then checks
    /// every item of a list that is set.
    /// \throws OutOfRangeException "PelLu300RouterMessage: Please set Type properly."
    /// \throws IncompleteDefinitionException what Fragment::Check() throws.
    void Check(bool flag) const override;
    /// `Check(false)`.
    void Check() const override;
    /// Switches validation on or off, here and in the items.
    void SetValidate(bool validate) const override;
    /// Sets the logger, here and in the items.
    void SetLogger(std::shared_ptr<MODELKIT::Logger> logger) const override;
    /// Does nothing: the type code of a record is its id.
    void SetObjectType(MODELKIT::ObjectTypes type) override;

    /// @}
    /// \name Written forms
    /// @{

    /// Writes the element `PelLu300RouterMessage` with `Type` (always), `MessageID` (when set) and one
    /// `Fragment` element for each item.
    /// \throws MKException what Check() and the checks of the payloads throw, when validation is on.
    void GetXml(QXmlStreamWriter& writer) const override;
    /// Reads the element on whose start the reader stands into the record; every `Fragment` element is
    /// appended to the list, unknown elements are skipped, members without an element keep their values.
    /// \throws MKException what SetType(), AppendFragment() and reading an item throw; what was read
    /// until then stays.
    void ProcessXml(QXmlStreamReader& reader) override;
    /// Writes the frame with the entry of the type (always), of the number (when set) and of the list
    /// (when it holds an item).
    /// \returns false, writing nothing, when validation is on and HasData() is false.
    /// \throws MKException what Check() and the checks of the payloads throw, when validation is on.
    bool GetBinary(QDataStream& stream, int frameId, bool writeId) const override;
    /// Reads a frame's entries; items are appended to the list, unknown entries are skipped, members
    /// without one keep their values.
    /// \throws MKException what SetType(), AppendFragment() and reading an item throw.
    /// \throws BinaryParsingException "PelLu300RouterMessage::SetBinary(...): Length error occurred during
    /// processing of binary representation"; what was read until then stays.
    void SetBinary(QDataStream& stream, int length) override;

    /// @}

    /// \name Type
    /// What the message is. Without it a message is incomplete.
    /// @{

    /// The current value; while the member is not set, its default as it was at the last reset (at first
    /// -1).
    Type GetType() const;
    /// Stores the value and marks the member as set.
    /// \throws OutOfRangeException "enum is not valid (classname=PelLu300RouterMessage,membername=m_type)"
    /// when \a value is no enumerator and validation is on; the member keeps its value. With validation off
    /// any number is stored.
    void SetType(const Type& value);
    /// Whether the member has been given a value.
    bool IsTypeSet() const;
    /// Puts the member back to its default and marks it as not set.
    void ResetType();
    /// The default; -1 unless changed. Valid until the record is next changed or copied.
    const Type& GetDefaultType() const;
    /// Changes the default; the current value follows at the next reset. Any number is accepted.
    void SetDefaultType(const Type& value);
    /// Whether \a value is an enumerator.
    bool IsValidType(const Type& value) const;
    /// The value that stands for "none" and that NameToType() gives for an unknown name; -1 unless
    /// changed. Valid until the record is next changed or copied.
    const Type& GetInvalidType() const;
    /// Changes the value that stands for "none".
    void SetInvalidType(const Type& value);
    /// The name of \a value; a null string when it is no enumerator.
    QString TypeToName(const Type& value) const;
    /// The enumerator called \a name (case counts); GetInvalidType() when there is none.
    Type NameToType(const QString& name) const;
    /// The name of the current value.
    QString GetTypeAsString() const;
    /// The names of all enumerators in the order of their values.
    static QStringList GetTypes();
    /// The same names for display, translated in the context "QObject".
    static QStringList GetGUITypes();

    /// @}

    /// \name MessageID
    /// The number by which a reply refers to its request, from 0 to 4294967295. Values above
    /// 2147483647 are written to XML but read back as 0.
    /// @{

    /// The current value; while the member is not set, its default as it was at the last reset.
    unsigned int GetMessageID() const;
    /// Stores the value and marks the member as set. Every value is accepted.
    void SetMessageID(unsigned int value);
    /// Whether the member has been given a value.
    bool IsMessageIDSet() const;
    /// Puts the member back to its default and marks it as not set.
    void ResetMessageID();
    /// The default; \c 0 unless changed. Valid until the record is next changed or copied.
    const unsigned int& GetDefaultMessageID() const;
    /// Changes the default; the current value follows at the next reset.
    void SetDefaultMessageID(const unsigned int& value);
    /// True: every value is valid.
    bool IsValidMessageID(const unsigned int& value) const;

    /// @}

    /// \name Fragment
    /// The payload items in order.
    /// @{

    /// The list for changing in place. Handing it out counts as setting the member, even if nothing
    /// is changed.
    QVector<class Fragment>& GetFragment();
    /// The list; the member's flag stays as it is.
    const QVector<class Fragment>& GetFragment() const;
    /// Replaces the whole list and marks the member as set; the items are not checked.
    void SetFragment(const QVector<class Fragment>& value);
    /// Appends a copy of \a item and marks the member as set. The copy has the item's validation flag
    /// and no logger until the message next hands its own settings down.
    /// \throws IncompleteDefinitionException "PelLu300RouterMessage: Tried to append not completely
    /// defined or invalid item Fragment." when validation is on and \a item has no data; the list
    /// stays as it is.
    void AppendFragment(const class Fragment& item);
    /// Appends an empty item and marks the list as set. To fill the item in its place is the fastest way to
    /// build a list: nothing is copied. Unlike AppendFragment(), this accepts an item without data also when
    /// validation is on, and such an item is not written then.
    /// \returns the item, valid until the list changes. It has the message's validation flag and logger.
    class Fragment& AddFragment();
    /// Whether the member has been given a value.
    bool IsFragmentSet() const;
    /// Empties the list and marks the member as not set.
    void ResetFragment();
    /// The default item, which ResetToDefault() appends when it has been changed; at first an empty
    /// fragment.
    const class Fragment& GetDefaultFragment() const;
    /// Changes the default item.
    void SetDefaultFragment(const class Fragment& value);
    /// True: every list is valid.
    bool IsValidFragment(const QVector<class Fragment>& value) const;

    /// @}

    /// \name Translation
    /// Look \a text up in the installed translations, in the context
    /// "PELLU300ROUTERINTERFACEXML::PelLu300RouterMessage". Both forms take UTF-8.
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
ROUTERINTERFACE_EXPORT const QStringList& NamesOf(PelLu300RouterMessage::Type);

} // namespace PELLU300ROUTERINTERFACEXML

Q_DECLARE_TYPEINFO(PELLU300ROUTERINTERFACEXML::PelLu300RouterMessage, Q_RELOCATABLE_TYPE);
