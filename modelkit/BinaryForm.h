// SPDX-License-Identifier: MIT
/// \file
/// Looking into the whole-object binary form without an object to read it.
#pragma once

#include "modelkit/Export.h"
#include "modelkit/Failure.h"

#include <QtCore/QByteArray>

namespace MODELKIT {

/// Whether the bytes begin like a compressed form.
MODELKIT_EXPORT bool IsCompressedForm(const QByteArray& form);

/// Inflates the compressed form at the beginning of \a form, which is in big-endian byte order like the
/// result of `GetCompressedBinaryRepresentationAsQByteArray`. Limits::inputSize and Limits::inflatedSize
/// apply.
/// \param plain receives the plain form, or the part of it that could be inflated.
/// \param failure tells why the result is false: the bytes are no compressed form, or the form is cut off,
/// damaged or too large.
MODELKIT_EXPORT bool InflateForm(const QByteArray& form, QByteArray& plain, Failure& failure);

} // namespace MODELKIT
