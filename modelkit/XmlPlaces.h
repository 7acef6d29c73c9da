// SPDX-License-Identifier: MIT
/// \file
/// Finding elements in XML documents without an object that reads them.
#pragma once

#include "modelkit/Export.h"
#include "modelkit/Place.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace MODELKIT {

/// The place of the first element with that path, for example the path in the place of an exception that
/// `Check()` has thrown. Line and column are 0 when the document has no such element.
/// \param xml a document that an object has read. Do not pass other documents: no limits apply here.
MODELKIT_EXPORT Place FindInXml(const QByteArray& xml, const QString& path);

/// As above, for several paths in \a xml in the time of one. The places have the order of the paths.
MODELKIT_EXPORT QVector<Place> FindInXml(const QByteArray& xml, const QStringList& paths);

/// The name of the root element. A null string when there is none, or when the document has an encoding, a
/// document type declaration or a number of attributes that the operations on whole documents refuse.
MODELKIT_EXPORT QString RootNameOfXml(const QByteArray& xml);

} // namespace MODELKIT
