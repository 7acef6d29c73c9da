// SPDX-License-Identifier: MIT
// Writes the words that mean something to the records, as libFuzzer takes a dictionary: names, elements, JSON
// keys, enumerators, and the tags and ids of the binary form in both byte orders.
#include "routerinterface/RecordInfo.h"

#include <QtCore/QByteArray>
#include <QtCore/QtEndian>

#include <cstdint>
#include <cstdio>

using namespace PELLU300ROUTERINTERFACEXML;

namespace {

bool g_isWritten = true;

void write(const QByteArray& word)
{
    QByteArray line = "\"";
    for (const char byte : word)
        line += "\\x" + QByteArray(1, byte).toHex();
    line += "\"\n";
    g_isWritten = std::fputs(line.constData(), stdout) >= 0 && g_isWritten;
}

void writeName(const QString& name)
{
    const QByteArray utf8 = name.toUtf8();
    for (const QByteArray& word : {'<' + utf8 + '>', "</" + utf8 + '>', '"' + utf8 + "\":"})
        write(word);
}

void writeWord(std::uint32_t word)
{
    for (const std::uint32_t ordered : {qToBigEndian(word), qToLittleEndian(word)})
        write(QByteArray(reinterpret_cast<const char*>(&ordered), sizeof ordered));
}

} // namespace

int main()
{
    for (const RecordInfo* info : RecordInfo::All()) {
        writeName(info->GetName());
        writeWord(info->GetFrameId());
        for (const MemberInfo* member : info->GetMembers()) {
            writeName(member->GetName());
            writeWord(member->GetBinaryTag());
            for (const QString& enumerator : member->GetNames())
                write(enumerator.toUtf8());
        }
    }
    for (const char* word : {"true", "false", "null", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>", "<!--",
                             "-->", "<![CDATA[", "]]>", "&amp;", "&#x41;", "/>"})
        write(word);
    return g_isWritten && std::fflush(stdout) == 0 ? 0 : 1;
}
