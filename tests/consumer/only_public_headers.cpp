// SPDX-License-Identifier: MIT
// Programs see the public headers, and nothing else of the project.
#if !__has_include("modelkit/IMKObject.h") || !__has_include("routerinterface/MastershipState.h")
    #error "Public headers are missing."
#endif
#if __has_include("modelkit/QtVersion.h")                               \
                  || __has_include("routerinterface/machinery/Slots.h") \
                                   || __has_include("tools/Session.h")  \
                                                    || __has_include("tests/TestSupport.h")
    #error "Headers that are not public are on the include path."
#endif
