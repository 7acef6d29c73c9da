// SPDX-License-Identifier: MIT
// Everything that a caller can see of an operation on a whole document and of a record, as one text. Two ways
// of doing the same are alike if these texts are equal.
#pragma once

#include "RandomXml.h"
#include "TestSupport.h"

#include "modelkit/Exceptions.h"
#include "modelkit/LogSinks.h"
#include "routerinterface/RecordInfo.h"

#include <cstring>
#include <string>
#include <typeinfo>

namespace testing_support {

inline std::string seenOf(const QString& text)
{
    return text.isNull() ? "null" : '"' + text.toUtf8().toStdString() + '"';
}

inline std::string seenOf(const QByteArray& bytes)
{
    return bytes.isNull() ? "null" : '"' + bytes.toStdString() + '"';
}

inline std::string seenOf(bool value) { return value ? "true" : "false"; }

inline std::string seenOf(const MODELKIT::Place& place)
{
    return " at " + seenOf(place.file) + ' ' + std::to_string(place.line) + ':' + std::to_string(place.column)
           + " +" + std::to_string(place.offset) + ' ' + seenOf(place.path);
}

inline std::string seenOf(const ModelKitException& exception)
{
    std::string seen =
        typeid(exception).name() + (": " + seenOf(exception.GetText())) + seenOf(exception.GetPlace());
    if (const auto* range = dynamic_cast<const OutOfRangeException*>(&exception))
        seen += " of " + seenOf(range->GetOffendingValue()) + " for " + seenOf(range->GetClosest());
    return seen;
}

// The loggers that two equal records have one each of.
struct Loggers
{
    std::shared_ptr<MODELKIT::MemoryLogSink> sink = std::make_shared<MODELKIT::MemoryLogSink>();
    std::shared_ptr<MODELKIT::Logger> ofOwner = std::make_shared<MODELKIT::Logger>(sink);
    std::shared_ptr<MODELKIT::Logger> ofOwned = std::make_shared<MODELKIT::Logger>(sink);

    std::string nameOf(const MODELKIT::IMKObject& record) const
    {
        const auto logger = record.GetLogger();
        return !logger ? "no logger" : logger == ofOwner ? "owner's logger" : "other logger";
    }

    std::string seenEntries() const
    {
        std::string seen;
        for (const auto& entry : sink->GetEntries())
            seen += "\nlogged " + std::to_string(entry.level) + ' ' + seenOf(entry.text);
        return seen;
    }
};

inline std::string seenOf(const QVariant& value)
{
    if (value.userType() == QMetaType::QString)
        return seenOf(value.toString());
    // nan differs from itself, and -0 equals 0.
    if (value.userType() == QMetaType::Double) {
        const double number = value.toDouble();
        quint64 bits = 0;
        std::memcpy(&bits, &number, sizeof bits);
        return std::to_string(bits);
    }
    return value.toString().toStdString();
}

// The record with all below it, whether set or not.
inline void appendSeen(std::string& seen, const MODELKIT::IMKObject& record, const Loggers& loggers)
{
    using PELLU300ROUTERINTERFACEXML::MemberInfo;
    using PELLU300ROUTERINTERFACEXML::RecordInfo;
    const RecordInfo& info = RecordInfo::Of(record);
    seen += seenOf(record.GetObjectName()) + '(' + seenOf(record.GetValidate()) + ", "
            + loggers.nameOf(record) + ", " + seenOf(record.HasData()) + ") {";
    if (info.IsChoice())
        if (const MemberInfo* selected = info.GetSelected(record))
            seen += " has " + selected->GetName().toStdString();
    for (const MemberInfo* member : info.GetMembers()) {
        const bool hasDefault = member->IsDefaultSet(record);
        seen += '\n' + member->GetName().toStdString() + (member->IsSet(record) ? " set " : " unset ");
        switch (member->GetKind()) {
        case MemberInfo::Record:
            appendSeen(seen, member->GetRecord(record), loggers);
            break;
        case MemberInfo::List:
            for (int i = 0; i < member->CountItems(record); ++i)
                appendSeen(seen, member->GetItem(record, i), loggers);
            break;
        default:
            seen += seenOf(member->GetValue(record)) + " or " + seenOf(member->GetDefault(record));
        }
        if (hasDefault) {
            seen += " with default ";
            if (member->GetKind() == MemberInfo::Record || member->GetKind() == MemberInfo::List)
                appendSeen(seen, member->GetDefaultRecord(record), loggers);
        }
    }
    seen += '}';
}

inline std::string seenOfLastFailure()
{
    const MODELKIT::Failure& failure = MODELKIT::IMKObject::GetLastFailure();
    return "\nfailure " + std::to_string(failure.kind) + ' ' + seenOf(failure.text) + seenOf(failure.place);
}

// What the operation returns or throws, and what it leaves behind outside the record.
template <class Operation>
std::string seenOfOperation(const Loggers& loggers, const Operation& operation)
{
    std::string seen;
    try {
        seen = seenOf(operation());
    } catch (const ModelKitException& exception) {
        seen = seenOf(exception);
    }
    return seen + seenOfLastFailure() + loggers.seenEntries();
}

// --- random records -------------------------------------------------------------------------------

inline QVariant randomValue(const PELLU300ROUTERINTERFACEXML::MemberInfo& member, Random& random,
                            const QString& text)
{
    using PELLU300ROUTERINTERFACEXML::MemberInfo;
    static const double decimals[] = {0,       -0.0, 0.004,  0.005,  0.03125, 2.5,
                                      98.4375, -7,   1e15,   1e300,  -1e17,   9007199254740993.0,
                                      1e-300,  0.1,  99.995, 99.999, qQNaN(), -qInf()};
    static const unsigned int numbers[] = {0,   1,     9,           10,          99,
                                           100, 65535, 2147483647U, 2147483648U, 4294967295U};
    switch (member.GetKind()) {
    case MemberInfo::UnsignedInteger:
        return random.of(numbers);
    case MemberInfo::Decimal:
        return random.of(decimals);
    case MemberInfo::Boolean:
        return random.oneIn(2);
    case MemberInfo::Enumeration:
        return random.oneIn(4) ? random.below(200) - 100 : random.below(3);
    default:
        return text;
    }
}

// Settings of this record alone, not of those below it.
inline void giveSettings(const MODELKIT::IMKObject& record, bool validate,
                         const std::shared_ptr<MODELKIT::Logger>& logger)
{
    record.MODELKIT::IMKObject::SetValidate(validate);
    record.MODELKIT::IMKObject::SetLogger(logger);
}

// Gives some members values, some defaults, and some records settings of their own.
template <class MakeText>
void fillAtRandom(MODELKIT::IMKObject& record, Random& random, const Loggers& loggers, const MakeText& text)
{
    using PELLU300ROUTERINTERFACEXML::MemberInfo;
    using PELLU300ROUTERINTERFACEXML::RecordInfo;
    const RecordInfo& info = RecordInfo::Of(record);
    for (const MemberInfo* member : info.GetMembers()) {
        const bool hasValue = random.oneIn(2);
        const bool hasDefault = random.oneIn(6);
        switch (member->GetKind()) {
        case MemberInfo::Record:
        case MemberInfo::List: {
            const auto randomRecord = [&] {
                auto made = member->GetClass()->Create();
                fillAtRandom(*made, random, loggers, text);
                return made;
            };
            if (hasDefault)
                member->SetDefaultRecord(record, *randomRecord());
            if (hasValue && member->GetKind() == MemberInfo::Record)
                fillAtRandom(member->EditRecord(record), random, loggers, text);
            else if (hasValue)
                for (int items = random.below(4); items > 0; --items)
                    member->AppendItem(record, *randomRecord());
            break;
        }
        default:
            if (hasDefault)
                member->SetDefault(record, randomValue(*member, random, text(random)));
            if (hasValue)
                member->SetValue(record, randomValue(*member, random, text(random)));
        }
    }
    if (info.IsChoice() && random.oneIn(6))
        info.ClearSelection(record);
    if (auto* state = dynamic_cast<PELLU300ROUTERINTERFACEXML::MastershipState*>(&record))
        if (random.oneIn(8))
            state->SetInvalidState(PELLU300ROUTERINTERFACEXML::MastershipState::State(random.below(5)));
    giveSettings(record, random.oneIn(10), random.oneIn(10) ? loggers.ofOwned : nullptr);
}

// --- all classes ----------------------------------------------------------------------------------

template <class R>
struct ClassTag
{
    using Record = R;
};

template <class... R, class Use>
void useClass(::testing::Types<R...>, int which, const Use& use)
{
    int index = 0;
    const bool isUsed = ((index++ == which && (use(ClassTag<R>()), true)) || ...);
    ASSERT_TRUE(isUsed);
}

// Calls use(tag) with one of the record classes, most often the document.
template <class Use>
void useAnyClass(Random& random, const Use& use)
{
    constexpr int document = payloadCount + 2;
    useClass(AllRecords(), random.oneIn(2) ? random.below(document + 1) : document, use);
}

} // namespace testing_support
