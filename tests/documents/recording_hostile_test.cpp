// SPDX-License-Identifier: MIT
// Recordings that are cut off or damaged, and such as are made to cost much: nothing but errors comes of it.
#include "RecordingSupport.h"

#include <random>

using namespace recording_support;

namespace {

// A small one with all forms.
QByteArray mixed()
{
    QByteArray content;
    for (unsigned int i = 1; i <= 5; ++i)
        content += inForm(allForms[i - 1], i);
    return content + inForm(Form::Xml, 6) + inForm(Form::Binary, 7);
}

// The recording is read to its end, each place once; a loop would not end.
void expectSound(const QByteArray& content, const Outcome& outcome)
{
    qint64 before = 0;
    for (const RecordedMessage& message : outcome.messages) {
        EXPECT_GE(message.offset, before);
        before = message.offset + message.bytes.size();
        EXPECT_LE(before, content.size());
        EXPECT_FALSE(message.bytes.isEmpty());
        EXPECT_EQ(content.mid(static_cast<int>(message.offset), message.bytes.size()), message.bytes);
    }
    for (const DocumentError& error : outcome.errors) {
        EXPECT_GE(error.GetPlace().offset, 0);
        EXPECT_LT(error.GetPlace().offset, content.size());
        EXPECT_FALSE(error.GetText().isEmpty());
    }
}

// How many bytes are looked at.
qint64 workFor(const QByteArray& content, int piece)
{
    Pieces device(content, piece);
    RecordingReader reader(device);
    RecordedMessage message;
    while (true) {
        try {
            if (!reader.ReadNext(message))
                return reader.GetExaminedBytes();
        } catch (const DocumentError&) {
            // The next call goes on behind it.
        }
    }
}

QByteArray repeated(const QByteArray& part, int size)
{
    return part.repeated(size / static_cast<int>(part.size()));
}

// Recordings of about that size, on which a reader that looks at bytes again and again would spend long.
QVector<QByteArray> costly(int size)
{
    return {
        repeated(mixed(), size),
        "<a>" + QByteArray(size, 'x') + "</a>",
        "<a>" + repeated("<b>", size),
        "<!--" + QByteArray(size, '-'),
        "<a b='" + QByteArray(size, 'x') + "'/>",
        "<a><![CDATA[" + QByteArray(size, ']'),
        "<a>" + QByteArray(size, '\0') + "</a>",
        "{\"a\":\"" + QByteArray(size, 'x') + "\"}",
        QByteArray(size, '['),
        repeated("{\"a\":", size),
        QByteArray(size, 'x'),
        QByteArray(size, '<'),
        QByteArray(size, '\0'),
        QByteArray(size, ' '),
        repeated("\n{", size),
        repeated("{\n", size),
        repeated("<!-", size),
        repeated("\n{\"aaaaaaaa", size),
        "x" + repeated("<PelLu300RouterInterfaceXm", size),
        "x" + repeated("\xFE\xFF\xEF\xBB\xBF", size),
        repeated("MKZ1\x7F\x7F", size),
        repeated(bytes("8553499A 00FF0000"), size),
        repeated(QByteArray("MKZ1\0\0\xFF\xFF", 8), size),
    };
}

} // namespace

TEST(HostileRecording, CutOffAnywhereGivesTheWholeMessagesAndTellsWhatIsNone)
{
    const QByteArray content = mixed();
    const Outcome whole = readAll(content);
    ASSERT_EQ(whole.messages.size(), 7);
    for (int size = 0; size <= content.size(); ++size) {
        const Outcome outcome = readAll(content.left(size));
        QVector<unsigned int> expected;
        qint64 end = 0;
        for (const RecordedMessage& message : whole.messages)
            if (message.offset + message.bytes.size() <= size) {
                expected += static_cast<unsigned int>(expected.size()) + 1;
                end = message.offset + message.bytes.size();
            }
        // A text that is cut off is a message that cannot be read; everything else is an error.
        while (end < size && QChar::isSpace(static_cast<uint>(content.at(static_cast<int>(end)))))
            ++end;
        const QByteArray rest = content.mid(static_cast<int>(end), size - static_cast<int>(end));
        const bool isText = rest.startsWith('{') || rest.startsWith("<?xml ")
                            || rest.startsWith("<PelLu300RouterInterfaceXml");
        if (isText)
            expected += 0;
        EXPECT_EQ(numbersIn(outcome), expected) << size;
        EXPECT_EQ(outcome.errors.size(), rest.isEmpty() || isText ? 0 : 1)
            << size << outcome.lines.join(u'\n').toStdString();
        expectSound(content.left(size), outcome);
    }
}

TEST(HostileRecording, BegunAnywhereGivesTheMessagesThatFollow)
{
    const QByteArray content = mixed();
    const Outcome whole = readAll(content);
    for (int begin = 1; begin < content.size(); ++begin) {
        const Outcome outcome = readAll(content.mid(begin));
        expectSound(content.mid(begin), outcome);
        // The document that is cut in two may give parts of itself.
        if (begin <= whole.messages.last().offset) {
            EXPECT_EQ(numbersIn(outcome).last(), 7U) << begin;
        }
    }
}

TEST(HostileRecording, WithFlippedBytesNeitherCrashesNorLoops)
{
    const QByteArray content = mixed();
    std::mt19937 random(7);
    const auto below = [&random](qint64 limit) {
        return static_cast<int>(random() % static_cast<unsigned int>(limit));
    };
    qint64 messages = 0;
    for (int round = 0; round < 6000; ++round) {
        QByteArray damaged = content;
        for (int count = 1 + below(4); count > 0; --count)
            damaged[below(damaged.size())] = static_cast<char>(below(256));
        const Outcome outcome = readAll(damaged);
        expectSound(damaged, outcome);
        // The same comes of it in pieces.
        if (round % 20 == 0) {
            EXPECT_EQ(readInPieces(damaged, 1 + below(40)).lines, outcome.lines);
        }
        messages += outcome.messages.size();
    }
    EXPECT_GT(messages, 6000 * 4);
}

TEST(HostileRecording, OfRandomBytesNeitherCrashesNorLoops)
{
    static const char* const parts[] = {"<",
                                        ">",
                                        "</",
                                        "<?xml ",
                                        "?>",
                                        "<!--",
                                        "-->",
                                        "<![CDATA[",
                                        "]]>",
                                        "\"",
                                        "'",
                                        "{",
                                        "}",
                                        "[",
                                        "]",
                                        "\n",
                                        "\\",
                                        ":",
                                        "<!DOCTYPE ",
                                        "MKZ1",
                                        "\x85\x53\x49\x9A",
                                        "a",
                                        "\xFF\xFE",
                                        "\xFE\xFF",
                                        "\xEF\xBB\xBF",
                                        "<DF_Params>",
                                        "\x01",
                                        ","};
    std::mt19937 random(11);
    for (int round = 0; round < 4000; ++round) {
        QByteArray content;
        for (auto count = random() % 30; count > 0; --count) {
            const auto choice = random() % (std::size(parts) + 2);
            if (choice < std::size(parts))
                content += parts[choice];
            else
                content += QByteArray(static_cast<int>(random() % 5), '\0');
        }
        const Outcome outcome = readAll(content);
        expectSound(content, outcome);
        EXPECT_EQ(readInPieces(content, 1 + round % 3).lines, outcome.lines)
            << content.toPercentEncoding().constData();
    }
}

TEST(HostileRecording, CostsLinearWorkInPiecesOfAnySize)
{
    constexpr int size = 10000;
    const QVector<QByteArray> small = costly(size);
    const QVector<QByteArray> large = costly(4 * size);
    for (int i = 0; i < small.size(); ++i)
        for (const int piece : {1, 7, 4096, 4 * size}) {
            const qint64 work = workFor(small.at(i), piece);
            EXPECT_GE(work, size / 2) << i;
            EXPECT_LT(work, 64 * size) << i;
            EXPECT_LT(workFor(large.at(i), piece), 5 * work) << i << " in pieces of " << piece;
        }
}

TEST(HostileRecording, LooksAtEveryByteOfALargeMessageOnce)
{
    constexpr int size = 100000;
    const QByteArray x(size, 'x');
    for (const QByteArray& message : {"<a>" + x + "</a>", "<a b='" + x + "'/>", "{\"a\":\"" + x + "\"}"})
        for (const int piece : {1, 7, 4096, size})
            EXPECT_LT(workFor(message, piece), message.size() + 50) << message.left(4).constData();
    EXPECT_LT(workFor(inForm(Form::Binary, 1).replace(4, 4, bytes("000186A0")) + x, 1), 4 * size);
}
