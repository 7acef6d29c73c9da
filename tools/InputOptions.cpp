// SPDX-License-Identifier: MIT
#include "InputOptions.h"

#include "documents/Text.h"

#include "modelkit/Limits.h"

#include <algorithm>
#include <limits>

namespace routermsg {

using namespace ROUTERDOCUMENTS;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

QStringList namesOfRecords()
{
    QStringList names;
    for (const RecordInfo* info : RecordInfo::All())
        names += info->GetName();
    return names;
}

// In the order of the values of --byte-order.
enum class ByteOrderWord
{
    Big,
    Little
};

const QStringList& byteOrderWords()
{
    static const QStringList words = {QStringLiteral("big"), QStringLiteral("little")};
    return words;
}

// --- sizes

struct Unit
{
    char letter;
    qint64 bytes;
};

constexpr qint64 mebibyte = qint64(1) << 20;
constexpr Unit units[] = {{'K', qint64(1) << 10}, {'M', mebibyte}, {'G', qint64(1) << 30}};

// Nothing when the text is no size. A size that is too large for the type is the largest number.
std::optional<qint64> sizeIn(QString text)
{
    qint64 unit = 1;
    for (const Unit& one : units)
        if (text.endsWith(QLatin1Char(one.letter), Qt::CaseInsensitive)) {
            unit = one.bytes;
            text.chop(1);
            break;
        }
    const bool isNumber = !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) {
        return c >= u'0' && c <= u'9';
    });
    if (!isNumber)
        return std::nullopt;
    bool fits = false;
    const qint64 number = text.toLongLong(&fits);
    const qint64 most = std::numeric_limits<qint64>::max();
    return fits && number <= most / unit ? number * unit : most;
}

} // namespace

// --- how inputs are written

InputFormat InputFormat::inOtherByteOrder() const
{
    InputFormat other = *this;
    FrameFormat layout = frame.value_or(FrameFormat());
    layout.byteOrder =
        layout.byteOrder == QDataStream::BigEndian ? QDataStream::LittleEndian : QDataStream::BigEndian;
    other.frame = layout;
    return other;
}

QStringList InputFormat::words() const
{
    QStringList words;
    if (form)
        words += {QStringLiteral("--from"), NameOf(*form)};
    if (info)
        words += {QStringLiteral("--record"), info->GetName()};
    if (frame && !frame->hasId)
        words += QStringLiteral("--no-id");
    if (frame && (frame->hasId || frame->byteOrder == QDataStream::LittleEndian))
        words += {QStringLiteral("--byte-order"),
                  byteOrderWords().at(frame->byteOrder == QDataStream::LittleEndian ? 1 : 0)};
    return words;
}

QVector<OptionTable> inputOptionRows()
{
    return {choice({"--from"}, "FORM", FormNames(),
                   "The form of all inputs. Without it, the content of each message tells its form."),
            choice({"--record"}, "NAME", namesOfRecords(),
                   "The record of all messages; messages with another root are refused."),
            flag({"--no-id"}, "The inputs are binary frames without the class id in front; needs --record."),
            choice({"--byte-order"}, "ORDER", byteOrderWords(),
                   "The inputs are binary frames in this byte order: big or little."),
            suggesting({"64M", "512M", "1G"},
                       option({"--limit"}, "SIZE",
                              QStringLiteral(
                                  "The size in bytes of the largest message that is read, or with K, M or G "
                                  "behind it; without it %1M.")
                                  .arg(MODELKIT::Limits().inputSize / mebibyte)))};
}

InputFormat inputFormatOf(const Arguments& arguments)
{
    InputFormat format;
    format.form = arguments.choice<Form>("--from");
    if (arguments.isGiven("--record"))
        format.info = RecordInfo::Find(arguments.text("--record"));
    const bool hasId = !arguments.isGiven("--no-id");
    const auto order = arguments.choice<ByteOrderWord>("--byte-order");
    if (hasId && !order)
        return format;
    const QString option = hasId ? QStringLiteral("--byte-order") : QStringLiteral("--no-id");
    if (!hasId && !format.info)
        arguments.refuse(
            QStringLiteral("The option --no-id needs --record: without the class id, nothing else "
                           "tells which record the frames hold."));
    if (format.form && !IsBinary(*format.form))
        arguments.refuse(QStringLiteral("The option %1 is for binary messages, but --from says %2.")
                             .arg(option, NameOf(*format.form)));
    if (!hasId && format.form == Form::Compressed)
        arguments.refuse(
            QStringLiteral("The option --no-id is not for compressed messages: without their first "
                           "word, nothing tells that they are compressed."));
    format.frame = FrameFormat{hasId, order == ByteOrderWord::Little ? QDataStream::LittleEndian
                                                                     : QDataStream::BigEndian};
    return format;
}

// --- limits

void setLimits(const Arguments& arguments)
{
    if (!arguments.isGiven("--limit"))
        return;
    const QString text = arguments.text("--limit");
    const std::optional<qint64> size = sizeIn(text);
    if (!size || *size == 0)
        arguments.refuse(
            QStringLiteral("%1 is no value of --limit. Write the number of bytes, at least 1, or "
                           "with K, M or G behind it, such as 64M.")
                .arg(Quoted(text)));
    if (*size > LargestMessage)
        arguments.refuse(QStringLiteral("%1 is more than can be held in memory. The largest value of --limit "
                                        "is %2M.")
                             .arg(Quoted(text))
                             .arg(LargestMessage / mebibyte));
    MODELKIT::Limits limits = MODELKIT::Limits::Get();
    // Larger messages may have longer lists.
    constexpr qint64 bytesForItem = 64;
    limits.listItems = static_cast<int>(std::max<qint64>(limits.listItems, *size / bytesForItem));
    limits.inputSize = *size;
    limits.inflatedSize = *size;
    MODELKIT::Limits::Set(limits);
}

QStringList limitWords()
{
    const qint64 size = MODELKIT::Limits::Get().inputSize;
    if (size <= MODELKIT::Limits().inputSize)
        return {};
    return {QStringLiteral("--limit"), QString::number(size)};
}

} // namespace routermsg
