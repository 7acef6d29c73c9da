// SPDX-License-Identifier: MIT
// The names of the classes whose whole-object binary forms a program can encounter. Not installed.
#pragma once

#include "modelkit/Export.h"

#include <QtCore/QString>

namespace MODELKIT {

// The id of the frames of a class: the low 32 bits of its type code.
int frameIdOf(long long typeCode);

// Makes the name of a class known. Called while libraries are loaded.
MODELKIT_EXPORT bool registerClass(long long typeCode, const QString& name);

// The name of the class with that frame id, or the id in hexadecimal digits.
QString classNameOf(int frameId);

} // namespace MODELKIT
