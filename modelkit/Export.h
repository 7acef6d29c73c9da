// SPDX-License-Identifier: MIT
/// \file
/// Marks what the base object library exports.
#pragma once

#include <QtCore/qglobal.h>

/// \def MODELKIT_EXPORT
/// Exported while the library itself is built, otherwise imported.
#if defined(MODELKIT_BUILD)
    #define MODELKIT_EXPORT Q_DECL_EXPORT
#else
    #define MODELKIT_EXPORT Q_DECL_IMPORT
#endif
