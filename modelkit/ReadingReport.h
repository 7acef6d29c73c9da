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
/// collects.
///
/// A document that is refused because it is not well-formed, is no whole form or exceeds a limit leaves no
/// entries.
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
        UnknownElement, ///< an element that the record does not know was skipped
        UnknownTag,     ///< a binary entry that the record does not know was skipped
        RepeatedMember, ///< a member came again; the last one counts
        Attribute,      ///< an attribute was ignored
        NotANumber,     ///< a text that is no number of the member's type was taken for 0
        WrappedNumber,  ///< a negative number was stored as 4294967296 more
        LostDecimals,   ///< a number has more than the two decimals that are written
        UnusualBoolean, ///< a text other than true, false, 1 and 0 was taken for true or false
        BytesBehind     ///< bytes behind a binary form were ignored
    };

    struct Entry
    {
        Kind kind;
        /// One sentence without the place.
        QString text;
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
