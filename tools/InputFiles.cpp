// SPDX-License-Identifier: MIT
#include "InputFiles.h"

#include "Finding.h"
#include "InputFile.h"

#include "modelkit/Devices.h"
#include "modelkit/Limits.h"

namespace routermsg {

using namespace ROUTERDOCUMENTS;

QByteArray readInput(const QString& path)
{
    constexpr qint64 step = qint64(1) << 20;
    const qint64 limit = MODELKIT::Limits::Get().inputSize;
    InputFile file(path);
    file.forget();
    QByteArray bytes;
    while (file.take(step, bytes))
        if (bytes.size() > limit)
            throw Refusal(Finding::of(MODELKIT::inputTooLarge(limit), inputName(path)));
    return bytes;
}

Document parse(const QByteArray& bytes, const QString& name, const ReadingOptions& options)
{
    try {
        return ReadDocument(bytes, options);
    } catch (const DocumentError& error) {
        throw Refusal(Finding::of(error, name));
    }
}

} // namespace routermsg
