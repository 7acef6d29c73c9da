// SPDX-License-Identifier: MIT
/// \file
/// Marks what the library of item models exports.
#pragma once

#include <QtCore/qglobal.h>

/// \def ROUTERMODELS_EXPORT
/// Exported while the library itself is built, otherwise imported. Nothing for a static library.
#if defined(ROUTERMODELS_STATIC)
    #define ROUTERMODELS_EXPORT
#elif defined(ROUTERMODELS_BUILD)
    #define ROUTERMODELS_EXPORT Q_DECL_EXPORT
#else
    #define ROUTERMODELS_EXPORT Q_DECL_IMPORT
#endif
