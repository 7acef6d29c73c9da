// SPDX-License-Identifier: MIT
#include "documents/Refusals.h"

#include "documents/Dissection.h"
#include "documents/PathOfMember.h"

#include "modelkit/ClosestName.h"
#include "modelkit/Exceptions.h"
#include "modelkit/XmlPlaces.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QStringList>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>

namespace ROUTERDOCUMENTS {

using MODELKIT::IMKObject;
using MODELKIT::Place;
using MODELKIT::ReadingReport;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

// The texts come from the records themselves: a new record is made to refuse the same, and the exception gets
// the place.
std::optional<DocumentError> refusalBy(const std::function<void()>& action, const Place& place)
{
    try {
        action();
        return std::nullopt;
    } catch (ModelKitException& exception) {
        exception.SetPlace(place);
        return DocumentError(exception);
    }
}

std::unique_ptr<IMKObject> validatedRecord(const RecordInfo& info)
{
    auto record = info.Create();
    record->SetValidate(true);
    return record;
}

// A text that is null.
std::optional<DocumentError> textRefusal(const PathOfMember& path, const Place& place)
{
    return refusalBy([&] { path.member->SetValue(*validatedRecord(*path.record), QString()); }, place);
}

// A value that is no enumerator, or no text.
std::optional<DocumentError> valueRefusal(const ReadingReport::Entry& entry)
{
    constexpr int none = -1;
    const PathOfMember path(entry.place.path);
    if (!path.member)
        return std::nullopt;
    if (path.member->GetKind() != MemberInfo::Enumeration)
        return textRefusal(path, entry.place);
    return refusalBy(
        [&] {
            try {
                path.member->SetValue(*validatedRecord(*path.record), none);
            } catch (const OutOfRangeException& exception) {
                throw OutOfRangeException(exception.GetText(), entry.value,
                                          MODELKIT::ClosestName(entry.value, path.member->GetNames()));
            }
        },
        entry.place);
}

std::optional<DocumentError> booleanRefusal(const ReadingReport::Entry& entry)
{
    const PathOfMember path(entry.place.path);
    if (!path.member || !entry.value.isEmpty())
        return std::nullopt;
    const QByteArray xml =
        QStringLiteral("<%1><%2/></%1>").arg(path.record->GetName(), path.member->GetName()).toUtf8();
    return refusalBy([&] { validatedRecord(*path.record)->SetXmlBytes(xml); }, entry.place);
}

// An item without payload. A fragment that is the whole document is no item.
std::optional<DocumentError> itemRefusal(const ReadingReport::Entry& entry)
{
    // A list item begins with its length in front of what was reported.
    constexpr qint64 lengthSize = 4;
    const PathOfMember path(entry.place.path);
    if (!path.owner || !path.record)
        return std::nullopt;
    const auto& members = path.owner->GetMembers();
    const auto list = std::find_if(members.begin(), members.end(), [&](const MemberInfo* member) {
        return member->GetKind() == MemberInfo::List && member->GetClass() == path.record;
    });
    if (list == members.end())
        return std::nullopt;
    Place place = entry.place;
    if (place.offset >= lengthSize)
        place.offset -= lengthSize;
    return refusalBy([&] { (*list)->AppendItem(*validatedRecord(*path.owner), *path.record->Create()); },
                     place);
}

std::optional<DocumentError> refusalOf(const ReadingReport::Entry& entry)
{
    switch (entry.kind) {
    case ReadingReport::UnknownName:
        return valueRefusal(entry);
    case ReadingReport::UnusualBoolean:
        return booleanRefusal(entry);
    case ReadingReport::MissingPayload:
        return itemRefusal(entry);
    default:
        return std::nullopt;
    }
}

// What the values in the records tell.
struct FoundInRecords
{
    struct Missing
    {
        const RecordInfo* record;
        const MemberInfo* member;
        QString path;
    };

    // Mandatory members that are missing where the check of the whole record looks for them.
    QVector<Missing> missing;
    // The paths of values that are no enumerators, and of texts that are null.
    QStringList wrong;
};

class RefusalSearch
{
public:
    explicit RefusalSearch(FoundInRecords& found) : m_found(found) {}

    // isChecked: whether the check of the whole record includes this one.
    void visit(const IMKObject& record, const QString& path, bool isChecked)
    {
        const RecordInfo& info = RecordInfo::Of(record);
        for (const MemberInfo* member : info.GetMembers()) {
            if (member->IsSet(record))
                visitMember(record, *member, path + QLatin1Char('/'), isChecked && !info.IsChoice());
            else if (member->IsMandatory() && isChecked)
                m_found.missing += {&info, member, path};
        }
    }

private:
    void visitMember(const IMKObject& record, const MemberInfo& member, const QString& path, bool isChecked)
    {
        if (member.GetKind() == MemberInfo::Record)
            visit(member.GetRecord(record), path + member.GetClass()->GetName(), isChecked);
        if (member.GetKind() == MemberInfo::List)
            for (int i = 0; i < member.CountItems(record); ++i)
                visit(member.GetItem(record, i), path + Place::Step(member.GetClass()->GetName(), i + 1),
                      isChecked);
        if (!member.GetClass() && !member.IsValid(member.GetValue(record)))
            m_found.wrong += path + member.GetName();
    }

    FoundInRecords& m_found;
};

QVector<ReadingReport::Entry> placedInXml(const QStringList& paths, const QByteArray& xml)
{
    QVector<ReadingReport::Entry> entries;
    for (const Place& place : MODELKIT::FindInXml(xml, paths))
        entries += {ReadingReport::UnknownName, QString(), place, QStringLiteral("")};
    return entries;
}

QVector<ReadingReport::Entry> placedInBinary(const QStringList& paths, const QByteArray& bytes,
                                             const Document& document)
{
    QHash<QString, Place> places;
    QHash<QString, QString> values;
    for (const QString& path : paths)
        places[path].path = path;
    qint64 beginOfEntry = -1;
    const auto note = [&](const Part& part) {
        if (part.kind == Part::Tag)
            beginOfEntry = part.offset;
        const auto place = places.find(part.path);
        if (place == places.end())
            return;
        place->offset = beginOfEntry;
        if (part.kind == Part::Value)
            values[part.path] = part.value.toString();
    };
    const bool isCompressed = document.form == Form::Compressed;
    QByteArray plain;
    DissectFrame(bytes, document.frame.value_or(FrameFormat()), document.info, plain,
                 isCompressed ? PartVisitor([](const Part&) {}) : PartVisitor(note));
    if (isCompressed)
        DissectPlain(plain, note);
    QVector<ReadingReport::Entry> entries;
    for (const QString& path : paths)
        entries += {ReadingReport::UnknownName, QString(), places.value(path), values.value(path)};
    return entries;
}

// Whether the path of a value in the records is that of its element. It is not if elements came again.
bool arePathsCertain(const QVector<ReadingReport::Entry>& accepted, Form form)
{
    return form != Form::Xml
           || std::none_of(accepted.begin(), accepted.end(), [](const ReadingReport::Entry& entry) {
                  return entry.kind == ReadingReport::RepeatedMember;
              });
}

// The report has no entry for values that are empty or null, because nothing is lost with them.
QVector<ReadingReport::Entry> unreportedValues(const QStringList& wrong,
                                               const QVector<ReadingReport::Entry>& accepted,
                                               const QByteArray& bytes, const Document& document)
{
    QSet<QString> reported;
    for (const ReadingReport::Entry& entry : accepted)
        if (entry.kind == ReadingReport::UnknownName)
            reported.insert(entry.place.path);
    QStringList paths;
    for (const QString& path : wrong)
        if (!reported.contains(path))
            paths += path;
    if (paths.isEmpty() || !arePathsCertain(accepted, document.form))
        return {};
    return document.form == Form::Xml ? placedInXml(paths, bytes) : placedInBinary(paths, bytes, document);
}

// The report has an entry for each missing member of a record.
Place takePlace(const QString& path, QVector<ReadingReport::Entry>& accepted)
{
    const auto found =
        std::find_if(accepted.begin(), accepted.end(), [&path](const ReadingReport::Entry& entry) {
            return entry.kind == ReadingReport::MissingMember && entry.place.path == path;
        });
    Place place;
    place.path = path;
    if (found == accepted.end())
        return place;
    place = found->place;
    accepted.erase(found);
    return place;
}

} // namespace

std::optional<DocumentError> missingRefusal(const RecordInfo& record, const MemberInfo& missing,
                                            const Place& place)
{
    const auto without = record.Create();
    for (const MemberInfo* member : record.GetMembers())
        if (member->IsMandatory() && member != &missing)
            member->SetValue(*without, 0);
    return refusalBy([&] { without->Check(); }, place);
}

std::vector<DocumentError> takeRefusals(const QByteArray& bytes, const Document& document,
                                        QVector<ReadingReport::Entry>& accepted, Reported reported)
{
    FoundInRecords found;
    RefusalSearch(found).visit(*document.record, QLatin1Char('/') + document.info->GetName(), true);
    std::vector<DocumentError> errors;
    const auto add = [&errors](const std::optional<DocumentError>& error) {
        if (error)
            errors.push_back(*error);
        return error.has_value();
    };
    if (reported == Reported::All)
        for (const ReadingReport::Entry& entry : unreportedValues(found.wrong, accepted, bytes, document))
            add(valueRefusal(entry));
    for (const FoundInRecords::Missing& missing : qAsConst(found.missing))
        add(missingRefusal(*missing.record, *missing.member, takePlace(missing.path, accepted)));
    QVector<ReadingReport::Entry> others;
    for (const ReadingReport::Entry& entry : qAsConst(accepted))
        if (!add(refusalOf(entry)))
            others += entry;
    accepted = others;
    return errors;
}

} // namespace ROUTERDOCUMENTS
