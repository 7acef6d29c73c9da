// SPDX-License-Identifier: MIT
// For code with offsetof: records and their data blocks are no standard-layout types. The compilers support
// their offsets nevertheless, but warn of them.
#pragma once

#ifdef __GNUC__
    #define ROUTERINTERFACE_OFFSETS_BEGIN \
        _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Winvalid-offsetof\"")
    #define ROUTERINTERFACE_OFFSETS_END _Pragma("GCC diagnostic pop")
#else
    #define ROUTERINTERFACE_OFFSETS_BEGIN
    #define ROUTERINTERFACE_OFFSETS_END
#endif
