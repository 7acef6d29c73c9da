// SPDX-License-Identifier: MIT
/// \file
/// Looking into XML documents without an object to read them.
#pragma once

#include "modelkit/Export.h"
#include "modelkit/Place.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace MODELKIT {

/// The place of the first element with that path, such as the path in the place of an exception that
/// `Check()` has thrown; line and column stay 0 when the document has none.
/// \param xml a document that an object has read, so that it is known to be harmless.
MODELKIT_EXPORT Place FindInXml(const QByteArray& xml, const QString& path);

/// The name of the root element; a null string when the document has none, or one that the operations on
/// whole documents do not accept.
MODELKIT_EXPORT QString RootNameOfXml(const QByteArray& xml);

} // namespace MODELKIT
