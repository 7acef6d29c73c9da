// SPDX-License-Identifier: MIT
/// \file
/// Marks what the library of editors exports.
#pragma once

#include <QtCore/qglobal.h>

/// \def ROUTEREDITORS_EXPORT
/// Exported while the library itself is built, otherwise imported. Nothing for a static library.
#if defined(ROUTEREDITORS_STATIC)
    #define ROUTEREDITORS_EXPORT
#elif defined(ROUTEREDITORS_BUILD)
    #define ROUTEREDITORS_EXPORT Q_DECL_EXPORT
#else
    #define ROUTEREDITORS_EXPORT Q_DECL_IMPORT
#endif
