// SPDX-License-Identifier: MIT
#include "documents/UnknownForm.h"

#include "documents/FormSigns.h"
#include "documents/Text.h"
#include "documents/TextUnits.h"

#include "modelkit/FormHeader.h"

#include <QtCore/QtEndian>

#include <algorithm>

namespace ROUTERDOCUMENTS {

using MODELKIT::FormHeader;

namespace {

struct Sign
{
    const char* name;
    int offset;
    int size;
    const char* bytes;
};

constexpr Sign compressions[] = {{"gzip", 0, 2, "\x1F\x8B"},
                                 {"zstd", 0, 4, "\x28\xB5\x2F\xFD"},
                                 {"zip", 0, 4, "PK\x03\x04"},
                                 {"bzip2", 4, 6, "1AY&SY"},
                                 {"xz", 1, 5, "7zXZ\0"},
                                 {"lz4", 0, 4, "\x04\x22\x4D\x18"},
                                 {"7-Zip", 0, 6, "7z\xBC\xAF\x27\x1C"}};

bool begins(const QByteArray& bytes, const char* with, int size)
{
    return bytes.startsWith(QByteArray::fromRawData(with, size));
}

QString compressionOf(const QByteArray& bytes)
{
    for (const Sign& sign : compressions)
        if (begins(bytes.mid(sign.offset, sign.size), sign.bytes, sign.size))
            return QLatin1String(sign.name);
    return QString();
}

// Whether it is a binary form, if only of an unknown class: then its length is right.
bool isBinary(const QByteArray& bytes)
{
    if (bytes.size() < 4)
        return false;
    return binaryFormOf(qFromBigEndian<quint32>(bytes.constData())).has_value()
           || (bytes.size() >= FormHeader::size
               && qFromBigEndian<qint32>(bytes.constData() + 4) == bytes.size() - FormHeader::size);
}

bool isLittleEndian(const QByteArray& bytes)
{
    return bytes.size() >= 4 && binaryFormOf(qFromLittleEndian<quint32>(bytes.constData())).has_value();
}

// The size of the byte order mark; 0 without one.
int sizeOfMark(const QByteArray& bytes)
{
    for (const ByteOrderMark& mark : byteOrderMarks)
        if (begins(bytes, mark.bytes, mark.size))
            return mark.size;
    return 0;
}

// The first character that is no white space, in any encoding in which zeros fill up the characters; 0 when
// there is none.
char firstCharacter(const QByteArray& bytes)
{
    const auto first = std::find_if(bytes.begin() + sizeOfMark(bytes), bytes.end(),
                                    [](char byte) { return byte != 0 && !isWhite(byte); });
    return first == bytes.end() ? '\0' : *first;
}

// Whether the characters have more than one byte.
bool isWide(const QByteArray& bytes)
{
    constexpr int beginning = 4;
    const int mark = sizeOfMark(bytes);
    return mark == 2 || mark == 4 || bytes.left(beginning).contains('\0');
}

// The bytes as text; null when they are none. At the end a character may be cut off.
QString asText(const QByteArray& bytes)
{
    constexpr int longestCharacter = 4;
    if (!std::all_of(bytes.begin(), bytes.end(), isTextByte))
        return QString();
    for (int cut = 0; cut < longestCharacter && cut < bytes.size(); ++cut) {
        QString text = QString::fromUtf8(bytes.left(bytes.size() - cut));
        if (!text.contains(QChar::ReplacementCharacter))
            return text;
    }
    return QString();
}

QString beginningOf(const QByteArray& bytes)
{
    constexpr int shownBytes = 8;
    constexpr int shownCharacters = 40;
    const QString text = asText(bytes.left(shownCharacters));
    if (!text.isNull())
        return Quoted(bytes.size() > shownCharacters ? text + QStringLiteral("...") : text);
    const QString hex = QString::fromLatin1(bytes.left(shownBytes).toHex(' ').toUpper());
    return QStringLiteral("the bytes %1").arg(hex);
}

} // namespace

QString WhyNoForm(const QByteArray& bytes)
{
    if (bytes.isEmpty())
        return QStringLiteral("The input is empty.");
    if (std::all_of(bytes.begin(), bytes.end(), [](char byte) { return isWhite(byte); }))
        return QStringLiteral("The input holds nothing but white space.");
    if (isBinary(bytes))
        return QString();
    const QString compression = compressionOf(bytes);
    if (!compression.isEmpty())
        return QStringLiteral("The input is compressed with %1. Decompress it first: the compressed form of "
                              "documents is another one.")
            .arg(compression);
    if (isLittleEndian(bytes))
        return QStringLiteral(
            "The input is a binary form in little-endian byte order, expected is big-endian.");
    const char first = firstCharacter(bytes);
    const bool isJson = beginsJson(first);
    if (isJson && isWide(bytes))
        return QStringLiteral("The input is JSON in UTF-16 or UTF-32, expected is UTF-8.");
    if (isJson || first == '<')
        return QString();
    return QStringLiteral("The input is neither XML nor JSON nor a binary form; it begins with %1.")
        .arg(beginningOf(bytes));
}

} // namespace ROUTERDOCUMENTS
