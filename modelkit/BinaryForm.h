// SPDX-License-Identifier: MIT
/// \file
/// Looking into the whole-object binary form without an object to read it.
#pragma once

#include "modelkit/Export.h"
#include "modelkit/Failure.h"

#include <QtCore/QByteArray>

namespace MODELKIT {

/// Whether the bytes begin as the compressed form does.
MODELKIT_EXPORT bool IsCompressedForm(const QByteArray& form);

/// Inflates the compressed form at the beginning of \a form, which is big-endian, as
/// `GetCompressedBinaryRepresentationAsQByteArray` makes it.
/// \param plain gets the plain form, or what could be inflated of it. It takes no more than
/// Limits::inflatedSize bytes.
/// \param failure tells why the result is false: the form is none, is cut off or damaged, or too large.
MODELKIT_EXPORT bool InflateForm(const QByteArray& form, QByteArray& plain, Failure& failure);

} // namespace MODELKIT
