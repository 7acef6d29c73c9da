// SPDX-License-Identifier: MIT
/// \file
/// What reading accepts silently.
#pragma once

#include "modelkit/Export.h"
#include "modelkit/Place.h"

#include <QtCore/QString>
#include <QtCore/QVector>

#include <memory>

namespace MODELKIT {

/// Collects what the operations on whole documents accept silently in the thread that constructed the report,
/// from its construction to its destruction. When there are several reports, only the newest one collects.
/// Reports may be destroyed in any order and in any thread, but only the thread of a report may access it
/// while it collects. The entries of a document are added when reading it ends.
///
/// A document that is refused because it is not well-formed, has wrong lengths or exceeds a limit adds no
/// entries.
///
/// **When reading succeeds without an entry, and none was dropped, nothing was lost.** Writing the record
/// again in the same form, with validation on or off, either is refused or gives the same information.
/// Reading that into a record with the same defaults and invalid values gives an equal record. This holds as
/// long as the defaults of nested records hold no data: reading begins with a reset, which restores them.
///
/// The information of a document is which members are present, their values, and the order of list items. The
/// following is not information:
/// - in XML: comments, processing instructions, the XML declaration and the encoding, white space between
///   elements, and whether characters are written directly, as references or as CDATA;
/// - the order of members;
/// - the spelling of values: numbers such as `007`, `+7`, `1e3`, `2.5` or `-0`, white space around them,
///   and `0`, `1`, `TRUE` or `False` for truth values;
/// - whether an empty list is present;
/// - whether the missing name of an invalid enumerator is an empty or a null text;
/// - in the binary form: the byte order, and how the compressed form is divided and compressed.
///
/// The promise is for one form only. What the other form cannot represent makes no entry: the binary form
/// keeps a number above 2147483647, but XML does not give it back. Nor does the promise cover a derived class
/// that reads in its own way.
///
/// \code
/// MODELKIT::ReadingReport report;
/// document.LoadXml(path);
/// for (const auto& entry : report.GetEntries())
///     qWarning() << entry.place.ToString() << entry.text;
/// \endcode
class MODELKIT_EXPORT ReadingReport
{
public:
    /// What was accepted.
    enum Kind : int
    {
        UnknownElement,     ///< an element that the record does not know was skipped
        UnknownTag,         ///< a binary entry that the record does not know was skipped
        RepeatedMember,     ///< a member came again; the last one counts, a record is read into the first
        Attribute,          ///< an attribute was ignored
        NotANumber,         ///< a text that is no number of the member's type was read as 0 or infinity
        WrappedNumber,      ///< a number is negative or too large; its low 32 bits were stored
        LostDecimals,       ///< a number has more than the two decimals that are written, or too many digits
        UnusualBoolean,     ///< a text other than true, false, 1 and 0 was read as true or false
        BytesBehind,        ///< bytes after the form, or after the form inside a compressed one, were ignored
        ReplacedPayload,    ///< a fragment has several payloads; only the last one counts
        IgnoredText,        ///< a text between the elements of a record was ignored
        ElementInText,      ///< an element inside the text of a member was skipped
        ReplacedCharacters, ///< malformed bytes of a text were replaced
        NotFinite,          ///< a number is infinite or not a number ("nan", which equals nothing)
        UnknownName,        ///< a text that is no enumerator's name was read as the invalid value
        MissingMember,      ///< a member is missing that is always written, so that it is present afterwards
        MissingPayload,     ///< a fragment has no payload, so that it is not written while validation is on
        Prefix,             ///< the namespace prefix of a name was ignored
        WrongLength         ///< a binary entry announces another length than its value has
    };

    /// One thing that reading has noticed.
    struct Entry
    {
        /// What was accepted.
        Kind kind;
        /// One sentence without the place.
        QString text;
        /// Where it is in the document.
        Place place;
        /// The text of the member as it stands in the document, truncated after maximalValueCharacters. Null
        /// for what is not about such a text.
        QString value = {};
    };

    /// The maximal length of Entry::value.
    static constexpr int maximalValueCharacters = 100;

    /// The maximal number of entries that are kept; further ones are only counted.
    static constexpr int maximalEntries = 10000;

    /// The maximal total length, in characters, of the paths in the entries of one document. Further entries
    /// are only counted.
    static constexpr qint64 maximalPathCharacters = 8 << 20;

    /// Begins to collect in this thread.
    ReadingReport();
    /// Not copied: it collects itself.
    ReadingReport(const ReadingReport&) = delete;
    /// Not copied: it collects itself.
    ReadingReport& operator=(const ReadingReport&) = delete;
    /// Ends collecting; the report before collects again.
    ~ReadingReport();

    /// The entries in the order in which they were found.
    const QVector<Entry>& GetEntries() const;

    /// The number of entries that were not kept.
    qint64 GetDropped() const;

    /// Adds entries to the newest report of this thread, for a reader of another form; nothing without a
    /// report.
    /// \param entries what the reader has accepted
    /// \param dropped the number of further entries that the reader has not kept.
    static void Add(const QVector<Entry>& entries, qint64 dropped);

    /// Removes all entries and resets GetDropped() to 0.
    void Clear();

private:
    friend class DocumentContext;
    class Entering;

    // Shared with the operation that is collecting.
    struct Collected
    {
        QVector<Entry> entries;
        qint64 dropped = 0;
    };

    // The collection of this thread's newest report; null when there is none.
    static std::shared_ptr<Collected> Current();

    std::unique_ptr<Entering> m_entering;
};

} // namespace MODELKIT
