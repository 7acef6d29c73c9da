// SPDX-License-Identifier: MIT
#include "WritingLosses.h"

#include "Acceptance.h"
#include "documents/Document.h"
#include "documents/DocumentError.h"
#include "documents/Text.h"
#include "documents/Values.h"

#include "modelkit/ReadingReport.h"

#include <algorithm>
#include <cmath>

namespace routermsg {

using namespace ROUTERDOCUMENTS;
using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

// Compares records with what was read back. No form changes the order of items, so they are compared one by
// one.
class Losses
{
public:
    Losses(Form form, const QString& file) : m_form(form), m_file(file) {}

    void compare(const IMKObject& record, const IMKObject& readBack, const QString& path)
    {
        for (const MemberInfo* member : RecordInfo::Of(record).GetMembers())
            compare(record, readBack, *member, path + QLatin1Char('/') + member->GetName());
    }

    void add(const QString& text, const QString& path)
    {
        if (m_findings.size() >= MODELKIT::ReadingReport::maximalEntries) {
            ++m_dropped;
            return;
        }
        Finding finding;
        finding.severity = Finding::Warning;
        finding.text = QStringLiteral("The %1 form does not carry this: ").arg(NameOf(m_form)) + text;
        finding.place.file = m_file;
        finding.place.path = path;
        m_findings += finding;
    }

    QVector<Finding> findings() const
    {
        if (m_dropped == 0)
            return m_findings;
        return m_findings + QVector<Finding>{moreNotListed(m_dropped, m_file)};
    }

private:
    void compare(const IMKObject& record, const IMKObject& readBack, const MemberInfo& member,
                 const QString& path)
    {
        const bool isInBoth = member.IsSet(record) && member.IsSet(readBack);
        if (member.GetKind() == MemberInfo::List)
            compareItems(record, readBack, member, path);
        else if (isInBoth && member.GetKind() == MemberInfo::Record)
            compare(member.GetRecord(record), member.GetRecord(readBack), path);
        else if (isInBoth ? !isSame(member, member.GetValue(record), member.GetValue(readBack))
                          : member.IsSet(record) != member.IsSet(readBack))
            addChange(MemberText(record, member), MemberText(readBack, member), path);
    }

    void compareItems(const IMKObject& record, const IMKObject& readBack, const MemberInfo& member,
                      const QString& path)
    {
        const int count = member.CountItems(record);
        const int countBack = member.CountItems(readBack);
        if (count != countBack)
            addChange(QStringLiteral("%1 items").arg(count), QString::number(countBack), path);
        for (int i = 0; i < std::min(count, countBack); ++i)
            compare(member.GetItem(record, i), member.GetItem(readBack, i),
                    MODELKIT::Place::Step(path, i + 1));
    }

    // Zeros of different sign are the same value, but one sign was lost.
    static bool isSame(const MemberInfo& member, const QVariant& value, const QVariant& valueBack)
    {
        return IsSameValue(member, value, valueBack)
               && (member.GetKind() != MemberInfo::Decimal || std::isnan(value.toDouble())
                   || std::signbit(value.toDouble()) == std::signbit(valueBack.toDouble()));
    }

    void addChange(const QString& text, const QString& textBack, const QString& path)
    {
        add(QStringLiteral("%1 is read back as %2.").arg(Abbreviated(text), Abbreviated(textBack)), path);
    }

    Form m_form;
    QString m_file;
    QVector<Finding> m_findings;
    qint64 m_dropped = 0;
};

} // namespace

QVector<Finding> lostByWriting(const IMKObject& record, const QByteArray& bytes, Form form,
                               const QString& file)
{
    if (form == Form::Json || form == Form::JsonLines)
        return {};
    Losses losses(form, file);
    const QString root = QLatin1Char('/') + RecordInfo::Of(record).GetName();
    try {
        losses.compare(record, *ReadDocument(bytes, {form}).record, root);
    } catch (const DocumentError& error) {
        losses.add(QStringLiteral("it cannot be read back. %1").arg(error.GetText()), error.GetPlace().path);
    }
    return losses.findings();
}

} // namespace routermsg
