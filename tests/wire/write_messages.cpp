// SPDX-License-Identifier: MIT
// write_messages FOLDER: writes messages of all kinds into files in the folder, for readers of the binary
// form that do not use this library. They are made from RecordInfo, so that a new member is in them at once.
//
//     usual.rec               what the records write, plain and compressed
//     unusual.rec, little.rec what readers accept besides: any order, repeated and unknown entries; in both
//     byte orders bare, bare-little       the same without class id, a file for each class broken documents
//     in which one length is wrong
//
// The records write only the first of these files. All others are written here, as docs/binary-form.md tells.
#include "modelkit/IMKObject.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QDataStream>
#include <QtCore/QDir>
#include <QtCore/QFile>

#include <algorithm>
#include <iostream>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using namespace PELLU300ROUTERINTERFACEXML;
using MODELKIT::IMKObject;

namespace {

class Random
{
public:
    // A number from 0 to the limit, without it.
    int below(int limit) { return static_cast<int>(m_numbers() % static_cast<unsigned int>(limit)); }
    bool oneIn(int count) { return below(count) == 0; }
    std::uint32_t word() { return static_cast<std::uint32_t>(m_numbers()); }

private:
    std::mt19937 m_numbers{20240517};
};

QVariant valueFor(const MemberInfo& member, Random& random)
{
    const double decimals[] = {98.5e6,
                               -0.001,
                               1e23,
                               0.0,
                               std::numeric_limits<double>::quiet_NaN(),
                               std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity(),
                               static_cast<int>(random.word()) / 100.0};
    const std::uint32_t numbers[] = {5000, 0, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, random.word()};
    const QString texts[] = {QString(),
                             QLatin1String(""),
                             QStringLiteral("R&D <\"North\">"),
                             QStringLiteral("\u6771\u4EAC ]]> \n\t"),
                             QString::fromUtf8("\xF0\x9F\x93\xA1"),
                             QString(300, QLatin1Char('x'))};
    switch (member.GetKind()) {
    case MemberInfo::UnsignedInteger:
        return static_cast<uint>(numbers[random.below(6)]);
    case MemberInfo::Decimal:
        return decimals[random.below(8)];
    case MemberInfo::Boolean:
        return random.oneIn(2);
    case MemberInfo::Text:
        return texts[random.below(6)];
    default:
        return random.below(static_cast<int>(member.GetNames().size()) + 1) - 1;
    }
}

// Sets all members, or some. Items of the list: one for each payload, or up to five.
void fill(IMKObject& record, const RecordInfo& info, Random& random, bool all)
{
    const MemberInfo* chosen = nullptr;
    if (info.IsChoice())
        chosen = info.GetMembers().at(random.below(static_cast<int>(info.GetMembers().size())));
    for (const MemberInfo* member : info.GetMembers()) {
        if (chosen ? member != chosen : !all && random.oneIn(4))
            continue;
        if (member->GetKind() == MemberInfo::Record) {
            fill(member->EditRecord(record), *member->GetClass(), random, all);
        } else if (member->GetKind() == MemberInfo::List) {
            const auto& payloads = member->GetClass()->GetMembers();
            const int count = all ? static_cast<int>(payloads.size()) : random.below(6);
            for (int i = 0; i < count; ++i) {
                const auto item = member->GetClass()->Create();
                if (!all) {
                    fill(*item, *member->GetClass(), random, false);
                } else {
                    fill(payloads.at(i)->EditRecord(*item), *payloads.at(i)->GetClass(), random, true);
                }
                member->AppendItem(record, *item);
            }
        } else {
            member->SetValue(record, valueFor(*member, random));
        }
    }
}

// Writes frames by hand. It can make one of their lengths wrong.
class FrameWriter
{
public:
    FrameWriter(QDataStream::ByteOrder order, Random& random, bool isUnusual)
        : m_random(random), m_order(order), m_isUnusual(isUnusual)
    {}

    // The length with that number, counted as they are finished, becomes the given one.
    void spoil(int number, std::uint32_t (*change)(std::uint32_t)) { m_spoilt = number, m_change = change; }
    int lengths() const { return m_lengths; }

    QByteArray frame(const IMKObject& record, const RecordInfo& info)
    {
        return counted(entries(record, info));
    }
    QByteArray identified(const IMKObject& record, const RecordInfo& info)
    {
        return word(info.GetFrameId()) + frame(record, info);
    }

private:
    QByteArray word(std::uint32_t value) const
    {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream.setByteOrder(m_order);
        stream << static_cast<quint32>(value);
        return bytes;
    }

    QByteArray number(quint64 value) const
    {
        const auto high = word(static_cast<std::uint32_t>(value >> 32));
        const auto low = word(static_cast<std::uint32_t>(value));
        return m_order == QDataStream::BigEndian ? high + low : low + high;
    }

    // A word that counts: bytes, or items.
    QByteArray count(std::uint32_t value) { return word(m_lengths++ == m_spoilt ? m_change(value) : value); }

    QByteArray counted(const QByteArray& bytes)
    {
        return count(static_cast<std::uint32_t>(bytes.size())) + bytes;
    }
    QByteArray text(const QString& text) { return text.isNull() ? word(0xFFFFFFFF) : counted(text.toUtf8()); }

    QByteArray payload(const IMKObject& record, const MemberInfo& member)
    {
        switch (member.GetKind()) {
        case MemberInfo::Record:
            return entries(member.GetRecord(record), *member.GetClass());
        case MemberInfo::List: {
            QByteArray items;
            for (int i = 0; i < member.CountItems(record); ++i)
                items += frame(member.GetItem(record, i), *member.GetClass());
            return count(static_cast<std::uint32_t>(member.CountItems(record))) + items;
        }
        case MemberInfo::UnsignedInteger: {
            const quint64 ignored =
                m_isUnusual && m_random.oneIn(4) ? quint64(m_random.below(1000)) << 32 : 0;
            return number(ignored + member.GetValue(record).toUInt());
        }
        case MemberInfo::Boolean: {
            const int truth = m_isUnusual ? 1 + m_random.below(255) : 1;
            return QByteArray(1, static_cast<char>(member.GetValue(record).toBool() ? truth : 0));
        }
        case MemberInfo::Decimal:
            return text(QStringLiteral("%1").arg(member.GetValue(record).toDouble(), 0, 'f', 2));
        case MemberInfo::Text:
            return text(member.GetValue(record).toString());
        default:
            return text(member.GetNames().value(member.GetValue(record).toInt()));
        }
    }

    QByteArray entry(std::uint32_t tag, const QByteArray& payload) { return word(tag) + counted(payload); }

    QByteArray entries(const IMKObject& record, const RecordInfo& info)
    {
        std::vector<QByteArray> all;
        for (const MemberInfo* member : info.GetMembers()) {
            const bool isChosen = !info.IsChoice() || info.GetSelected(record) == member;
            if (!isChosen || !member->IsSet(record))
                continue;
            if (m_isUnusual && m_random.oneIn(8)) {
                // In front, so that it is replaced or continued, or is a payload that is not selected.
                const auto other = info.Create();
                const MemberInfo& first =
                    info.IsChoice()
                        ? *info.GetMembers().at(m_random.below(static_cast<int>(info.GetMembers().size())))
                        : *member;
                if (first.GetKind() == MemberInfo::Record)
                    fill(first.EditRecord(*other), *first.GetClass(), m_random, false);
                else if (first.GetKind() != MemberInfo::List)
                    first.SetValue(*other, valueFor(first, m_random));
                all.push_back(entry(first.GetBinaryTag(), payload(*other, first)));
            }
            all.push_back(entry(member->GetBinaryTag(), payload(record, *member)));
        }
        if (m_isUnusual && m_random.oneIn(2) && !info.IsChoice())
            std::rotate(all.begin(), all.begin() + m_random.below(static_cast<int>(all.size()) + 1),
                        all.end());
        if (m_isUnusual && m_random.oneIn(3)) {
            // A tag that nobody knows, or one that only other records know.
            const std::uint32_t tag =
                m_random.oneIn(2) || info.FindMember(0xA97DB5BE) ? 0x00C0FFEE : 0xA97DB5BE;
            const QByteArray content(m_random.below(20), static_cast<char>(m_random.below(256)));
            all.insert(all.begin() + m_random.below(static_cast<int>(all.size()) + 1), entry(tag, content));
        }
        QByteArray bytes;
        for (const QByteArray& each : all)
            bytes += each;
        return bytes;
    }

    Random& m_random;
    QDataStream::ByteOrder m_order;
    bool m_isUnusual;
    int m_lengths = 0;
    int m_spoilt = -1;
    std::uint32_t (*m_change)(std::uint32_t) = nullptr;
};

void save(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        throw std::runtime_error(path.toStdString() + ": " + file.errorString().toStdString());
}

QByteArray plain(IMKObject& record) { return record.GetBinaryRepresentationAsQByteArray(); }

std::unique_ptr<IMKObject> made(const RecordInfo& info, Random& random, bool all)
{
    auto record = info.Create();
    fill(*record, info, random, all);
    return record;
}

// A document whose plain form needs several pieces.
std::unique_ptr<IMKObject> large(Random& random)
{
    auto document = RecordInfo::Document().Create();
    const MemberInfo& message = *RecordInfo::Document().GetMembers().at(0);
    for (int i = 0; i < 500; ++i)
        fill(message.EditRecord(*document), *message.GetClass(), random, true);
    return document;
}

void writeUsual(const QString& path, Random& random)
{
    QByteArray bytes;
    for (const RecordInfo* info : RecordInfo::All()) {
        for (int i = 0; i < 10; ++i)
            bytes += plain(*made(*info, random, true));
        bytes += info->Create()->GetCompressedBinaryRepresentationAsQByteArray(9);
    }
    for (int i = 0; i < 300; ++i) {
        const auto record = made(RecordInfo::Document(), random, false);
        bytes += i % 5 ? plain(*record) : record->GetCompressedBinaryRepresentationAsQByteArray(i % 10);
    }
    bytes += large(random)->GetCompressedBinaryRepresentationAsQByteArray(1);
    save(path, bytes);
}

void writeByHand(const QDir& folder, QDataStream::ByteOrder order, const QString& name, const QString& bare,
                 Random& random)
{
    FrameWriter writer(order, random, true);
    QByteArray bytes;
    for (const RecordInfo* info : RecordInfo::All()) {
        QByteArray frames;
        for (int i = 0; i < 20; ++i)
            frames += writer.frame(*made(*info, random, i % 2), *info);
        save(folder.filePath(bare + QLatin1Char('/') + info->GetName() + QStringLiteral(".rec")), frames);
        for (int i = 0; i < 10; ++i)
            bytes += writer.identified(*made(*info, random, i % 2), *info);
    }
    for (int i = 0; i < 200; ++i)
        bytes += writer.identified(*made(RecordInfo::Document(), random, i % 2), RecordInfo::Document());
    save(folder.filePath(name), bytes);
}

// Each length of a few documents is wrong in turn, in each of these ways.
void writeBroken(const QDir& folder, Random& random)
{
    const std::vector<std::pair<const char*, std::uint32_t (*)(std::uint32_t)>> changes{
        {"more", [](std::uint32_t length) { return length + 1; }},
        // An empty text would become a null text, which is no mistake.
        {"less", [](std::uint32_t length) { return length ? length - 1 : 2; }},
        {"huge", [](std::uint32_t) { return 0x7FFFFFFFU; }},
        {"negative", [](std::uint32_t) { return 0x80000000U; }}};
    for (int i = 0; i < 3; ++i) {
        const auto document = made(RecordInfo::Document(), random, i == 0);
        FrameWriter counting(QDataStream::BigEndian, random, false);
        const QByteArray good = counting.identified(*document, RecordInfo::Document());
        for (int number = 0; number < counting.lengths(); ++number)
            for (const auto& [name, change] : changes) {
                FrameWriter writer(QDataStream::BigEndian, random, false);
                writer.spoil(number, change);
                save(folder.filePath(
                         QStringLiteral("%1-%2-%3.bin").arg(i).arg(number).arg(QLatin1String(name))),
                     writer.identified(*document, RecordInfo::Document()));
            }
        save(folder.filePath(QStringLiteral("%1-cut.bin").arg(i)), good.left(good.size() - 1));
    }
}

void writeAll(const QDir& folder)
{
    for (const char* name : {"bare", "bare-little", "broken"})
        if (!folder.mkpath(QLatin1String(name)))
            throw std::runtime_error("No folder can be made in " + folder.path().toStdString() + ".");
    Random random;
    writeUsual(folder.filePath(QStringLiteral("usual.rec")), random);
    writeByHand(folder, QDataStream::BigEndian, QStringLiteral("unusual.rec"), QStringLiteral("bare"),
                random);
    writeByHand(folder, QDataStream::LittleEndian, QStringLiteral("little.rec"),
                QStringLiteral("bare-little"), random);
    writeBroken(QDir(folder.filePath(QStringLiteral("broken"))), random);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "Usage: write_messages FOLDER\n";
        return 2;
    }
    try {
        writeAll(QDir(QString::fromLocal8Bit(argv[1])));
    } catch (const std::exception& exception) {
        std::cerr << exception.what() << '\n';
        return 1;
    }
    return 0;
}
