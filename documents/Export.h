// SPDX-License-Identifier: MIT
/// \file
/// Marks what the document library makes visible to other modules.
#pragma once

#include <QtCore/qglobal.h>

#if defined(ROUTERDOCUMENTS_BUILD)
    #define ROUTERDOCUMENTS_EXPORT Q_DECL_EXPORT
#else
    #define ROUTERDOCUMENTS_EXPORT Q_DECL_IMPORT
#endif
