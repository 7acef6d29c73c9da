// SPDX-License-Identifier: MIT
/// \file
/// Marks what the record library makes visible to other modules.
#pragma once

#include <QtCore/qglobal.h>

/// \def ROUTERINTERFACE_EXPORT
/// Exported while the library itself is built, otherwise imported. Nothing for a static library.
#if defined(ROUTERINTERFACE_STATIC)
    #define ROUTERINTERFACE_EXPORT
#elif defined(ROUTERINTERFACE_BUILD)
    #define ROUTERINTERFACE_EXPORT Q_DECL_EXPORT
#else
    #define ROUTERINTERFACE_EXPORT Q_DECL_IMPORT
#endif
