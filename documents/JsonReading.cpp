// SPDX-License-Identifier: MIT
#include "documents/DocumentError.h"
#include "documents/ExchangeKeys.h"
#include "documents/JsonErrors.h"
#include "documents/JsonForm.h"
#include "documents/JsonNumber.h"
#include "documents/JsonPath.h"
#include "documents/JsonText.h"
#include "documents/Refusals.h"
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

QStringList namesOf(const QVector<const MemberInfo*>& members)
{
    QStringList names;
    for (const MemberInfo* member : members)
        names += member->GetName();
    return names;
}

QString quotedNumber(const QByteArray& number) { return Abbreviated(QString::fromLatin1(number)); }

// Fills a record while it goes through the text, so that nothing else is kept of it. The first error ends
// the reading, unless there is a list for errors: then it is added, and what is wrong is passed over.
class Reader
{
public:
    explicit Reader(const QByteArray& json, FirstErrors* errors = nullptr)
        : m_text(json), m_isExchange(IsExchange(json)), m_errors(errors)
    {}

    // Null when the name of the record is wrong, or there is none.
    std::unique_ptr<IMKObject> read(Validation validation)
    {
        const JsonPath document;
        std::unique_ptr<IMKObject> record =
            m_isExchange ? readExchange(document, validation) : readOnly(document, validation);
        m_text.End();
        ReadingReport::Add(m_accepted, m_dropped);
        return record;
    }

private:
    std::unique_ptr<IMKObject> readExchange(const JsonPath& path, Validation validation)
    {
        std::unique_ptr<IMKObject> record;
        ExchangeKeys keys(m_text, path);
        for (QString key; m_text.NextKey(key);)
            if (!keys.take(key))
                record = readOnly(JsonPath(path, key), validation);
        keys.requireDocument();
        return record;
    }

    // The record of an object with one key.
    std::unique_ptr<IMKObject> readOnly(const JsonPath& document, Validation validation)
    {
        QString name;
        if (!enterObject(document))
            return nullptr;
        if (!m_text.NextKey(name)) {
            refuse(document,
                   QStringLiteral("The object is empty, expected is one key: the name of a record."));
            return nullptr;
        }
        const JsonPath path(document, name);
        std::unique_ptr<IMKObject> record;
        if (const RecordInfo* info = rootClass(name, path)) {
            record = info->Create();
            record->SetValidate(validation == Validation::On);
            readRecord(*record, *info, path, Checked::Yes);
        } else {
            m_text.Pass();
        }
        while (m_text.NextKey(name)) {
            refuse(document,
                   QStringLiteral("The object has another key, %1; expected is one: the name of a record.")
                       .arg(Quoted(Abbreviated(name))));
            m_text.Pass();
        }
        return record;
    }

    const RecordInfo* rootClass(const QString& name, const JsonPath& path)
    {
        const RecordInfo* const info = RecordInfo::Find(name);
        if (info)
            return info;
        QStringList names;
        for (const RecordInfo* each : RecordInfo::All())
            names += each->GetName();
        refuse(path, QStringLiteral("There is no record %1.%2")
                         .arg(Quoted(Abbreviated(name)), DidYouMean(name, names)));
        return nullptr;
    }

    // Whether the check of the whole record includes a record.
    enum class Checked
    {
        No,
        Yes
    };

    using Seen = QVarLengthArray<const MemberInfo*, 16>;

    void readRecord(IMKObject& record, const RecordInfo& info, const JsonPath& path, Checked checked)
    {
        m_text.NextType();
        const qint64 begin = m_text.Offset();
        if (!enterObject(path))
            return;
        const MissingMembers missing(*this, info, path, begin, checked);
        Seen seen;
        for (QString key; m_text.NextKey(key);) {
            const JsonPath memberPath(path, key);
            const MemberInfo* member = info.FindMember(key);
            if (member && isExpected(*member, info, seen, path, memberPath)) {
                seen.append(member);
                readMember(*member, record, memberPath, info.IsChoice() ? Checked::No : checked);
                continue;
            }
            if (!member)
                refuseSaying(memberPath, [&] {
                    return QStringLiteral("%1 has no member %2.%3")
                        .arg(info.GetName(), Quoted(Abbreviated(key)),
                             DidYouMean(key, namesOf(info.GetMembers())));
                });
            m_text.Pass();
        }
        missing.refuseBut(seen);
    }

    bool isExpected(const MemberInfo& member, const RecordInfo& info, const Seen& seen, const JsonPath& path,
                    const JsonPath& memberPath)
    {
        if (seen.contains(&member)) {
            refuse(memberPath,
                   QStringLiteral("The key %1 comes twice in its object.").arg(Quoted(member.GetName())),
                   Failure::NotWellFormed);
            return false;
        }
        if (info.IsChoice() && !seen.isEmpty()) {
            refuse(path, QStringLiteral("%1 carries one of its members at a time; here are %2 and %3.")
                             .arg(info.GetName(), seen.first()->GetName(), member.GetName()));
            return false;
        }
        return true;
    }

    void readMember(const MemberInfo& member, IMKObject& record, const JsonPath& path, Checked checked)
    {
        switch (member.GetKind()) {
        case MemberInfo::UnsignedInteger:
            return set(member, record, readUnsigned(path), path);
        case MemberInfo::Decimal:
            return set(member, record, readDecimal(path), path);
        case MemberInfo::Boolean:
            return set(member, record, readBoolean(path), path);
        case MemberInfo::Text:
            return set(member, record, readText(path), path);
        case MemberInfo::Enumeration:
            return set(member, record, readEnumerator(member, record, path), path);
        case MemberInfo::Record:
            return readRecord(member.EditRecord(record), *member.GetClass(), path, checked);
        case MemberInfo::List:
            return readList(member, record, path, checked);
        }
    }

    // --- values; invalid when they are refused

    QVariant readUnsigned(const JsonPath& path)
    {
        if (!require(JsonText::Number, path))
            return {};
        const QByteArray number = m_text.TakeNumber();
        if (const auto value = unsignedOf(number))
            return *value;
        refuse(path, QStringLiteral("%1 is no whole number from 0 to 4294967295.").arg(quotedNumber(number)));
        return {};
    }

    QVariant readDecimal(const JsonPath& path)
    {
        if (m_text.NextType() == JsonText::String)
            return readNamedDecimal(path);
        if (!require(JsonText::Number, path))
            return {};
        const QByteArray number = m_text.TakeNumber();
        const JsonDecimal decimal = decimalOf(number);
        if (std::isinf(decimal.value)) {
            refuse(path, QStringLiteral("%1 is larger than any decimal.").arg(quotedNumber(number)));
            return {};
        }
        if (!decimal.isExact)
            accept(ReadingReport::LostDecimals,
                   QStringLiteral("\"%1\" cannot be kept exactly and was taken for %2.")
                       .arg(quotedNumber(number), Exactly(decimal.value)),
                   path);
        return decimal.value;
    }

    QVariant readNamedDecimal(const JsonPath& path)
    {
        const QString name = m_text.TakeString();
        if (const auto value = decimalNamed(name))
            return *value;
        refuse(path, QStringLiteral("%1 is no decimal. Expected is a number, \"NaN\", \"Infinity\" or "
                                    "\"-Infinity\".")
                         .arg(Quoted(Abbreviated(name))));
        return {};
    }

    QVariant readBoolean(const JsonPath& path)
    {
        return require(JsonText::Boolean, path) ? QVariant(m_text.TakeBoolean()) : QVariant();
    }

    QVariant readText(const JsonPath& path)
    {
        if (takesNull())
            return QString();
        return require(JsonText::String, path) ? QVariant(m_text.TakeString()) : QVariant();
    }

    QVariant readEnumerator(const MemberInfo& member, const IMKObject& record, const JsonPath& path)
    {
        constexpr int none = -1;
        const QStringList& names = member.GetNames();
        if (takesNull()) {
            if (!record.GetValidate())
                return none;
            refuse(path, QStringLiteral("null is none of %1.").arg(Listed(names)));
            return {};
        }
        if (!require(JsonText::String, path))
            return {};
        const QString name = m_text.TakeString();
        const auto value = names.indexOf(name);
        if (value >= 0)
            return static_cast<int>(value);
        refuseSaying(path, [&] {
            return QStringLiteral("%1 is none of %2.%3")
                .arg(Quoted(Abbreviated(name)), Listed(names), DidYouMean(name, names));
        });
        return {};
    }

    void readList(const MemberInfo& member, IMKObject& record, const JsonPath& path, Checked checked)
    {
        const int limit = MODELKIT::Limits::Get().listItems;
        if (!require(JsonText::Array, path))
            return;
        m_text.Enter();
        for (int i = 0; m_text.NextItem(); ++i) {
            m_text.NextType();
            const qint64 offset = m_text.Offset();
            if (i == limit)
                throw DocumentError(
                    Failure{Failure::TooManyItems,
                            QStringLiteral("A list holds more items than the limit of %1.").arg(limit),
                            placeOf(path, offset)});
            const qint64 errorsBefore = countErrors();
            const JsonPath itemPath(path, i);
            const auto item = member.GetClass()->Create();
            item->SetValidate(record.GetValidate());
            readRecord(*item, *member.GetClass(), itemPath, checked);
            // An item that has lost something wrong may lack it.
            if (countErrors() == errorsBefore)
                at(itemPath, offset, [&] { member.AppendItem(record, *item); });
        }
    }

    void set(const MemberInfo& member, IMKObject& record, const QVariant& value, const JsonPath& path)
    {
        if (value.isValid())
            at(path, m_text.Offset(), [&] { member.SetValue(record, value); });
    }

    bool takesNull()
    {
        if (m_text.NextType() != JsonText::Null)
            return false;
        m_text.TakeNull();
        return true;
    }

    bool enterObject(const JsonPath& path)
    {
        if (!require(JsonText::Object, path))
            return false;
        m_text.Enter();
        return true;
    }

    // Passes over a value of another type.
    bool require(JsonText::Type type, const JsonPath& path)
    {
        const JsonText::Type actual = m_text.NextType();
        if (actual == type)
            return true;
        refuse(path, QStringLiteral("The value is %1, expected is %2.").arg(nameOf(actual), nameOf(type)));
        m_text.Pass();
        return false;
    }

    // --- errors and notices

    // The mandatory members of a record that begins there. A reader that ends with the first error leaves
    // them to the check of the whole record.
    class MissingMembers
    {
    public:
        MissingMembers(Reader& reader, const RecordInfo& info, const JsonPath& path, qint64 begin,
                       Checked checked)
            : m_reader(reader)
        {
            if (!reader.m_errors || checked == Checked::No || info.IsChoice())
                return;
            for (const MemberInfo* member : info.GetMembers())
                if (member->IsMandatory())
                    m_mandatory.append(member);
            m_info = &info;
            if (!m_mandatory.isEmpty())
                m_place = reader.placeOf(path, begin);
        }

        void refuseBut(const Seen& seen) const
        {
            for (const MemberInfo* member : m_mandatory) {
                if (seen.contains(member))
                    continue;
                if (const auto error = missingRefusal(*m_info, *member, m_place))
                    m_reader.m_errors->add(*error);
            }
        }

    private:
        Reader& m_reader;
        const RecordInfo* m_info = nullptr;
        Seen m_mandatory;
        MODELKIT::Place m_place;
    };

    // Calls the action, and adds the place to the exceptions of a record.
    template <class Action>
    void at(const JsonPath& path, qint64 offset, const Action& action)
    {
        try {
            action();
        } catch (ModelKitException& exception) {
            exception.SetPlace(placeOf(path, offset));
            if (!m_errors)
                throw;
            m_errors->add(DocumentError(exception));
        }
    }

    void accept(ReadingReport::Kind kind, const QString& text, const JsonPath& path)
    {
        if (m_accepted.size() < ReadingReport::maximalEntries)
            m_accepted.append({kind, text, placeOf(path, m_text.Offset())});
        else
            ++m_dropped;
    }

    void refuse(const JsonPath& path, const QString& text, Failure::Kind kind = Failure::Refused)
    {
        refuseSaying(
            path, [&text] { return text; }, kind);
    }

    // Makes a text that takes long only if it is kept: a hostile document may have millions of errors.
    template <class MakeText>
    void refuseSaying(const JsonPath& path, const MakeText& makeText, Failure::Kind kind = Failure::Refused)
    {
        if (m_errors && m_errors->isFull())
            return m_errors->addBehindAll();
        const DocumentError error(Failure{kind, makeText(), placeOf(path, m_text.Offset())});
        if (!m_errors)
            throw error;
        m_errors->add(error);
    }

    qint64 countErrors() const { return m_errors ? m_errors->count() : 0; }

    MODELKIT::Place placeOf(const JsonPath& path, qint64 offset) const
    {
        MODELKIT::Place place = m_text.PlaceOf(offset);
        place.path = path.toText();
        return place;
    }

    JsonText m_text;
    const bool m_isExchange;
    FirstErrors* m_errors;
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

void findErrorsInJson(const QByteArray& json, FirstErrors& errors)
{
    try {
        requireAllowedSize(json);
        Reader(json, &errors).read(Validation::On);
    } catch (const DocumentError& ending) {
        errors.add(ending);
    }
}

} // namespace ROUTERDOCUMENTS
