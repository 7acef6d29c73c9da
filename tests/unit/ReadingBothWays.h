// SPDX-License-Identifier: MIT
// Reads a whole XML document without Qt's stream reader, if it is plain, and with it, each time into a new
// record, which is the same. Qt's reader reads a document of which somebody wants a report.
#pragma once

#include "SeenSupport.h"
#include "TestDevices.h"

#include "modelkit/ReadingReport.h"

#include <string>
#include <utility>
#include <vector>

namespace testing_support {

template <class R, class Read>
std::string seenOfReading(const Random& random, const Read& read)
{
    R record;
    const Loggers loggers;
    Random same = random;
    if (!same.oneIn(3))
        fillAtRandom(record, same, loggers,
                     [](Random& texts) { return texts.oneIn(6) ? QString() : QStringLiteral("old"); });
    giveSettings(record, same.oneIn(2), loggers.ofOwner);
    R sharing;
    const bool isShared = same.oneIn(4);
    if (isShared)
        sharing = record;
    std::string seen = seenOfOperation(loggers, [&] { return read(record); });
    seen += "\ninitialised " + seenOf(record.IsInitialized()) + '\n';
    appendSeen(seen, record, loggers);
    if (isShared)
        appendSeen(seen, sharing, loggers);
    return seen;
}

// What is seen of reading without a report, and with one.
template <class R, class Read>
std::pair<std::string, std::string> seenOfReadingBothWays(Random& random, const Read& read)
{
    const std::string plainly = seenOfReading<R>(random, read);
    const std::string byStream = seenOfReading<R>(random, [&read](R& record) {
        const MODELKIT::ReadingReport report;
        return read(record);
    });
    random.below(2);
    return {plainly, byStream};
}

// As a string, which may hold what no bytes can.
inline QString stringOf(const QByteArray& xml, Random& random)
{
    const char16_t oddUnits[] = {0, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xFEFF, 0xFFFE, 0xFFFF, 0x1F, 0xE9};
    QString text = QString::fromUtf8(xml);
    if (random.oneIn(10))
        text.insert(random.below(static_cast<int>(text.size()) + 1), QChar(random.of(oddUnits)));
    return text;
}

// From a string, bytes or a device.
template <class R>
std::pair<std::string, std::string> seenOfBothWays(const QByteArray& xml, Random& random)
{
    const bool checks = random.oneIn(2);
    switch (random.below(5)) {
    case 0: {
        const QString text = stringOf(xml, random);
        return seenOfReadingBothWays<R>(random, [&](R& record) { return record.SetXmlString(text, checks); });
    }
    case 1: {
        // Nothing readable is behind these bytes.
        const std::vector<char> bytes(xml.begin(), xml.end());
        const QByteArray raw = QByteArray::fromRawData(bytes.data(), static_cast<int>(bytes.size()));
        return seenOfReadingBothWays<R>(random, [&](R& record) { return record.SetXmlBytes(raw, checks); });
    }
    case 2:
        return seenOfReadingBothWays<R>(random, [&](R& record) {
            QBuffer buffer;
            buffer.setData("junk" + xml);
            buffer.open(QIODevice::ReadOnly);
            buffer.seek(4);
            return record.LoadXml(&buffer) && buffer.pos() == 4 + xml.size();
        });
    case 3:
        return seenOfReadingBothWays<R>(random, [&](R& record) {
            ForwardDevice device(xml);
            return record.LoadXml(&device) && device.left() == 0;
        });
    default:
        return seenOfReadingBothWays<R>(random, [&](R& record) { return record.SetXmlBytes(xml, checks); });
    }
}

} // namespace testing_support
