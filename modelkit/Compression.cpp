// SPDX-License-Identifier: MIT
#include "modelkit/Compression.h"

#include "modelkit/FormHeader.h"

#include <QtCore/QDataStream>
#include <QtCore/QIODevice>
#include <QtCore/QString>
#include <QtCore/QtEndian>

#include <algorithm>
#include <new>

namespace MODELKIT {

namespace {

constexpr int pieceSize = 64 << 10;
// zlib makes no piece larger than this; see compressBound() in its documentation.
constexpr int maximalPackedPiece = pieceSize + (pieceSize >> 10) + 64;

} // namespace

QByteArray compressInPieces(const QByteArray& plain, int level)
{
    QByteArray packed;
    QDataStream stream(&packed, QIODevice::WriteOnly);
    for (int begin = 0; begin < plain.size(); begin += pieceSize) {
        const QByteArray piece = qCompress(plain.mid(begin, pieceSize), std::clamp(level, -1, 9));
        // With a valid level, the only possible reason is a lack of memory.
        if (piece.isEmpty())
            throw std::bad_alloc();
        stream << piece;
    }
    return packed;
}

bool inflatePieces(const QByteArray& packed, qint64 limit, QByteArray& plain, Failure& failure)
{
    failure.kind = Failure::DamagedCompression;
    failure.text = QStringLiteral("The compressed form is damaged.");
    int position = 0;
    while (position < packed.size()) {
        failure.place.offset = FormHeader::size + position;
        if (packed.size() - position < 4)
            return false;
        const int size = qFromBigEndian<qint32>(packed.constData() + position);
        position += 4;
        if (size <= 4 || size > maximalPackedPiece || size > packed.size() - position)
            return false;
        // The piece begins with its inflated size. qUncompress allocates that much before it inflates.
        const int inflatedSize = qFromBigEndian<qint32>(packed.constData() + position);
        if (inflatedSize <= 0 || inflatedSize > pieceSize)
            return false;
        if (plain.size() + inflatedSize > limit) {
            failure.kind = Failure::InflatedTooLarge;
            failure.text =
                QStringLiteral("The inflated form is larger than the limit of %1 bytes.").arg(limit);
            return false;
        }
        const QByteArray piece =
            qUncompress(reinterpret_cast<const uchar*>(packed.constData()) + position, size);
        if (piece.size() != inflatedSize)
            return false;
        plain += piece;
        position += size;
    }
    failure = Failure();
    return true;
}

} // namespace MODELKIT
