// SPDX-License-Identifier: MIT
#include "documents/DocumentError.h"
#include "documents/JsonForm.h"
#include "documents/JsonNumber.h"
#include "documents/JsonPath.h"
#include "documents/JsonText.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

#include "modelkit/Devices.h"
#include "modelkit/Limits.h"
#include "modelkit/ReadingReport.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QStringList>
#include <QtCore/QVarLengthArray>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <cmath>

namespace ROUTERDOCUMENTS {

using MODELKIT::Failure;
using MODELKIT::IMKObject;
using MODELKIT::ReadingReport;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

QString nameOf(JsonText::Type type)
{
    switch (type) {
    case JsonText::Null:
        return QStringLiteral("null");
    case JsonText::Boolean:
        return QStringLiteral("a truth value");
    case JsonText::Number:
        return QStringLiteral("a number");
    case JsonText::String:
        return QStringLiteral("a string");
    case JsonText::Array:
        return QStringLiteral("an array");
    case JsonText::Object:
        break;
    }
    return QStringLiteral("an object");
}

QStringList namesOf(const QVector<const MemberInfo*>& members)
{
    QStringList names;
    for (const MemberInfo* member : members)
        names += member->GetName();
    return names;
}

QString quotedNumber(const QByteArray& number) { return Abbreviated(QString::fromLatin1(number)); }

// Fills a record while it goes through the text, so that nothing else is kept of it.
class Reader
{
public:
    explicit Reader(const QByteArray& json) : m_text(json) {}

    std::unique_ptr<IMKObject> read(Validation validation)
    {
        const JsonPath document;
        QString name;
        enterObject(document);
        if (!m_text.NextKey(name))
            refuse(document,
                   QStringLiteral("The object is empty, expected is one key: the name of a record."));
        const JsonPath path(document, name);
        const RecordInfo& info = rootClass(name, path);
        auto record = info.Create();
        record->SetValidate(validation == Validation::On);
        readRecord(*record, info, path);
        if (m_text.NextKey(name))
            refuse(document,
                   QStringLiteral("The object has another key, %1; expected is one: the name of a record.")
                       .arg(Quoted(Abbreviated(name))));
        m_text.End();
        ReadingReport::Add(m_accepted, m_dropped);
        return record;
    }

private:
    const RecordInfo& rootClass(const QString& name, const JsonPath& path)
    {
        if (const RecordInfo* info = RecordInfo::Find(name))
            return *info;
        QStringList names;
        for (const RecordInfo* info : RecordInfo::All())
            names += info->GetName();
        refuse(path, QStringLiteral("There is no record %1.%2")
                         .arg(Quoted(Abbreviated(name)), DidYouMean(name, names)));
    }

    void readRecord(IMKObject& record, const RecordInfo& info, const JsonPath& path)
    {
        constexpr int usualMembers = 16;
        QVarLengthArray<const MemberInfo*, usualMembers> seen;
        enterObject(path);
        for (QString key; m_text.NextKey(key);) {
            const JsonPath memberPath(path, key);
            const MemberInfo* member = info.FindMember(key);
            if (!member)
                refuse(memberPath, QStringLiteral("%1 has no member %2.%3")
                                       .arg(info.GetName(), Quoted(Abbreviated(key)),
                                            DidYouMean(key, namesOf(info.GetMembers()))));
            if (seen.contains(member))
                refuse(memberPath, QStringLiteral("The key %1 comes twice in its object.").arg(Quoted(key)),
                       Failure::NotWellFormed);
            if (info.IsChoice() && !seen.isEmpty())
                refuse(path, QStringLiteral("%1 carries one of its members at a time; here are %2 and %3.")
                                 .arg(info.GetName(), seen.first()->GetName(), key));
            seen.append(member);
            readMember(*member, record, memberPath);
        }
    }

    void readMember(const MemberInfo& member, IMKObject& record, const JsonPath& path)
    {
        switch (member.GetKind()) {
        case MemberInfo::UnsignedInteger:
            return set(member, record, readUnsigned(path), path);
        case MemberInfo::Decimal:
            return set(member, record, readDecimal(path), path);
        case MemberInfo::Boolean:
            require(JsonText::Boolean, path);
            return set(member, record, m_text.TakeBoolean(), path);
        case MemberInfo::Text:
            return set(member, record, readText(path), path);
        case MemberInfo::Enumeration:
            return set(member, record, readEnumerator(member, record, path), path);
        case MemberInfo::Record:
            return readRecord(member.EditRecord(record), *member.GetClass(), path);
        case MemberInfo::List:
            return readList(member, record, path);
        }
    }

    unsigned int readUnsigned(const JsonPath& path)
    {
        require(JsonText::Number, path);
        const QByteArray number = m_text.TakeNumber();
        const auto value = unsignedOf(number);
        if (!value)
            refuse(path,
                   QStringLiteral("%1 is no whole number from 0 to 4294967295.").arg(quotedNumber(number)));
        return *value;
    }

    double readDecimal(const JsonPath& path)
    {
        if (m_text.NextType() == JsonText::String)
            return readNamedDecimal(path);
        require(JsonText::Number, path);
        const QByteArray number = m_text.TakeNumber();
        const JsonDecimal decimal = decimalOf(number);
        if (std::isinf(decimal.value))
            refuse(path, QStringLiteral("%1 is larger than any decimal.").arg(quotedNumber(number)));
        if (!decimal.isExact)
            accept(ReadingReport::LostDecimals,
                   QStringLiteral("\"%1\" cannot be kept exactly and was taken for %2.")
                       .arg(quotedNumber(number), Exactly(decimal.value)),
                   path);
        return decimal.value;
    }

    double readNamedDecimal(const JsonPath& path)
    {
        const QString name = m_text.TakeString();
        const auto value = decimalNamed(name);
        if (!value)
            refuse(path, QStringLiteral("%1 is no decimal. Expected is a number, \"NaN\", \"Infinity\" or "
                                        "\"-Infinity\".")
                             .arg(Quoted(Abbreviated(name))));
        return *value;
    }

    QString readText(const JsonPath& path)
    {
        if (takesNull())
            return {};
        require(JsonText::String, path);
        return m_text.TakeString();
    }

    int readEnumerator(const MemberInfo& member, const IMKObject& record, const JsonPath& path)
    {
        constexpr int none = -1;
        const QStringList& names = member.GetNames();
        if (takesNull()) {
            if (record.GetValidate())
                refuse(path, QStringLiteral("null is none of %1.").arg(Listed(names)));
            return none;
        }
        require(JsonText::String, path);
        const QString name = m_text.TakeString();
        const auto value = names.indexOf(name);
        if (value < 0)
            refuse(path, QStringLiteral("%1 is none of %2.%3")
                             .arg(Quoted(Abbreviated(name)), Listed(names), DidYouMean(name, names)));
        return static_cast<int>(value);
    }

    void readList(const MemberInfo& member, IMKObject& record, const JsonPath& path)
    {
        const int limit = MODELKIT::Limits::Get().listItems;
        require(JsonText::Array, path);
        m_text.Enter();
        for (int i = 0; m_text.NextItem(); ++i) {
            m_text.NextType();
            const qint64 offset = m_text.Offset();
            if (i == limit)
                refuse(path, QStringLiteral("A list holds more items than the limit of %1.").arg(limit),
                       Failure::TooManyItems);
            const JsonPath itemPath(path, i);
            const auto item = member.GetClass()->Create();
            item->SetValidate(record.GetValidate());
            readRecord(*item, *member.GetClass(), itemPath);
            at(itemPath, offset, [&] { member.AppendItem(record, *item); });
        }
    }

    void set(const MemberInfo& member, IMKObject& record, const QVariant& value, const JsonPath& path)
    {
        at(path, m_text.Offset(), [&] { member.SetValue(record, value); });
    }

    bool takesNull()
    {
        if (m_text.NextType() != JsonText::Null)
            return false;
        m_text.TakeNull();
        return true;
    }

    void enterObject(const JsonPath& path)
    {
        require(JsonText::Object, path);
        m_text.Enter();
    }

    void require(JsonText::Type type, const JsonPath& path)
    {
        const JsonText::Type actual = m_text.NextType();
        if (actual != type)
            refuse(path,
                   QStringLiteral("The value is %1, expected is %2.").arg(nameOf(actual), nameOf(type)));
    }

    // Calls the action, and adds the place to the exceptions of a record.
    template <class Action>
    void at(const JsonPath& path, qint64 offset, const Action& action)
    {
        try {
            action();
        } catch (ModelKitException& exception) {
            exception.SetPlace(placeOf(path, offset));
            throw;
        }
    }

    void accept(ReadingReport::Kind kind, const QString& text, const JsonPath& path)
    {
        if (m_accepted.size() < ReadingReport::maximalEntries)
            m_accepted.append({kind, text, placeOf(path, m_text.Offset())});
        else
            ++m_dropped;
    }

    [[noreturn]] void refuse(const JsonPath& path, const QString& text, Failure::Kind kind = Failure::Refused)
    {
        throw DocumentError(Failure{kind, text, placeOf(path, m_text.Offset())});
    }

    MODELKIT::Place placeOf(const JsonPath& path, qint64 offset) const
    {
        MODELKIT::Place place = m_text.PlaceOf(offset);
        place.path = path.toText();
        return place;
    }

    JsonText m_text;
    QVector<ReadingReport::Entry> m_accepted;
    qint64 m_dropped = 0;
};

void requireAllowedSize(const QByteArray& json)
{
    const qint64 limit = MODELKIT::Limits::Get().inputSize;
    if (json.size() > limit)
        throw DocumentError(MODELKIT::inputTooLarge(limit));
}

} // namespace

std::unique_ptr<IMKObject> FromJson(const QByteArray& json, Validation validation)
{
    requireAllowedSize(json);
    return Reader(json).read(validation);
}

} // namespace ROUTERDOCUMENTS
