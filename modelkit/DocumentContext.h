// SPDX-License-Identifier: MIT
// The state of one operation on a whole document, beside the object itself. Not installed.
#pragma once

#include "modelkit/Failure.h"
#include "modelkit/Limits.h"
#include "modelkit/ReadingReport.h"

#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <memory>

class QXmlStreamReader;

namespace MODELKIT {

// Exists while an operation in this thread reads or writes a whole document, or transfers one object into
// another. Records ask for it through Current(), once for each operation. Without one, `ProcessXml`,
// `SetBinary` or `GetBinary` was called directly.
class MODELKIT_EXPORT DocumentContext
{
public:
    // Transfer: the binary form carries the content from object to object without loss.
    enum class Purpose
    {
        Reading,
        Writing,
        Transfer
    };

    explicit DocumentContext(Purpose purpose);
    DocumentContext(const DocumentContext&) = delete;
    DocumentContext& operator=(const DocumentContext&) = delete;
    ~DocumentContext();

    static DocumentContext* Current() noexcept;

    bool IsTransfer() const { return m_purpose == Purpose::Transfer; }
    // Whether a text that the form cannot represent is refused with a NotRepresentableException. Otherwise
    // its lone surrogates are written as question marks.
    bool RefusesUnrepresentable() const { return m_purpose != Purpose::Reading; }
    const Limits& GetLimits() const { return m_limits; }

    // --- limits: false, with the failure recorded, when one is exceeded

    // Called with every token that is read.
    bool CountToken(QXmlStreamReader& reader);
    // Called before an item is appended to a list that has that many.
    bool AdmitsItem(qint64 items);

    void Fail(Failure::Kind kind, const QString& text);
    const Failure& GetFailure() const { return m_failure; }

    // --- report

    bool IsReporting() const { return m_report != nullptr; }
    // An entry at the reader's position; line, column and path are found afterwards.
    void Report(ReadingReport::Kind kind, const QString& text, const QXmlStreamReader& reader,
                const QString& value = QString());
    // An entry at a byte offset of the binary form, in the member that was entered last.
    void Report(ReadingReport::Kind kind, const QString& text, qint64 offset, const QString& member,
                const QString& value = QString());

    // The offset of the frame's content in the binary form.
    void SetBaseOffset(qint64 offset) { m_baseOffset = offset; }

    // The path to the member that is being read from a binary form; kept for the report only.
    void Enter(const QString& name) { m_path.append(name); }
    void Leave() { m_path.removeLast(); }

    // Drops the entries, because the document turned out to be none.
    void DropReport();

    // Passes the entries to the report. Those of an XML document get the places that find(characterOffset)
    // returns. Names can be long and paths deep: entries whose paths exceed the maximum are dropped.
    template <class Find>
    void DeliverReport(const Find& find)
    {
        for (Noticed& noticed : m_noticed) {
            if (noticed.characterOffset >= 0)
                noticed.entry.place = find(noticed.characterOffset);
            if (!Deliver(noticed.entry))
                break;
        }
        EndReport();
    }
    bool HasNoticed() const { return !m_noticed.isEmpty(); }

private:
    // An entry, and the reader's offset in an XML document or -1.
    struct Noticed
    {
        ReadingReport::Entry entry;
        qint64 characterOffset;
    };

    void Notice(const Noticed& noticed);
    bool Deliver(const ReadingReport::Entry& entry);
    void EndReport();

    Purpose m_purpose;
    Limits m_limits;
    std::shared_ptr<ReadingReport::Collected> m_report;
    DocumentContext* m_outer;
    Failure m_failure;
    int m_depth = 0;
    qint64 m_baseOffset = 0;
    qint64 m_pathCharacters = 0;
    QStringList m_path;
    QVector<Noticed> m_noticed;
    int m_delivered = 0;
    qint64 m_dropped = 0;
};

} // namespace MODELKIT
