// SPDX-License-Identifier: MIT
// Reads any bytes as the frame of one record, in both byte orders: from memory and from another device. Both
// must give the same and leave the stream at the same place.
#include "fuzz/AnyRecord.h"

using namespace fuzzing;

namespace {

// Has random access but is no QBuffer, so that it is read by ordinary calls.
class Disk : public QIODevice
{
public:
    explicit Disk(const QByteArray& content) : m_content(content)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    qint64 size() const override { return m_content.size(); }

protected:
    qint64 readData(char* to, qint64 count) override
    {
        const qint64 taken = std::max<qint64>(0, std::min(count, m_content.size() - pos()));
        std::copy_n(m_content.constData() + pos(), taken, to);
        return taken;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    const QByteArray m_content;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const MODELKIT::LimitsInScope inScope(smallLimits());
    const auto order = input.decisions.oneIn(2) ? QDataStream::LittleEndian : QDataStream::BigEndian;
    const int length = input.decisions.oneIn(4) ? input.decisions.below(0x10000) - 0x100
                                                : static_cast<int>(input.bytes.size());
    useAnyClass(input.decisions, [&](auto tag) {
        using R = typename decltype(tag)::Record;
        const auto seenOfReadingFrom = [&](QIODevice& device) {
            return seenOfReadingInto<R>(false, [&](R& record) {
                QDataStream stream(&device);
                stream.setByteOrder(order);
                record.SetBinary(stream, length);
                return device.pos() + (qint64(stream.status()) << 32U);
            });
        };
        QBuffer buffer;
        buffer.setData(input.bytes);
        buffer.open(QIODevice::ReadOnly);
        Disk disk(input.bytes);
        requireSame(seenOfReadingFrom(buffer), seenOfReadingFrom(disk),
                    "reading from memory and from a disk");
    });
    return 0;
}
