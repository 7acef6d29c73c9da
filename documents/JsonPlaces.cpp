// SPDX-License-Identifier: MIT
#include "documents/JsonPlaces.h"

#include "documents/ExchangeKeys.h"
#include "documents/JsonPath.h"
#include "documents/JsonText.h"

#include <QtCore/QStringList>

namespace ROUTERDOCUMENTS {

namespace {

// One step of a path: "Fragment[2]" has the number 2, "Fragment" the number 1.
struct Step
{
    QString name;
    int number;
};

Step stepOf(const QString& text)
{
    const auto bracket = text.indexOf(QLatin1Char('['));
    if (bracket < 0)
        return {text, 1};
    return {text.left(bracket), text.mid(bracket + 1, text.size() - bracket - 2).toInt()};
}

class PlaceSearch
{
public:
    PlaceSearch(const QByteArray& json, const QString& path)
        : m_text(json), m_steps(path.split(QLatin1Char('/')).mid(1))
    {}

    // Goes to the value of the steps from that index on. A place without a line: there is none.
    MODELKIT::Place find(int index, const JsonPath& path)
    {
        const JsonText::Type type = m_text.NextType();
        if (index == m_steps.size()) {
            MODELKIT::Place place = m_text.PlaceOf(m_text.Offset());
            place.path = path.toText();
            return place;
        }
        if (type != JsonText::Object)
            return {};
        const Step step = stepOf(m_steps.at(index));
        m_text.Enter();
        for (QString key; m_text.NextKey(key);) {
            if (key == step.name)
                return findItem(step.number, index + 1, JsonPath(path, key));
            // No record has this name: the text is an exchange.
            if (index == 0 && key == ExchangeKeys::document())
                return find(index, JsonPath(path, key));
            m_text.Pass();
        }
        return {};
    }

private:
    // Goes into the item of a list; a value that is no list is its own first item.
    MODELKIT::Place findItem(int number, int index, const JsonPath& path)
    {
        if (m_text.NextType() != JsonText::Array)
            return find(index, path);
        m_text.Enter();
        for (int i = 0; m_text.NextItem(); ++i) {
            if (i + 1 == number)
                return find(index, JsonPath(path, i));
            m_text.Pass();
        }
        return {};
    }

    JsonText m_text;
    QStringList m_steps;
};

} // namespace

MODELKIT::Place findInJson(const QByteArray& json, const QString& path)
{
    MODELKIT::Place place = PlaceSearch(json, path).find(0, JsonPath());
    if (place.line == 0)
        place.path = path;
    return place;
}

} // namespace ROUTERDOCUMENTS
