// SPDX-License-Identifier: MIT
// The names of the classes whose whole-object binary forms a program can meet. Not installed.
#pragma once

#include "modelkit/Export.h"

#include <QtCore/QString>

namespace MODELKIT {

// The low 32 bits of a type code.
int frameIdOf(long long typeCode);

// Makes a class known by the low 32 bits of its type code. Called while libraries are loaded.
MODELKIT_EXPORT bool registerClass(long long typeCode, const QString& name);

// The name of the class with that frame id, or the id in hexadecimal digits.
QString classNameOf(int frameId);

} // namespace MODELKIT
