#include "documents/JsonForm.h"

#include "Finding.h"
#include "Terminal.h"
#include "documents/Closest.h"

#include "modelkit/Limits.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSet>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <algorithm>
#include <cmath>
#include <limits>

namespace routermsg {

using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

// --- paths ----------------------------------------------------------------------------------

// The way to a value. It costs nothing until somebody asks for the text.
class Path
{
public:
    Path() = default;
    Path(const Path& outer, const QString& name) : m_outer(&outer), m_name(name) {}
    Path(const Path& outer, int index) : m_outer(&outer), m_index(index) {}

    QString toText() const { return m_outer ? m_outer->toText() + step() : QStringLiteral("$"); }

    [[noreturn]] void refuse(const QString& text) const
    {
        Finding finding;
        finding.text = text;
        finding.place.path = toText();
        throw Refusal(finding);
    }

private:
    QString step() const
    {
        if (m_index >= 0)
            return QStringLiteral("[%1]").arg(m_index);
        const bool isPlain = std::all_of(m_name.begin(), m_name.end(), [](QChar character) {
            return character.unicode() < 0x80
                   && (character.isLetterOrNumber() || character == QLatin1Char('_'));
        });
        if (isPlain && !m_name.isEmpty())
            return QLatin1Char('.') + abbreviated(m_name);
        return QLatin1Char('[') + quoted(abbreviated(m_name)) + QLatin1Char(']');
    }

    const Path* m_outer = nullptr;
    QString m_name;
    int m_index = -1;
};

// --- writing --------------------------------------------------------------------------------

class Writer
{
public:
    QByteArray write(const IMKObject& record)
    {
        const QString& name = RecordInfo::Of(record).GetName();
        beginLevel('{');
        writeKey(name);
        const Path document;
        writeRecord(record, Path(document, name));
        endLevel('}');
        return m_json + '\n';
    }

private:
    void writeRecord(const IMKObject& record, const Path& path)
    {
        beginLevel('{');
        for (const MemberInfo* member : RecordInfo::Of(record).GetMembers())
            if (isWritten(record, *member)) {
                writeKey(member->GetName());
                writeMember(record, *member, Path(path, member->GetName()));
            }
        endLevel('}');
    }

    // A list goes by its items.
    static bool isWritten(const IMKObject& record, const MemberInfo& member)
    {
        return member.IsSet(record)
               && (member.GetKind() != MemberInfo::List || member.CountItems(record) > 0);
    }

    void writeMember(const IMKObject& record, const MemberInfo& member, const Path& path)
    {
        switch (member.GetKind()) {
        case MemberInfo::UnsignedInteger:
            m_json += QByteArray::number(member.GetValue(record).toUInt());
            break;
        case MemberInfo::Decimal:
            writeDecimal(member.GetValue(record).toDouble(), path);
            break;
        case MemberInfo::Boolean:
            m_json += member.GetValue(record).toBool() ? "true" : "false";
            break;
        case MemberInfo::Text:
            writeText(member.GetValue(record).toString());
            break;
        case MemberInfo::Enumeration:
            writeText(member.GetNames().value(member.GetValue(record).toInt()));
            break;
        case MemberInfo::Record:
            writeRecord(member.GetRecord(record), path);
            break;
        case MemberInfo::List:
            writeList(record, member, path);
            break;
        }
    }

    void writeList(const IMKObject& record, const MemberInfo& member, const Path& path)
    {
        beginLevel('[');
        for (int i = 0, count = member.CountItems(record); i < count; ++i) {
            beginValue();
            writeRecord(member.GetItem(record, i), Path(path, i));
        }
        endLevel(']');
    }

    void writeDecimal(double value, const Path& path)
    {
        if (!std::isfinite(value))
            path.refuse(QStringLiteral("JSON cannot carry the number %1.").arg(exactly(value)));
        m_json += exactly(value).toLatin1();
    }

    void writeText(const QString& text)
    {
        if (text.isNull())
            m_json += "null";
        else
            writeString(text);
    }

    void writeString(const QString& text)
    {
        QString escaped;
        for (int i = 0; i < text.size(); ++i) {
            const QChar unit = text.at(i);
            const bool isPair =
                unit.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
            if (isPair)
                escaped += QString(unit) + text.at(++i);
            else if (unit.unicode() < 0x20 || unit.isSurrogate())
                escaped += QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
            else if (unit == QLatin1Char('"') || unit == QLatin1Char('\\'))
                escaped += QString(QLatin1Char('\\')) + unit;
            else
                escaped += unit;
        }
        m_json += '"' + escaped.toUtf8() + '"';
    }

    void writeKey(const QString& name)
    {
        beginValue();
        writeString(name);
        m_json += ": ";
    }

    void beginLevel(char bracket)
    {
        m_json += bracket;
        ++m_depth;
        m_isLevelEmpty = true;
    }

    void beginValue()
    {
        if (!m_isLevelEmpty)
            m_json += ',';
        m_isLevelEmpty = false;
        breakLine();
    }

    void endLevel(char bracket)
    {
        --m_depth;
        if (!m_isLevelEmpty)
            breakLine();
        m_isLevelEmpty = false;
        m_json += bracket;
    }

    void breakLine() { m_json += '\n' + QByteArray(2 * m_depth, ' '); }

    QByteArray m_json;
    int m_depth = 0;
    bool m_isLevelEmpty = true;
};

// --- reading the text -----------------------------------------------------------------------

// Refuses the text at an offset in its bytes.
[[noreturn]] void refuseAt(const QByteArray& json, int offset, const QString& text)
{
    const QByteArray before = json.left(offset);
    const auto lineBegin = before.lastIndexOf('\n') + 1;
    Finding finding;
    finding.text = text;
    finding.place.line = before.count('\n') + 1;
    finding.place.column = QString::fromUtf8(before.mid(lineBegin)).size() + 1;
    throw Refusal(finding);
}

// Finds keys that come twice in an object, of which Qt's parser keeps the last without a word. The text
// is known to be JSON; so what matters is where objects, arrays and strings begin and end.
class KeyCheck
{
public:
    explicit KeyCheck(const QByteArray& json) : m_json(json) {}

    void run()
    {
        while (m_at < m_json.size())
            step(m_json.at(m_at));
    }

private:
    struct Level
    {
        bool isObject;
        QSet<QByteArray> keys;
    };

    void step(char character)
    {
        if (character == '"') {
            passString();
            return;
        }
        ++m_at;
        if (character == '{' || character == '[')
            m_levels.append(Level{character == '{', {}});
        else if (character == '}' || character == ']')
            m_levels.removeLast();
        if (character == '{' || character == ',')
            m_isKeyNext = m_levels.last().isObject;
    }

    void passString()
    {
        const int begin = m_at++;
        while (m_json.at(m_at) != '"')
            m_at += m_json.at(m_at) == '\\' ? 2 : 1;
        ++m_at;
        // Only in an object a comma announces a key, and behind a key no string but the value follows.
        if (m_isKeyNext)
            add(m_json.mid(begin, m_at - begin), begin);
        m_isKeyNext = false;
    }

    void add(const QByteArray& string, int offset)
    {
        const QByteArray key = plain(string);
        auto& keys = m_levels.last().keys;
        if (keys.contains(key))
            refuseAt(m_json, offset,
                     QStringLiteral("The key %1 comes twice in its object.")
                         .arg(quoted(abbreviated(QString::fromUtf8(key)))));
        keys.insert(key);
    }

    // One character can be written in several ways.
    static QByteArray plain(const QByteArray& string)
    {
        if (!string.contains('\\'))
            return string.mid(1, string.size() - 2);
        return QJsonDocument::fromJson('[' + string + ']').array().at(0).toString().toUtf8();
    }

    const QByteArray& m_json;
    int m_at = 0;
    QVector<Level> m_levels;
    bool m_isKeyNext = false;
};

QJsonValue parseText(const QByteArray& json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        refuseAt(json, error.offset, QStringLiteral("This is no JSON: %1.").arg(error.errorString()));
    KeyCheck(json).run();
    return document.isObject() ? QJsonValue(document.object()) : QJsonValue(document.array());
}

// --- filling the record ---------------------------------------------------------------------

QString typeName(QJsonValue::Type type)
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

void requireType(const QJsonValue& json, QJsonValue::Type type, const Path& path)
{
    if (json.type() != type)
        path.refuse(
            QStringLiteral("The value is %1, expected is %2.").arg(typeName(json.type()), typeName(type)));
}

QVariant unsignedOf(const QJsonValue& json, const Path& path)
{
    constexpr double largest = std::numeric_limits<unsigned int>::max();
    requireType(json, QJsonValue::Double, path);
    const double number = json.toDouble();
    if (!(number >= 0 && number <= largest) || number != std::floor(number))
        path.refuse(QStringLiteral("%1 is no whole number from 0 to 4294967295.").arg(exactly(number)));
    return static_cast<unsigned int>(number);
}

QVariant decimalOf(const QJsonValue& json, const Path& path)
{
    requireType(json, QJsonValue::Double, path);
    return json.toDouble();
}

QVariant booleanOf(const QJsonValue& json, const Path& path)
{
    requireType(json, QJsonValue::Bool, path);
    return json.toBool();
}

QVariant textOf(const QJsonValue& json, const Path& path)
{
    if (json.isNull())
        return QString();
    requireType(json, QJsonValue::String, path);
    const QString text = json.toString();
    // An empty text is a text.
    return text.isNull() ? QStringLiteral("") : text;
}

QVariant enumeratorOf(const MemberInfo& member, const QJsonValue& json, bool validate, const Path& path)
{
    constexpr int none = -1;
    const QStringList& names = member.GetNames();
    if (json.isNull() && validate)
        path.refuse(QStringLiteral("null is none of %1.").arg(enumerated(names)));
    if (json.isNull())
        return none;
    requireType(json, QJsonValue::String, path);
    const auto value = names.indexOf(json.toString());
    if (value < 0)
        path.refuse(QStringLiteral("%1 is none of %2.%3")
                        .arg(quoted(abbreviated(json.toString())), enumerated(names),
                             didYouMean(json.toString(), names)));
    return static_cast<int>(value);
}

// Does what calls into a record, which does not know the path.
template <class Action>
void at(const Path& path, const Action& action)
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

void readRecord(const QJsonValue& json, IMKObject& record, const Path& path);

void readList(const QJsonValue& json, const MemberInfo& member, IMKObject& record, const Path& path)
{
    requireType(json, QJsonValue::Array, path);
    const QJsonArray array = json.toArray();
    const int limit = MODELKIT::Limits::Get().listItems;
    if (array.size() > limit)
        path.refuse(QStringLiteral("A list holds more items than the limit of %1.").arg(limit));
    for (int i = 0; i < array.size(); ++i) {
        const Path itemPath(path, i);
        const auto item = member.GetClass()->Create();
        item->SetValidate(record.GetValidate());
        readRecord(array.at(i), *item, itemPath);
        at(itemPath, [&] { member.AppendItem(record, *item); });
    }
}

void readMember(const QJsonValue& json, const MemberInfo& member, IMKObject& record, const Path& path)
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

void requireKnownKeys(const QJsonObject& object, const RecordInfo& info, const Path& path)
{
    for (auto i = object.begin(); i != object.end(); ++i)
        if (!info.FindMember(i.key()))
            Path(path, i.key())
                .refuse(QStringLiteral("%1 has no member %2.%3")
                            .arg(info.GetName(), quoted(abbreviated(i.key())),
                                 didYouMean(i.key(), namesOf(info.GetMembers()))));
    if (info.IsChoice() && object.size() > 1)
        path.refuse(QStringLiteral("%1 carries one of its members at a time; here are %2.")
                        .arg(info.GetName(), enumerated(object.keys())));
}

void readRecord(const QJsonValue& json, IMKObject& record, const Path& path)
{
    requireType(json, QJsonValue::Object, path);
    const RecordInfo& info = RecordInfo::Of(record);
    const QJsonObject object = json.toObject();
    requireKnownKeys(object, info, path);
    for (const MemberInfo* member : info.GetMembers()) {
        const auto found = object.constFind(member->GetName());
        if (found != object.constEnd())
            readMember(found.value(), *member, record, Path(path, member->GetName()));
    }
}

const RecordInfo& rootClass(const QJsonObject& object)
{
    if (object.size() != 1)
        Path().refuse(QStringLiteral("The object has %1 keys, expected is one: the name of a record.")
                          .arg(object.size()));
    const QString name = object.constBegin().key();
    if (const RecordInfo* info = RecordInfo::Find(name))
        return *info;
    QStringList names;
    for (const RecordInfo* info : RecordInfo::All())
        names += info->GetName();
    Path(Path(), name)
        .refuse(QStringLiteral("There is no record %1.%2")
                    .arg(quoted(abbreviated(name)), didYouMean(name, names)));
}

} // namespace

QByteArray toJson(const IMKObject& record) { return Writer().write(record); }

std::unique_ptr<IMKObject> fromJson(const QByteArray& json, bool validate)
{
    const QJsonValue root = parseText(json);
    requireType(root, QJsonValue::Object, Path());
    const QJsonObject object = root.toObject();
    const RecordInfo& info = rootClass(object);
    auto record = info.Create();
    record->SetValidate(validate);
    const Path document;
    readRecord(object.constBegin().value(), *record, Path(document, info.GetName()));
    return record;
}

} // namespace routermsg
