// SPDX-License-Identifier: MIT
/// \file
/// What reading accepts in silence, for those who want to know.
#pragma once

#include "modelkit/Export.h"
#include "modelkit/Place.h"

#include <QtCore/QString>
#include <QtCore/QVector>

#include <memory>

namespace MODELKIT {

/// Collects what the operations on whole documents accept in silence, from its construction to its
/// destruction and in the thread that constructed it. Of several reports only the newest collects. Reports
/// may be destroyed in any order and in any thread; only the thread of a report may look into it while it
/// collects. The entries of a document come when its reading ends.
///
/// A document that is refused because it is not well-formed, has wrong lengths or exceeds a limit leaves no
/// entries.
///
/// **When reading succeeds without an entry, and none was dropped, nothing was lost.** Writing the record
/// again in the form from which it was read, with validation on or off, either is refused or gives the
/// same information; and reading that, by a record with the same defaults and invalid values, gives an
/// equal record. That holds as long as the defaults of nested records hold no data: reading begins with a
/// reset, which takes them over.
///
/// Information is which members are there, their values, and the order of the items in lists. These are
/// not:
/// - in XML comments, processing instructions, the declaration and the encoding, white space between
///   elements, and how characters are written: as they stand, as references or as CDATA;
/// - the order of members, other than the items of a list;
/// - the spelling of values: numbers such as `007`, `+7`, `1e3`, `2.5` or `-0`, white space around them,
///   and `0`, `1`, `TRUE` or `False` for truth values;
/// - whether a list without items is there;
/// - whether the name of an enumerator that is none is an empty or a null text;
/// - in the binary form the byte order, and how the compressed form is cut and compressed.
///
/// The promise is for one form. What the other form cannot carry is no entry: a number above 2147483647
/// is kept by the binary form, but XML does not give it back. Nor can it cover what a derived class does
/// when it reads in its own way.
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
        UnknownElement,  ///< an element that the record does not know was skipped
        UnknownTag,      ///< a binary entry that the record does not know was skipped
        RepeatedMember,  ///< a member came again; the last one counts, a record is read on top of the first
        Attribute,       ///< an attribute was ignored
        NotANumber,      ///< a text that is no number of the member's type was taken for 0 or infinity
        WrappedNumber,   ///< of a number that is negative or too large the low 32 bits were stored
        LostDecimals,    ///< a number has more than the two decimals that are written, or too many digits
        UnusualBoolean,  ///< a text other than true, false, 1 and 0 was taken for true or false
        BytesBehind,     ///< bytes behind the form, or behind the plain form inside a compressed one, were
                         ///< ignored
        ReplacedPayload, ///< a payload of a fragment came before another; only the last one counts
        IgnoredText,     ///< a text between the elements of a record was ignored
        ElementInText,   ///< an element inside the text of a member was skipped
        ReplacedCharacters, ///< bytes of a text that stand for no character were replaced
        NotFinite,          ///< a number is infinite or none at all ("nan", which equals nothing)
        UnknownName,        ///< a text that is no enumerator's name was taken for the invalid value
        MissingMember,      ///< a member is missing that is written all the same, and then is there
        MissingPayload,     ///< a fragment has no payload and so is not written under validation
        Prefix,             ///< the namespace prefix of a name was left out
        WrongLength         ///< a binary entry announces another length than its value takes
    };

    /// One thing that reading has noticed.
    struct Entry
    {
        /// Which of them.
        Kind kind;
        /// One sentence without the place.
        QString text;
        /// Where in the document.
        Place place;
    };

    /// The number of entries that are kept; further ones are only counted.
    static constexpr int maximalEntries = 10000;

    /// The number of characters that the paths of the entries of one document may have together. The
    /// entries behind are only counted.
    static constexpr qint64 maximalPathCharacters = 8 << 20;

    ReadingReport();
    ReadingReport(const ReadingReport&) = delete;
    ReadingReport& operator=(const ReadingReport&) = delete;
    ~ReadingReport();

    /// The entries in the order in which they were met.
    const QVector<Entry>& GetEntries() const;

    /// The number of entries that were not kept.
    qint64 GetDropped() const;

    /// Forgets all entries.
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

    // That of the newest report of this thread; null when there is none.
    static std::shared_ptr<Collected> Current();

    std::unique_ptr<Entering> m_entering;
};

} // namespace MODELKIT
