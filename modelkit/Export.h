// SPDX-License-Identifier: MIT
/// \file
/// Marks what the base object library exports.
#pragma once

#include <QtCore/qglobal.h>

/// \def MODELKIT_EXPORT
/// Exported while the library itself is built, otherwise imported. Nothing for a static library.
#if defined(MODELKIT_STATIC)
    #define MODELKIT_EXPORT
#elif defined(MODELKIT_BUILD)
    #define MODELKIT_EXPORT Q_DECL_EXPORT
#else
    #define MODELKIT_EXPORT Q_DECL_IMPORT
#endif

// Installed libraries say for which Qt version they were built.
#if defined(MODELKIT_QT_MAJOR) && MODELKIT_QT_MAJOR != QT_VERSION_MAJOR
    #error "The library was built for another major version of Qt than this program uses."
#endif
