// SPDX-License-Identifier: MIT
// Copying the messages of recordings as they stand.
#include "RecordingSupport.h"

#include "DocumentParts.h"

namespace {

using namespace recording_support;
using testing_support::ByteOrder;
using testing_support::Mark;
using testing_support::utf16;
using testing_support::utf32;

// One message in each form, and XML in every encoding with wide units.
QVector<QByteArray> differentMessages()
{
    QVector<QByteArray> messages;
    for (const Form form : allForms) {
        PelLu300RouterInterfaceXml document = numbered(1);
        const QByteArray bytes = WriteDocument(document, form);
        const bool isText = !IsBinary(form);
        messages += isText ? bytes.trimmed() : bytes;
    }
    const QString xml = QStringLiteral("<DF_Params><Frequency>1</Frequency></DF_Params>");
    for (const ByteOrder order : {ByteOrder::Little, ByteOrder::Big})
        for (const Mark mark : {Mark::With, Mark::Without}) {
            messages += utf16(xml, order, mark);
            messages += utf32(xml, order, mark);
        }
    return messages;
}

RecordedMessage onlyMessageOf(const QByteArray& bytes)
{
    const Outcome found = readAll(bytes);
    EXPECT_EQ(found.messages.size(), 1) << bytes.toStdString();
    return found.messages.value(0);
}

TEST(CopiedMessages, AreTheSameBehindEveryOther)
{
    const QVector<QByteArray> messages = differentMessages();
    for (const QByteArray& first : messages)
        for (const QByteArray& second : messages) {
            const RecordedMessage message = onlyMessageOf(first);
            EXPECT_EQ(message.bytes, first);
            const Outcome found = readAll(first + LineBreakBehind(message) + second);
            ASSERT_EQ(found.messages.size(), 2)
                << first.toHex().toStdString() << second.toHex().toStdString();
            EXPECT_TRUE(found.errors.isEmpty());
            EXPECT_EQ(found.messages[0].bytes, first);
            EXPECT_EQ(found.messages[1].bytes, second);
        }
}

TEST(CopiedMessages, HaveALineBreakInTheirEncoding)
{
    const QString xml = QStringLiteral("<DF_Params></DF_Params>");
    const auto behind = [](const QByteArray& bytes) { return LineBreakBehind(onlyMessageOf(bytes)); };
    EXPECT_EQ(behind(xml.toUtf8()), "\n");
    EXPECT_EQ(behind("{\"DF_Params\": {}}"), "\n");
    for (const Mark mark : {Mark::With, Mark::Without}) {
        EXPECT_EQ(behind(utf16(xml, ByteOrder::Little, mark)), QByteArray("\n\0", 2));
        EXPECT_EQ(behind(utf16(xml, ByteOrder::Big, mark)), QByteArray("\0\n", 2));
        EXPECT_EQ(behind(utf32(xml, ByteOrder::Little, mark)), QByteArray("\n\0\0\0", 4));
        EXPECT_EQ(behind(utf32(xml, ByteOrder::Big, mark)), QByteArray("\0\0\0\n", 4));
    }
    EXPECT_EQ(behind(inForm(Form::Binary, 1)), "");
    EXPECT_EQ(behind(inForm(Form::Compressed, 1)), "");
}

TEST(CopiedMessages, HaveNoSecondLineBreak)
{
    RecordedMessage message;
    message.bytes = "<DF_Params></DF_Params>\n";
    EXPECT_EQ(LineBreakBehind(message), "");
    message.bytes = utf16(QStringLiteral("<DF_Params></DF_Params>\n"), ByteOrder::Big, Mark::With);
    EXPECT_EQ(LineBreakBehind(message), "");
}

} // namespace
