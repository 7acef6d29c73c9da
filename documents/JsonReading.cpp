// SPDX-License-Identifier: MIT
#include "documents/DocumentError.h"
#include "documents/JsonForm.h"
#include "documents/JsonPath.h"
#include "documents/JsonText.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

#include "modelkit/Devices.h"
#include "modelkit/Limits.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <cmath>
#include <limits>

namespace ROUTERDOCUMENTS {

using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

QString jsonTypeName(QJsonValue::Type type)
{
    switch (type) {
    case QJsonValue::Null:
        return QStringLiteral("null");
    case QJsonValue::Bool:
        return QStringLiteral("a truth value");
    case QJsonValue::Double:
        return QStringLiteral("a number");
    case QJsonValue::String:
        return QStringLiteral("a string");
    case QJsonValue::Array:
        return QStringLiteral("an array");
    case QJsonValue::Object:
        return QStringLiteral("an object");
    case QJsonValue::Undefined:
        break;
    }
    return QString();
}

void requireType(const QJsonValue& json, QJsonValue::Type type, const JsonPath& path)
{
    if (json.type() != type)
        path.refuse(QStringLiteral("The value is %1, expected is %2.")
                        .arg(jsonTypeName(json.type()), jsonTypeName(type)));
}

QVariant unsignedOf(const QJsonValue& json, const JsonPath& path)
{
    constexpr double largest = std::numeric_limits<unsigned int>::max();
    requireType(json, QJsonValue::Double, path);
    const double number = json.toDouble();
    if (!(number >= 0 && number <= largest) || number != std::floor(number))
        path.refuse(QStringLiteral("%1 is no whole number from 0 to 4294967295.").arg(Exactly(number)));
    return static_cast<unsigned int>(number);
}

QVariant decimalOf(const QJsonValue& json, const JsonPath& path)
{
    requireType(json, QJsonValue::Double, path);
    return json.toDouble();
}

QVariant booleanOf(const QJsonValue& json, const JsonPath& path)
{
    requireType(json, QJsonValue::Bool, path);
    return json.toBool();
}

QVariant textOf(const QJsonValue& json, const JsonPath& path)
{
    if (json.isNull())
        return QString();
    requireType(json, QJsonValue::String, path);
    const QString text = json.toString();
    // An empty text must not become a null text.
    return text.isNull() ? QStringLiteral("") : text;
}

QVariant enumeratorOf(const MemberInfo& member, const QJsonValue& json, bool validate, const JsonPath& path)
{
    constexpr int none = -1;
    const QStringList& names = member.GetNames();
    if (json.isNull() && validate)
        path.refuse(QStringLiteral("null is none of %1.").arg(Listed(names)));
    if (json.isNull())
        return none;
    requireType(json, QJsonValue::String, path);
    const auto value = names.indexOf(json.toString());
    if (value < 0)
        path.refuse(QStringLiteral("%1 is none of %2.%3")
                        .arg(Quoted(Abbreviated(json.toString())), Listed(names),
                             DidYouMean(json.toString(), names)));
    return static_cast<int>(value);
}

// Calls the action, and adds the path to the exceptions of a record.
template <class Action>
void at(const JsonPath& path, const Action& action)
{
    try {
        action();
    } catch (ModelKitException& exception) {
        MODELKIT::Place place;
        place.path = path.toText();
        exception.SetPlace(place);
        throw;
    }
}

void readRecord(const QJsonValue& json, IMKObject& record, const JsonPath& path);

void readList(const QJsonValue& json, const MemberInfo& member, IMKObject& record, const JsonPath& path)
{
    requireType(json, QJsonValue::Array, path);
    const QJsonArray array = json.toArray();
    const int limit = MODELKIT::Limits::Get().listItems;
    if (array.size() > limit)
        path.refuse(QStringLiteral("A list holds more items than the limit of %1.").arg(limit),
                    MODELKIT::Failure::TooManyItems);
    for (int i = 0; i < array.size(); ++i) {
        const JsonPath itemPath(path, i);
        const auto item = member.GetClass()->Create();
        item->SetValidate(record.GetValidate());
        readRecord(array.at(i), *item, itemPath);
        at(itemPath, [&] { member.AppendItem(record, *item); });
    }
}

void readMember(const QJsonValue& json, const MemberInfo& member, IMKObject& record, const JsonPath& path)
{
    const auto set = [&](const QVariant& value) { at(path, [&] { member.SetValue(record, value); }); };
    switch (member.GetKind()) {
    case MemberInfo::UnsignedInteger:
        return set(unsignedOf(json, path));
    case MemberInfo::Decimal:
        return set(decimalOf(json, path));
    case MemberInfo::Boolean:
        return set(booleanOf(json, path));
    case MemberInfo::Text:
        return set(textOf(json, path));
    case MemberInfo::Enumeration:
        return set(enumeratorOf(member, json, record.GetValidate(), path));
    case MemberInfo::Record:
        return readRecord(json, member.EditRecord(record), path);
    case MemberInfo::List:
        return readList(json, member, record, path);
    }
}

QStringList namesOf(const QVector<const MemberInfo*>& members)
{
    QStringList names;
    for (const MemberInfo* member : members)
        names += member->GetName();
    return names;
}

void requireKnownKeys(const QJsonObject& object, const RecordInfo& info, const JsonPath& path)
{
    for (auto i = object.begin(); i != object.end(); ++i)
        if (!info.FindMember(i.key()))
            JsonPath(path, i.key())
                .refuse(QStringLiteral("%1 has no member %2.%3")
                            .arg(info.GetName(), Quoted(Abbreviated(i.key())),
                                 DidYouMean(i.key(), namesOf(info.GetMembers()))));
    if (info.IsChoice() && object.size() > 1)
        path.refuse(QStringLiteral("%1 carries one of its members at a time; here are %2.")
                        .arg(info.GetName(), Listed(object.keys())));
}

void readRecord(const QJsonValue& json, IMKObject& record, const JsonPath& path)
{
    requireType(json, QJsonValue::Object, path);
    const RecordInfo& info = RecordInfo::Of(record);
    const QJsonObject object = json.toObject();
    requireKnownKeys(object, info, path);
    for (const MemberInfo* member : info.GetMembers()) {
        const auto found = object.constFind(member->GetName());
        if (found != object.constEnd())
            readMember(found.value(), *member, record, JsonPath(path, member->GetName()));
    }
}

const RecordInfo& rootClass(const QJsonObject& object)
{
    if (object.size() != 1)
        JsonPath().refuse(QStringLiteral("The object has %1 keys, expected is one: the name of a record.")
                              .arg(object.size()));
    const QString name = object.constBegin().key();
    if (const RecordInfo* info = RecordInfo::Find(name))
        return *info;
    QStringList names;
    for (const RecordInfo* info : RecordInfo::All())
        names += info->GetName();
    JsonPath(JsonPath(), name)
        .refuse(QStringLiteral("There is no record %1.%2")
                    .arg(Quoted(Abbreviated(name)), DidYouMean(name, names)));
}

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
    const QJsonValue root = parseText(json);
    requireType(root, QJsonValue::Object, JsonPath());
    const QJsonObject object = root.toObject();
    const RecordInfo& info = rootClass(object);
    auto record = info.Create();
    record->SetValidate(validation == Validation::On);
    const JsonPath document;
    readRecord(object.constBegin().value(), *record, JsonPath(document, info.GetName()));
    return record;
}

} // namespace ROUTERDOCUMENTS
