// SPDX-License-Identifier: MIT
// What is JSON and what is not, held against Qt's parser, and the places of errors.
#include "TestSupport.h"

#include "documents/DocumentError.h"
#include "documents/JsonText.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <cmath>
#include <iterator>
#include <random>

using namespace ROUTERDOCUMENTS;
using namespace testing_support;

namespace {

// What reading a text gives: a value, or an error.
struct Outcome
{
    QJsonValue value = QJsonValue(QJsonValue::Undefined);
    QString error;
    MODELKIT::Place place;
    // Whether a number was too large for a decimal.
    bool isTooLarge = false;
};

class ToQt
{
public:
    static Outcome read(const QByteArray& json)
    {
        ToQt reader(json);
        try {
            const QJsonValue value = reader.readValue();
            reader.m_text.End();
            reader.m_outcome.value = value;
        } catch (const DocumentError& error) {
            EXPECT_EQ(error.GetKind(), MODELKIT::Failure::NotWellFormed) << json.constData();
            reader.m_outcome.error = error.GetText();
            reader.m_outcome.place = error.GetPlace();
        }
        return reader.m_outcome;
    }

private:
    explicit ToQt(const QByteArray& json) : m_text(json) {}

    QJsonValue readValue()
    {
        switch (m_text.NextType()) {
        case JsonText::Null:
            m_text.TakeNull();
            return QJsonValue();
        case JsonText::Boolean:
            return m_text.TakeBoolean();
        case JsonText::Number:
            return readNumber();
        case JsonText::String:
            return m_text.TakeString();
        case JsonText::Array:
            return readArray();
        case JsonText::Object:
            break;
        }
        return readObject();
    }

    QJsonValue readNumber()
    {
        bool isRead = false;
        const double number = m_text.TakeNumber().toDouble(&isRead);
        m_outcome.isTooLarge |= std::isinf(number) || !isRead;
        return number;
    }

    QJsonValue readArray()
    {
        QJsonArray array;
        m_text.Enter();
        while (m_text.NextItem())
            array += readValue();
        return array;
    }

    QJsonValue readObject()
    {
        QJsonObject object;
        m_text.Enter();
        for (QString key; m_text.NextKey(key);) {
            const QString name = key;
            object[name] = readValue();
        }
        return object;
    }

    JsonText m_text;
    Outcome m_outcome;
};

Outcome readByQt(const QByteArray& json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    Outcome outcome;
    if (error.error != QJsonParseError::NoError)
        outcome.error = error.errorString();
    else
        outcome.value = document.isObject() ? QJsonValue(document.object()) : QJsonValue(document.array());
    return outcome;
}

// Qt reads only arrays and objects.
QByteArray inArray(const QByteArray& json) { return '[' + json + ']'; }

void expectPlace(const QByteArray& json, int line, int column, const char* text)
{
    const Outcome outcome = ToQt::read(json);
    EXPECT_EQ(outcome.error, QStringLiteral("This is no JSON: %1.").arg(QString::fromUtf8(text)))
        << json.constData();
    EXPECT_EQ(outcome.place.line, line) << json.constData();
    EXPECT_EQ(outcome.place.column, column) << json.constData();
}

const char* const good[] = {
    "{}",
    "[]",
    " \t\r\n[ ] ",
    "{\"a\": 1, \"b\": [true, false, null]}",
    "[0, -0, 1, -1, 10, 0.5, -0.5, 1.25, 1e3, 1E3, 1e+3, 1e-3, 1.5e10, 0e0, 4294967296]",
    "[\"\", \"a\", \"\\\"\\\\\\/\\b\\f\\n\\r\\t\\u0041\\u00e4\\uD83D\\uDE00\", \"\xC3\xA4\xF0\x9F\x98\x80\"]",
    "[[[[[[]]]]], {}, {\"\": {\"\": {}}}]",
    "{\"a\": {\"b\": [1, {\"c\": \"d\"}]}, \"e\": \"\\\\\"}",
    "[\"\\u0000\", \"\xEF\xBF\xBF\", \"\x7F\"]"};

const char* const bad[] = {"",
                           " ",
                           "[",
                           "]",
                           "{",
                           "}",
                           "[1,]",
                           "[,1]",
                           "[1 2]",
                           "[1}",
                           "{\"a\": 1,}",
                           "{\"a\" 1}",
                           "{\"a\": }",
                           "{a: 1}",
                           "{'a': 1}",
                           "{1: 1}",
                           "{\"a\": 1 \"b\": 2}",
                           "['a']",
                           "[01]",
                           "[-01]",
                           "[00]",
                           "[+1]",
                           "[.5]",
                           "[1.]",
                           "[-]",
                           "[-.5]",
                           "[1e]",
                           "[1e+]",
                           "[1.e3]",
                           "[0x10]",
                           "[1_000]",
                           "[NaN]",
                           "[nan]",
                           "[Infinity]",
                           "[-Infinity]",
                           "[True]",
                           "[nul]",
                           "[nulll]",
                           "[truefalse]",
                           "[undefined]",
                           "[1] // comment",
                           "[1 /* comment */]",
                           "# comment\n[1]",
                           "[1] 2",
                           "[1][2]",
                           "{} {}",
                           "[\"a]",
                           "[\"\\x\"]",
                           "[\"\\u12\"]",
                           "[\"\\u12g4\"]",
                           "[\"\\",
                           "[\"a\nb\"]",
                           "[\"a\tb\"]",
                           "[\"\xFF\"]",
                           "[\"\xC3\"]",
                           "[\"\xC0\x80\"]",
                           "[\"\xED\xA0\x80\"]",
                           "[\"\xF4\x90\x80\x80\"]",
                           "[\xC3\xA4]",
                           "[\xC2\xA0 1]",
                           "[\f1]"};

TEST(JsonText, TakesEveryValue)
{
    for (const char* json : {"null", " true ", "false", "0", "-1.5e3", "\"text\""}) {
        EXPECT_EQ(ToQt::read(json).error, QString()) << json;
        EXPECT_EQ(QJsonArray{ToQt::read(json).value}, readByQt(inArray(json)).value.toArray()) << json;
    }
    EXPECT_EQ(ToQt::read("\"\\ud800\"").value.toString(), QString(QChar(0xD800)));
    EXPECT_EQ(ToQt::read("\"\\udc00\\ud800x\"").value.toString().size(), 3);
    EXPECT_FALSE(ToQt::read("\"\"").value.toString().isNull());
}

TEST(JsonText, TakesWhatIsJson)
{
    for (const char* json : good) {
        const Outcome outcome = ToQt::read(json);
        EXPECT_EQ(outcome.error, QString()) << json;
        EXPECT_EQ(outcome.value, readByQt(json).value) << json;
        EXPECT_EQ(ToQt::read(QByteArray("\xEF\xBB\xBF") + json).value, outcome.value) << json;
    }
}

TEST(JsonText, RefusesWhatIsNoJson)
{
    for (const char* json : bad) {
        const Outcome outcome = ToQt::read(json);
        EXPECT_TRUE(outcome.value.isUndefined()) << json;
        EXPECT_TRUE(outcome.error.startsWith(QStringLiteral("This is no JSON: "))) << json;
        EXPECT_GT(outcome.place.line, 0) << json;
        EXPECT_GT(outcome.place.column, 0) << json;
    }
    EXPECT_TRUE(ToQt::read(QByteArray("[\"\0\"]", 5)).value.isUndefined());
    EXPECT_TRUE(ToQt::read(QByteArray("[]\0", 3)).value.isUndefined());
    EXPECT_TRUE(ToQt::read(QByteArray("[1\0]", 4)).value.isUndefined());
}

TEST(JsonText, SaysLineAndColumnOfWhatIsWrong)
{
    expectPlace("[1,\n 2,\n]", 3, 1, "a value is missing; here is \"]\"");
    expectPlace("[1,\n 2,", 2, 4, "a value is missing; here the text ends");
    // The column counts UTF-16 units, and not the byte order mark.
    expectPlace("\xEF\xBB\xBF[x", 1, 2, "a value is missing; here is \"x\"");
    expectPlace("[\"\xC3\xA4\xF0\x9F\x98\x80\" x", 1, 8, "an array goes on with a comma or ]; here is \"x\"");
    expectPlace("{\"a\": 1\n \xF0\x9F\x98\x80}", 2, 2,
                "an object goes on with a comma or }; here is \"\xF0\x9F\x98\x80\"");
    expectPlace("[1.]", 1, 4, "a number needs a digit behind the point; here is \"]\"");
    expectPlace("[ 01]", 1, 3, "a number does not begin with a zero");
    expectPlace("[-01]", 1, 2, "a number does not begin with a zero");
    expectPlace("[1e+]", 1, 5, "an exponent needs a digit; here is \"]\"");
    expectPlace("[-x]", 1, 3, "a number needs a digit; here is \"x\"");
    expectPlace("[\"a\tb\"]", 1, 4, "a control character in a string must be an escape");
    expectPlace("[\"ab\xFF\"]", 1, 5, "a string is not UTF-8");
    expectPlace("[\"ab\\x\"]", 1, 5, "there is no such escape");
    expectPlace("[\"\\u00g0\"]", 1, 7, "\\u needs four hexadecimal digits; here is \"g\"");
    expectPlace("[\"a", 1, 4, "a string has no end; here the text ends");
    expectPlace("[\"a\\", 1, 5, "a string has no end; here the text ends");
    expectPlace("{x", 1, 2, "a key in double quotes is missing; here is \"x\"");
    expectPlace("{\"a\" 1}", 1, 6, "a colon is missing behind a key; here is \"1\"");
    expectPlace("[]\n\n ]", 3, 2, "nothing may stand behind the value; here is \"]\"");
}

TEST(JsonText, FindsPlacesInAnyOrder)
{
    const QByteArray json = "[\n\"\xC3\xA4\", 1]";
    const JsonText text(json);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(text.PlaceOf(8).line, 2);
        EXPECT_EQ(text.PlaceOf(8).column, 6);
        EXPECT_EQ(text.PlaceOf(2).line, 2);
        EXPECT_EQ(text.PlaceOf(2).column, 1);
        EXPECT_EQ(text.PlaceOf(0).line, 1);
        EXPECT_EQ(text.PlaceOf(0).column, 1);
    }
}

TEST(JsonText, IsNotDeeperThanTheLimit)
{
    const QByteArray deepest = QByteArray(JsonText::deepest, '[') + QByteArray(JsonText::deepest, ']');
    EXPECT_EQ(ToQt::read(deepest).error, QString());
    EXPECT_EQ(ToQt::read(inArray(deepest)).error,
              QStringLiteral("This is no JSON: more than 1024 brackets are open."));
    EXPECT_EQ(ToQt::read(inArray(deepest)).place.column, JsonText::deepest + 1);
}

// Changes a text at random places.
class Mutation
{
public:
    explicit Mutation(unsigned int seed) : m_random(seed) {}

    QByteArray of(QByteArray json)
    {
        for (int count = 1 + below(3); count > 0; --count)
            change(json);
        return json;
    }

private:
    void change(QByteArray& json)
    {
        static const char* const pieces[] = {"{",
                                             "}",
                                             "[",
                                             "]",
                                             ",",
                                             ":",
                                             "\"",
                                             "\\",
                                             "0",
                                             "1",
                                             ".",
                                             "e",
                                             "-",
                                             "+",
                                             " ",
                                             "\n",
                                             "null",
                                             "true",
                                             "\"a\":",
                                             "\\u00e4",
                                             "\\ud83d",
                                             "\\",
                                             "/",
                                             "\x01",
                                             "\t",
                                             "\x80",
                                             "\xC3",
                                             "\xC3\xA4",
                                             "\xED\xA0\x80",
                                             "'",
                                             "1e5",
                                             "false",
                                             "E+"};
        const int at = below(static_cast<int>(json.size()) + 1);
        const int length = std::min(below(3), static_cast<int>(json.size()) - at);
        const QByteArray piece = pieces[below(static_cast<int>(std::size(pieces)))];
        json.replace(at, length, below(4) > 0 ? piece : QByteArray());
    }

    int below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned int>(limit)); }

    std::mt19937 m_random;
};

// What Qt's parser takes although it is no JSON.
bool isTakenByQt(const QString& error)
{
    for (const char* reason :
         {"a control character in a string", "there is no such escape", "a number needs a digit",
          "a value is missing; here is \".\"", "an exponent needs a digit"})
        if (error.contains(QLatin1String(reason)))
            return true;
    return false;
}

TEST(JsonText, IsReadAsQtReadsIt)
{
    constexpr int rounds = 4000;
    Mutation mutation(1);
    int taken = 0;
    int refused = 0;
    for (int round = 0; round < rounds; ++round)
        for (const char* original : good) {
            const QByteArray json = mutation.of(original);
            const Outcome ours = ToQt::read(json);
            const Outcome theirs = readByQt(json);
            ++(ours.error.isEmpty() ? taken : refused);
            if (ours.isTooLarge || (ours.error.isEmpty() && !ours.value.isArray() && !ours.value.isObject()))
                continue;
            if (isTakenByQt(ours.error))
                continue;
            ASSERT_EQ(ours.error.isEmpty(), theirs.error.isEmpty()) << json.constData() << '\n'
                                                                    << ours.error.toStdString() << '\n'
                                                                    << theirs.error.toStdString();
            ASSERT_EQ(ours.value, theirs.value) << json.constData();
        }
    EXPECT_GT(taken, rounds / 2);
    EXPECT_GT(refused, rounds);
}

} // namespace
