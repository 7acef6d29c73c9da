// SPDX-License-Identifier: MIT
// The values of a scenario, and what is wrong with them.
#pragma once

#include "simulator/Scenario.h"

#include "documents/JsonText.h"

#include "modelkit/IMKObject.h"
#include "modelkit/Place.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <limits>
#include <memory>
#include <vector>

namespace ROUTERSIM {

// A JSON value that knows where it stands. All functions that read throw a ScenarioError.
class ScenarioValue
{
public:
    // The whole text. A key that is repeated in an object is refused.
    static ScenarioValue Read(const QByteArray& json, const QString& name);

    qint64 ToInteger(qint64 least, qint64 most) const;
    double ToNumber(double least, double most) const;
    bool ToBoolean() const;
    QString ToName(const QStringList& names) const;
    const std::vector<ScenarioValue>& GetItems() const;
    // An object whose only key, this one, has this value, as a record.
    std::unique_ptr<MODELKIT::IMKObject> ToRecord(const QString& recordName) const;
    // The same for this object.
    std::unique_ptr<MODELKIT::IMKObject> ToRecord() const;

    bool IsArray() const { return m_type == ROUTERDOCUMENTS::JsonText::Array; }
    [[noreturn]] void Refuse(const QString& text) const;

private:
    friend class ScenarioObject;

    static ScenarioValue take(ROUTERDOCUMENTS::JsonText& text, const QString& path);
    void takeObject(ROUTERDOCUMENTS::JsonText& text);
    void setFile(const QString& file);
    void expect(ROUTERDOCUMENTS::JsonText::Type type, const QString& what) const;
    QByteArray toJson() const;
    std::unique_ptr<MODELKIT::IMKObject> readRecord(const QByteArray& json, const QString& outerPath) const;

    ROUTERDOCUMENTS::JsonText::Type m_type = ROUTERDOCUMENTS::JsonText::Null;
    QString m_path;
    MODELKIT::Place m_place;
    bool m_boolean = false;
    QByteArray m_number;
    QString m_string;
    // Of an array or object; for the latter each has its key.
    std::vector<ScenarioValue> m_items;
    QStringList m_keys;
};

// An object of which every key must be known. It knows those that were asked for.
class ScenarioObject
{
public:
    explicit ScenarioObject(const ScenarioValue& value);

    // Null when there is no such key.
    const ScenarioValue* Find(const QString& key);

    // These return the value that the key had before when it is missing.
    template <class Number>
    void Integer(const QString& key, Number& value, qint64 least = 0,
                 qint64 most = std::numeric_limits<int>::max())
    {
        if (const ScenarioValue* found = Find(key))
            value = static_cast<Number>(found->ToInteger(least, most));
    }
    template <class Number>
    void Integer(const QString& key, std::optional<Number>& value, qint64 least = 0,
                 qint64 most = std::numeric_limits<int>::max())
    {
        if (const ScenarioValue* found = Find(key))
            value = static_cast<Number>(found->ToInteger(least, most));
    }
    void Boolean(const QString& key, bool& value);
    void Probability(double& value);

    // Refuses keys that nobody has asked for.
    void End() const;
    [[noreturn]] void Refuse(const QString& text) const { m_value.Refuse(text); }
    const ScenarioValue& GetValue() const { return m_value; }

private:
    const ScenarioValue& m_value;
    QStringList m_known;
};

} // namespace ROUTERSIM
