// SPDX-License-Identifier: MIT
// Writes a record as a whole XML document without Qt's stream writer, and with it, which writes records of
// derived classes. Records that are hard to write.
#pragma once

#include "SeenSupport.h"

#include <string>
#include <utility>
#include <vector>

namespace testing_support {

template <class R>
struct OpenName : R
{
    using R::SetObjectName;
};

inline QString unusualText(Random& random)
{
    if (random.oneIn(20))
        return QString();
    const char16_t codes[] = {'a',   'b',    '<',    '>',    '&',    '"',    '\'',   '\r',
                              '\n',  '\t',   ']',    0x7F,   0x80,   0x85,   0xE9,   0x7FF,
                              0x800, 0x20AC, 0x2028, 0xD7FF, 0xE000, 0xFDD0, 0xFEFF, 0xFFFD};
    const char32_t pairs[] = {0x10000, 0x1F600, 0x1FFFE, 0x10FFFF};
    const char16_t forbidden[] = {0, 1, 0xB, 0xC, 0x1F, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xFFFE, 0xFFFF};
    QString text = QLatin1String("");
    for (int size = random.oneIn(50) ? 3000 : random.below(6); size > 0; --size)
        text += random.oneIn(8) ? QString::fromUcs4(&random.of(pairs), 1) : QString(QChar(random.of(codes)));
    if (random.oneIn(12))
        text.insert(random.below(static_cast<int>(text.size()) + 1), QChar(random.of(forbidden)));
    return text;
}

// Gives some record, at any depth, another name.
inline void renameAtRandom(MODELKIT::IMKObject& record, Random& random)
{
    const QString names[] = {QStringLiteral("Renamed"),
                             QStringLiteral("a.b-c_1"),
                             QStringLiteral("a:b"),
                             QString::fromUtf8("N\xC3\xA9"),
                             QString(),
                             QStringLiteral("1")};
    constexpr auto rename = &OpenName<DF_Params>::SetObjectName;
    const RecordInfo& info = RecordInfo::Of(record);
    if (random.oneIn(3))
        (record.*rename)(random.of(names));
    for (const MemberInfo* member : info.GetMembers()) {
        if (member->GetKind() == MemberInfo::Record && member->IsSet(record))
            renameAtRandom(member->EditRecord(record), random);
        if (member->GetKind() == MemberInfo::List)
            for (int i = 0; i < member->CountItems(record); ++i)
                renameAtRandom(member->EditItem(record, i), random);
    }
}

// What is seen of each way to write, and of the record behind it: without and with Qt's writer.
template <class R>
std::vector<std::pair<std::string, std::string>> seenOfWritingBothWays(const R& record,
                                                                       const Loggers& loggers)
{
    using MODELKIT::IMKObject;
    using MODELKIT::XmlLayout;
    std::vector<std::pair<std::string, std::string>> seen;
    const auto write = [&](const auto& writing) {
        // One that writes in its own way, and one that is exactly a record.
        R plainly;
        OpenName<R> derived;
        plainly = record;
        derived.R::operator=(record);
        derived.SetObjectName(record.GetObjectName());
        (plainly.*(&OpenName<R>::SetObjectName))(record.GetObjectName());
        const auto seenOfOne = [&](IMKObject& object) {
            object.SetLogger(loggers.ofOwner);
            object.SetValidate(record.GetValidate());
            loggers.sink->Clear();
            std::string one = seenOfOperation(loggers, [&] { return writing(object); });
            appendSeen(one, object, loggers);
            return one;
        };
        seen.emplace_back(seenOfOne(plainly), seenOfOne(derived));
    };
    write([](IMKObject& object) { return object.GetXmlString(); });
    write([](IMKObject& object) { return object.GetCompactXmlString(); });
    for (const auto layout : {XmlLayout::Indented, XmlLayout::Compact})
        write([layout](IMKObject& object) { return object.GetXmlBytes(layout); });
    return seen;
}

} // namespace testing_support
