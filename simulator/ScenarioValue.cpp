// SPDX-License-Identifier: MIT
#include "simulator/ScenarioValue.h"

#include "documents/DocumentError.h"
#include "documents/JsonForm.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

#include "modelkit/Exceptions.h"

#include <QtCore/QSet>

#include <cmath>

namespace ROUTERSIM {

using ROUTERDOCUMENTS::DocumentError;
using ROUTERDOCUMENTS::JsonText;

namespace {

[[noreturn]] void refuseAt(const MODELKIT::Place& place, const QString& text)
{
    MODELKIT::Failure failure;
    failure.text = text;
    failure.place = place;
    throw ScenarioError(failure.GetSentence());
}

QString stepTo(const QString& key)
{
    return QLatin1Char('.') + ROUTERDOCUMENTS::Printable(ROUTERDOCUMENTS::Abbreviated(key));
}

} // namespace

// --- the text ---------------------------------------------------------------------------------

ScenarioValue ScenarioValue::Read(const QByteArray& json, const QString& name)
{
    try {
        JsonText text(json);
        ScenarioValue value = take(text, QStringLiteral("$"));
        text.End();
        value.setFile(name);
        return value;
    } catch (const DocumentError& error) {
        MODELKIT::Place place = error.GetPlace();
        place.file = name;
        refuseAt(place, error.GetText());
    }
}

ScenarioValue ScenarioValue::take(JsonText& text, const QString& path)
{
    ScenarioValue value;
    value.m_type = text.NextType();
    value.m_path = path;
    value.m_place = text.PlaceOf(text.Offset());
    switch (value.m_type) {
    case JsonText::Null:
        text.TakeNull();
        break;
    case JsonText::Boolean:
        value.m_boolean = text.TakeBoolean();
        break;
    case JsonText::Number:
        value.m_number = text.TakeNumber();
        break;
    case JsonText::String:
        value.m_string = text.TakeString();
        break;
    case JsonText::Array:
        text.Enter();
        while (text.NextItem())
            value.m_items.push_back(take(text, QStringLiteral("%1[%2]").arg(path).arg(value.m_items.size())));
        break;
    case JsonText::Object:
        value.takeObject(text);
        break;
    }
    return value;
}

void ScenarioValue::takeObject(JsonText& text)
{
    text.Enter();
    QSet<QString> known;
    for (QString key; text.NextKey(key);) {
        const QString path = m_path + stepTo(key);
        if (known.contains(key)) {
            MODELKIT::Failure failure;
            failure.kind = MODELKIT::Failure::NotWellFormed;
            failure.text = QStringLiteral("The key is repeated.");
            failure.place = text.PlaceOf(text.Offset());
            failure.place.path = path;
            throw DocumentError(failure);
        }
        known += key;
        m_keys += key;
        m_items.push_back(take(text, path));
    }
}

void ScenarioValue::setFile(const QString& file)
{
    m_place.file = file;
    for (ScenarioValue& item : m_items)
        item.setFile(file);
}

QByteArray ScenarioValue::toJson() const
{
    switch (m_type) {
    case JsonText::Null:
        return "null";
    case JsonText::Boolean:
        return m_boolean ? "true" : "false";
    case JsonText::Number:
        return m_number;
    case JsonText::String:
        return ROUTERDOCUMENTS::Quoted(m_string).toUtf8();
    case JsonText::Array:
    case JsonText::Object:
        break;
    }
    const bool isObject = m_type == JsonText::Object;
    QByteArray json;
    for (size_t i = 0; i < m_items.size(); ++i) {
        if (i > 0)
            json += ',';
        if (isObject)
            json += ROUTERDOCUMENTS::Quoted(m_keys.at(static_cast<int>(i))).toUtf8() + ':';
        json += m_items[i].toJson();
    }
    return isObject ? '{' + json + '}' : '[' + json + ']';
}

// --- values -----------------------------------------------------------------------------------

void ScenarioValue::Refuse(const QString& text) const
{
    MODELKIT::Place place = m_place;
    place.path = m_path;
    refuseAt(place, text);
}

void ScenarioValue::expect(JsonText::Type type, const QString& what) const
{
    if (m_type != type)
        Refuse(QStringLiteral("Expected is %1.").arg(what));
}

double ScenarioValue::ToNumber(double least, double most) const
{
    const QString expected = std::isinf(least) && std::isinf(most)
                                 ? QStringLiteral("a number")
                                 : QStringLiteral("a number from %1 to %2")
                                       .arg(ROUTERDOCUMENTS::Exactly(least), ROUTERDOCUMENTS::Exactly(most));
    expect(JsonText::Number, expected);
    bool isNumber = false;
    const double number = m_number.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(number) || number < least || number > most)
        Refuse(QStringLiteral("Expected is %1, not %2.").arg(expected, QString::fromLatin1(m_number)));
    return number;
}

qint64 ScenarioValue::ToInteger(qint64 least, qint64 most) const
{
    const QString expected = QStringLiteral("a whole number from %1 to %2").arg(least).arg(most);
    expect(JsonText::Number, expected);
    bool isNumber = false;
    const double number = m_number.toDouble(&isNumber);
    if (!isNumber || number != std::floor(number) || number < static_cast<double>(least)
        || number > static_cast<double>(most))
        Refuse(QStringLiteral("Expected is %1, not %2.").arg(expected, QString::fromLatin1(m_number)));
    return static_cast<qint64>(number);
}

bool ScenarioValue::ToBoolean() const
{
    expect(JsonText::Boolean, QStringLiteral("true or false"));
    return m_boolean;
}

QString ScenarioValue::ToName(const QStringList& names) const
{
    expect(JsonText::String, QStringLiteral("a string: %1").arg(ROUTERDOCUMENTS::Alternatives(names)));
    if (!names.contains(m_string))
        Refuse(QStringLiteral("%1 is not known; expected is %2.%3")
                   .arg(ROUTERDOCUMENTS::Quoted(ROUTERDOCUMENTS::Abbreviated(m_string)),
                        ROUTERDOCUMENTS::Alternatives(names), ROUTERDOCUMENTS::DidYouMean(m_string, names)));
    return m_string;
}

const std::vector<ScenarioValue>& ScenarioValue::GetItems() const
{
    expect(JsonText::Array, QStringLiteral("an array"));
    return m_items;
}

std::unique_ptr<MODELKIT::IMKObject> ScenarioValue::ToRecord(const QString& recordName) const
{
    const QByteArray name = ROUTERDOCUMENTS::Quoted(recordName).toUtf8();
    return readRecord('{' + name + ':' + toJson() + '}', m_path.left(m_path.lastIndexOf(QLatin1Char('.'))));
}

std::unique_ptr<MODELKIT::IMKObject> ScenarioValue::ToRecord() const
{
    expect(JsonText::Object, QStringLiteral("an object"));
    return readRecord(toJson(), m_path);
}

std::unique_ptr<MODELKIT::IMKObject> ScenarioValue::readRecord(const QByteArray& json,
                                                               const QString& outerPath) const
{
    try {
        auto record = ROUTERDOCUMENTS::FromJson(json, ROUTERDOCUMENTS::Validation::On);
        record->GetXmlBytes();
        const MODELKIT::Failure failure = MODELKIT::IMKObject::GetLastFailure();
        if (failure.kind == MODELKIT::Failure::NotRepresentable)
            Refuse(failure.text);
        record->SetValidate(false);
        return record;
    } catch (const DocumentError& error) {
        MODELKIT::Place place = m_place;
        place.path = outerPath + error.GetPlace().path.mid(1);
        refuseAt(place, error.GetText());
    } catch (const ModelKitException& exception) {
        Refuse(exception.GetText());
    }
}

// --- objects ----------------------------------------------------------------------------------

ScenarioObject::ScenarioObject(const ScenarioValue& value) : m_value(value)
{
    value.expect(JsonText::Object, QStringLiteral("an object"));
}

const ScenarioValue* ScenarioObject::Find(const QString& key)
{
    m_known += key;
    const auto index = m_value.m_keys.indexOf(key);
    return index < 0 ? nullptr : &m_value.m_items[static_cast<size_t>(index)];
}

void ScenarioObject::Boolean(const QString& key, bool& value)
{
    if (const ScenarioValue* found = Find(key))
        value = found->ToBoolean();
}

void ScenarioObject::Probability(double& value)
{
    if (const ScenarioValue* found = Find(QStringLiteral("probability")))
        value = found->ToNumber(0, 1);
}

void ScenarioObject::End() const
{
    for (int i = 0; i < m_value.m_keys.size(); ++i) {
        const QString& key = m_value.m_keys.at(i);
        if (!m_known.contains(key))
            m_value.m_items[static_cast<size_t>(i)].Refuse(
                QStringLiteral("There is no key %1 here.%2")
                    .arg(ROUTERDOCUMENTS::Quoted(ROUTERDOCUMENTS::Abbreviated(key)),
                         ROUTERDOCUMENTS::DidYouMean(key, m_known)));
    }
}

} // namespace ROUTERSIM
