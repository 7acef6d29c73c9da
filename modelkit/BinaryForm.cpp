// SPDX-License-Identifier: MIT
#include "modelkit/BinaryForm.h"

#include "modelkit/Compression.h"
#include "modelkit/FormHeader.h"
#include "modelkit/Limits.h"

#include <QtCore/QDataStream>

#include <algorithm>

namespace MODELKIT {

bool IsCompressedForm(const QByteArray& form)
{
    return form.size() >= FormHeader::size
           && FormHeader(form.constData(), QDataStream::BigEndian).id == FormHeader::compressedMarker;
}

bool InflateForm(const QByteArray& form, QByteArray& plain, Failure& failure)
{
    plain.clear();
    if (!IsCompressedForm(form)) {
        failure = notAForm(QStringLiteral("The bytes do not begin as a compressed form."));
        return false;
    }
    const FormHeader header(form.constData(), QDataStream::BigEndian);
    if (!header.BeginsFormOf(FormHeader::compressedMarker, QString(), Limits::Get().inputSize, failure))
        return false;
    const auto there = std::min<qint64>(header.length, form.size() - FormHeader::size);
    const bool inflated =
        inflatePieces(QByteArray::fromRawData(form.constData() + FormHeader::size, static_cast<int>(there)),
                      Limits::Get().inflatedSize, plain, failure);
    if (there == header.length)
        return inflated;
    failure = cutOff(form.size());
    return false;
}

} // namespace MODELKIT
