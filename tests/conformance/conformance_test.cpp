// SPDX-License-Identifier: MIT
// Runs the conformance cases in this folder. README.md describes their format.
#include "TestSupport.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSet>
#include <QtCore/QStringList>

#include <cctype>
#include <memory>
#include <set>
#include <string>
#include <typeinfo>
#include <vector>

using namespace testing_support;
using MODELKIT::IMKObject;

namespace {

const QStringList& recordNames()
{
    static const QStringList names{text("OstraInterfacePort"),
                                   text("RouterVtServerPort"),
                                   text("PelVtConnectServer"),
                                   text("MastershipState"),
                                   text("AcquireMastership"),
                                   text("ReleaseMastership"),
                                   text("DF_Params"),
                                   text("Fragment"),
                                   text("PelLu300RouterMessage"),
                                   text("PelLu300RouterInterfaceXml")};
    return names;
}

std::unique_ptr<IMKObject> createRecord(const QString& name)
{
    switch (recordNames().indexOf(name)) {
    case 0:
        return std::make_unique<OstraInterfacePort>();
    case 1:
        return std::make_unique<RouterVtServerPort>();
    case 2:
        return std::make_unique<PelVtConnectServer>();
    case 3:
        return std::make_unique<MastershipState>();
    case 4:
        return std::make_unique<AcquireMastership>();
    case 5:
        return std::make_unique<ReleaseMastership>();
    case 6:
        return std::make_unique<DF_Params>();
    case 7:
        return std::make_unique<Fragment>();
    case 8:
        return std::make_unique<PelLu300RouterMessage>();
    case 9:
        return std::make_unique<PelLu300RouterInterfaceXml>();
    default:
        return nullptr;
    }
}

const QStringList& exceptionNames()
{
    static const QStringList names{text("OutOfRangeException"), text("IncompleteDefinitionException"),
                                   text("InvalidXmlException"), text("BinaryParsingException")};
    return names;
}

QString exceptionName(const ModelKitException& exception)
{
    if (typeid(exception) == typeid(OutOfRangeException))
        return exceptionNames()[0];
    if (typeid(exception) == typeid(IncompleteDefinitionException))
        return exceptionNames()[1];
    if (typeid(exception) == typeid(InvalidXmlException))
        return exceptionNames()[2];
    if (typeid(exception) == typeid(BinaryParsingException))
        return exceptionNames()[3];
    return text("another class");
}

// The outcome of a step: a result as text, or an exception.
struct Outcome
{
    QString result;
    QString exception;
    QString message;
};

bool operator==(const Outcome& a, const Outcome& b)
{
    return a.result == b.result && a.exception == b.exception && a.message == b.message;
}

void PrintTo(const Outcome& outcome, std::ostream* out)
{
    if (outcome.exception.isEmpty())
        *out << outcome.result.toUtf8().constData();
    else
        *out << outcome.exception.toUtf8().constData() << " \"" << outcome.message.toUtf8().constData()
             << '"';
}

template <class Step>
Outcome outcomeOf(Step&& step)
{
    try {
        return {step(), QString(), QString()};
    } catch (const ModelKitException& exception) {
        return {QString(), exceptionName(exception), exception.GetText()};
    }
}

struct Case
{
    QString name;
    QString record;
    bool validation = false;
    bool binary = false;
    QString input;
    Outcome outcome;
    Outcome xml;
    Outcome hex;

    // Why the case cannot be run; empty when it can.
    QString problem;

    std::string testName;
};

void PrintTo(const Case& conformanceCase, std::ostream* out)
{
    *out << conformanceCase.name.toUtf8().constData();
}

// --- reading the cases ------------------------------------------------------------------------

class Malformed
{
public:
    explicit Malformed(const QString& why) : reason(why) {}
    QString reason;
};

// Takes the values out of a JSON object by key and refuses the keys that are left.
class Fields
{
public:
    explicit Fields(const QJsonValue& value, const QString& what) : m_object(value.toObject()), m_what(what)
    {
        if (!value.isObject())
            throw Malformed(what + text(" is no object"));
    }

    bool has(const char* key) const { return m_object.contains(text(key)); }

    QJsonValue take(const char* key)
    {
        if (!has(key))
            throw Malformed(m_what + text(" lacks ") + text(key));
        return m_object.take(text(key));
    }

    QString takeText(const char* key)
    {
        const QJsonValue value = take(key);
        if (!value.isString())
            throw Malformed(text(key) + text(" is no string"));
        return value.toString();
    }

    void requireEmpty() const
    {
        if (!m_object.isEmpty())
            throw Malformed(m_what + text(" has the unknown key ") + m_object.keys().first());
    }

private:
    QJsonObject m_object;
    QString m_what;
};

QString normalisedHex(const QString& digits)
{
    QString plain = digits;
    plain.remove(QLatin1Char(' '));
    const QString normalised = QString::fromLatin1(QByteArray::fromHex(plain.toLatin1()).toHex());
    if (plain.isEmpty() || normalised == plain.toLower())
        return normalised;
    throw Malformed(text("no hexadecimal bytes: ") + digits);
}

Outcome takeOutcome(Fields& fields, const char* key)
{
    const QJsonValue value = fields.take(key);
    if (value.isString())
        return {value.toString(), QString(), QString()};
    Fields exception(value, text(key));
    Outcome outcome;
    outcome.exception = exception.takeText("exception");
    outcome.message = exception.takeText("text");
    exception.requireEmpty();
    if (!exceptionNames().contains(outcome.exception))
        throw Malformed(text("unknown exception ") + outcome.exception);
    return outcome;
}

Case parseCase(const QJsonValue& value)
{
    Case parsed;
    parsed.name = text("unnamed");
    try {
        Fields fields(value, text("the case"));
        parsed.name = fields.takeText("name");
        parsed.record = fields.takeText("record");
        if (!recordNames().contains(parsed.record))
            throw Malformed(text("unknown record ") + parsed.record);
        const QJsonValue validation = fields.take("validation");
        if (!validation.isBool())
            throw Malformed(text("validation is no truth value"));
        parsed.validation = validation.toBool();
        Fields input(fields.take("input"), text("input"));
        parsed.binary = input.has("hex");
        parsed.input = parsed.binary ? normalisedHex(input.takeText("hex")) : input.takeText("xml");
        input.requireEmpty();
        parsed.outcome = takeOutcome(fields, "outcome");
        if (parsed.outcome.exception.isEmpty() && parsed.outcome.result != text("ok"))
            throw Malformed(text("unknown outcome ") + parsed.outcome.result);
        parsed.xml = takeOutcome(fields, "xml");
        parsed.hex = takeOutcome(fields, "hex");
        parsed.hex.result = normalisedHex(parsed.hex.result);
        fields.requireEmpty();
    } catch (const Malformed& malformed) {
        parsed.problem = malformed.reason;
    }
    return parsed;
}

std::vector<Case> parseFile(const QByteArray& content)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(content, &error);
    std::vector<Case> cases;
    QSet<QString> names;
    for (const QJsonValue value : document.array()) {
        cases.push_back(parseCase(value));
        if (names.contains(cases.back().name))
            cases.back().problem = text("the file has another case of this name");
        names.insert(cases.back().name);
    }
    if (error.error != QJsonParseError::NoError || cases.empty()) {
        Case unreadable;
        unreadable.name = text("cannot be read");
        unreadable.problem = error.error == QJsonParseError::NoError
                                 ? text("the file is no array of cases")
                                 : error.errorString() + text(" at byte ") + QString::number(error.offset);
        cases.push_back(unreadable);
    }
    return cases;
}

// Letters, digits and single underscores.
std::string identifier(const QString& name)
{
    std::string result;
    for (const char c : name.toStdString()) {
        if (std::isalnum(static_cast<unsigned char>(c)))
            result += c;
        else if (!result.empty() && result.back() != '_')
            result += '_';
    }
    while (!result.empty() && result.back() == '_')
        result.pop_back();
    return result;
}

std::vector<Case> loadCases()
{
    const QDir directory(projectPath("tests/conformance"));
    std::vector<Case> all;
    std::set<std::string> names;
    for (const QString& fileName : directory.entryList({text("*.json")}, QDir::Files, QDir::Name)) {
        QFile file(directory.filePath(fileName));
        const QByteArray content = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        for (Case& one : parseFile(content)) {
            const std::string base =
                identifier(fileName.section(QLatin1Char('.'), 0, 0) + QLatin1Char('_') + one.name);
            one.testName = base;
            for (int i = 2; !names.insert(one.testName).second; ++i)
                one.testName = base + "_" + std::to_string(i);
            all.push_back(one);
        }
    }
    return all;
}

const std::vector<Case>& cases()
{
    static const std::vector<Case> loaded = loadCases();
    return loaded;
}

// --- running a case ---------------------------------------------------------------------------

void readXmlInput(IMKObject& record, const QString& input)
{
    QXmlStreamReader reader(input);
    if (!reader.readNextStartElement())
        throw Malformed(text("the input has no root element"));
    const QString root = reader.name().toString();
    record.ProcessXml(reader);
    EXPECT_TRUE(reader.atEnd() || (reader.isEndElement() && reader.name() == root))
        << "the reader is not behind the element";
}

void readBinaryInput(IMKObject& record, const QString& input)
{
    QByteArray content = QByteArray::fromHex(input.toLatin1());
    if (content.size() < 4)
        throw Malformed(text("the input has no record length"));
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    QDataStream stream(&buffer);
    qint32 length = 0;
    stream >> length;
    record.SetBinary(stream, length);
    EXPECT_EQ(buffer.pos(), 4 + qint64(length)) << "the stream is not behind the frame";
}

class ConformanceCase : public ::testing::TestWithParam<Case>
{
};

TEST_P(ConformanceCase, Holds)
{
    const Case& expected = GetParam();
    ASSERT_EQ(expected.problem, QString());
    const std::unique_ptr<IMKObject> record = createRecord(expected.record);
    ASSERT_NE(record, nullptr);
    record->SetValidate(expected.validation);
    try {
        EXPECT_EQ(outcomeOf([&] {
                      if (expected.binary)
                          readBinaryInput(*record, expected.input);
                      else
                          readXmlInput(*record, expected.input);
                      return text("ok");
                  }),
                  expected.outcome);
    } catch (const Malformed& malformed) {
        FAIL() << malformed.reason.toStdString();
    }
    EXPECT_EQ(outcomeOf([&] { return xmlOf(*record); }), expected.xml);
    EXPECT_EQ(outcomeOf([&] { return QString::fromLatin1(frameOf(*record).toHex()); }), expected.hex);
}

INSTANTIATE_TEST_SUITE_P(Files, ConformanceCase, ::testing::ValuesIn(cases()),
                         [](const auto& of) { return of.param.testName; });

// --- the cases as a whole ---------------------------------------------------------------------

TEST(ConformanceSuite, CoversEveryRecordInBothFormsWithGoodAndBadInputAndBothFlags)
{
    EXPECT_GE(cases().size(), 80U);
    for (const QString& record : recordNames()) {
        int xml = 0;
        int hex = 0;
        int failing = 0;
        int validated = 0;
        int unvalidated = 0;
        for (const Case& one : cases()) {
            if (one.record != record)
                continue;
            ++(one.binary ? hex : xml);
            ++(one.validation ? validated : unvalidated);
            failing += one.outcome.exception.isEmpty() ? 0 : 1;
        }
        EXPECT_GT(xml, 0) << record.toStdString();
        EXPECT_GT(hex, 0) << record.toStdString();
        EXPECT_GT(failing, 0) << record.toStdString();
        EXPECT_GT(validated, 0) << record.toStdString();
        EXPECT_GT(unvalidated, 0) << record.toStdString();
    }
}

TEST(ConformanceSuite, CoversEveryException)
{
    QSet<QString> seen;
    for (const Case& one : cases())
        seen.insert(one.outcome.exception);
    for (const QString& exception : exceptionNames())
        EXPECT_TRUE(seen.contains(exception)) << exception.toStdString();
}

// --- the runner -------------------------------------------------------------------------------

QString problemOf(const char* json)
{
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray(json));
    EXPECT_TRUE(document.isObject());
    return parseCase(document.object()).problem;
}

TEST(ConformanceRunner, TakesACompleteCase)
{
    EXPECT_EQ(
        problemOf(
            R"({"name": "n", "record": "DF_Params", "validation": true, "input": {"xml": "<DF_Params/>"},
                            "outcome": "ok", "xml": "<DF_Params/>", "hex": "00 00 00 00"})"),
        QString());
    EXPECT_EQ(
        problemOf(R"({"name": "n", "record": "DF_Params", "validation": false, "input": {"hex": "ffFFffff"},
                            "outcome": {"exception": "BinaryParsingException", "text": "t"}, "xml": "", "hex": ""})"),
        QString());
}

TEST(ConformanceRunner, RefusesUnknownKeys)
{
    EXPECT_EQ(
        problemOf(
            R"({"name": "n", "record": "DF_Params", "validation": true, "input": {"xml": "<DF_Params/>"},
                            "outcome": "ok", "xml": "", "hex": "", "comment": "c"})"),
        text("the case has the unknown key comment"));
    EXPECT_EQ(
        problemOf(
            R"({"name": "n", "record": "DF_Params", "validation": true, "input": {"xml": "", "form": ""},
                            "outcome": "ok", "xml": "", "hex": ""})"),
        text("input has the unknown key form"));
    EXPECT_EQ(
        problemOf(R"({"name": "n", "record": "DF_Params", "validation": true, "input": {"xml": "", "hex": ""},
                            "outcome": "ok", "xml": "", "hex": ""})"),
        text("input has the unknown key xml"));
    EXPECT_EQ(problemOf(R"({"name": "n", "record": "DF_Params", "validation": true, "input": {"xml": ""},
                            "outcome": {"exception": "OutOfRangeException", "text": "", "code": "1"}, "xml": "",
                            "hex": ""})"),
              text("outcome has the unknown key code"));
}

TEST(ConformanceRunner, RefusesMissingExpectations)
{
    EXPECT_EQ(problemOf(R"({"name": "n", "record": "DF_Params", "validation": true, "input": {"xml": ""},
                            "xml": "", "hex": ""})"),
              text("the case lacks outcome"));
    EXPECT_EQ(problemOf(R"({"name": "n", "record": "DF_Params", "validation": true, "input": {"xml": ""},
                            "outcome": "ok", "hex": ""})"),
              text("the case lacks xml"));
    EXPECT_EQ(problemOf(R"({"name": "n", "record": "DF_Params", "validation": true, "input": {"xml": ""},
                            "outcome": "ok", "xml": ""})"),
              text("the case lacks hex"));
    EXPECT_EQ(problemOf(R"({"name": "n", "record": "DF_Params", "validation": true, "input": {"xml": ""},
                            "outcome": {"exception": "OutOfRangeException"}, "xml": "", "hex": ""})"),
              text("outcome lacks text"));
    EXPECT_EQ(problemOf(R"({"name": "n", "record": "DF_Params", "validation": true, "input": {},
                            "outcome": "ok", "xml": "", "hex": ""})"),
              text("input lacks xml"));
    EXPECT_EQ(
        problemOf(R"({"name": "n", "record": "DF_Params", "input": {"xml": ""}, "outcome": "ok", "xml": "",
                            "hex": ""})"),
        text("the case lacks validation"));
}

TEST(ConformanceRunner, RefusesValuesItDoesNotKnow)
{
    EXPECT_EQ(problemOf(R"({"name": "n", "record": "Params", "validation": true, "input": {"xml": ""},
                            "outcome": "ok", "xml": "", "hex": ""})"),
              text("unknown record Params"));
    EXPECT_EQ(problemOf(R"({"name": "n", "record": "DF_Params", "validation": "on", "input": {"xml": ""},
                            "outcome": "ok", "xml": "", "hex": ""})"),
              text("validation is no truth value"));
    EXPECT_EQ(problemOf(R"({"name": "n", "record": "DF_Params", "validation": true, "input": {"xml": ""},
                            "outcome": "fine", "xml": "", "hex": ""})"),
              text("unknown outcome fine"));
    EXPECT_EQ(problemOf(R"({"name": "n", "record": "DF_Params", "validation": true, "input": {"xml": ""},
                            "outcome": {"exception": "MKException", "text": ""}, "xml": "", "hex": ""})"),
              text("unknown exception MKException"));
    EXPECT_EQ(problemOf(R"({"name": "n", "record": "DF_Params", "validation": true, "input": {"hex": "0g"},
                            "outcome": "ok", "xml": "", "hex": ""})"),
              text("no hexadecimal bytes: 0g"));
    EXPECT_EQ(problemOf(R"({"name": "n", "record": "DF_Params", "validation": true, "input": {"xml": ""},
                            "outcome": "ok", "xml": "", "hex": "000"})"),
              text("no hexadecimal bytes: 000"));
    EXPECT_EQ(problemOf(R"({"name": "n", "record": "DF_Params", "validation": true, "input": {"xml": ""},
                            "outcome": "ok", "xml": null, "hex": ""})"),
              text("xml is no object"));
}

TEST(ConformanceRunner, RefusesTheSameNameTwiceInAFile)
{
    const QByteArray one(R"({"name": "n", "record": "DF_Params", "validation": true, "input": {"xml": ""},
                             "outcome": "ok", "xml": "", "hex": ""})");
    const std::vector<Case> parsed = parseFile("[" + one + "," + one + "]");
    ASSERT_EQ(parsed.size(), 2U);
    EXPECT_EQ(parsed[0].problem, QString());
    EXPECT_EQ(parsed[1].problem, text("the file has another case of this name"));
}

TEST(ConformanceRunner, ReportsAFileThatHoldsNoCases)
{
    for (const char* content : {"", "{}", "[]", "[{\"name\": \"n\"", "no JSON"}) {
        const std::vector<Case> parsed = parseFile(QByteArray(content));
        ASSERT_FALSE(parsed.empty()) << content;
        EXPECT_NE(parsed.back().problem, QString()) << content;
    }
}

} // namespace
