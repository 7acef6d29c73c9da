// SPDX-License-Identifier: MIT
/// \file
/// Marks what the library of connections exports.
#pragma once

#include <QtCore/qglobal.h>

/// \def ROUTERLINK_EXPORT
/// Exported while the library itself is built, otherwise imported. Nothing for a static library.
#if defined(ROUTERLINK_STATIC)
    #define ROUTERLINK_EXPORT
#elif defined(ROUTERLINK_BUILD)
    #define ROUTERLINK_EXPORT Q_DECL_EXPORT
#else
    #define ROUTERLINK_EXPORT Q_DECL_IMPORT
#endif
