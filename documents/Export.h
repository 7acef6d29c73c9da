// SPDX-License-Identifier: MIT
/// \file
/// Marks what the document library exports.
#pragma once

#include <QtCore/qglobal.h>

/// \def ROUTERDOCUMENTS_EXPORT
/// Exported while the library itself is built, otherwise imported. Nothing for a static library.
#if defined(ROUTERDOCUMENTS_STATIC)
    #define ROUTERDOCUMENTS_EXPORT
#elif defined(ROUTERDOCUMENTS_BUILD)
    #define ROUTERDOCUMENTS_EXPORT Q_DECL_EXPORT
#else
    #define ROUTERDOCUMENTS_EXPORT Q_DECL_IMPORT
#endif
