// SPDX-License-Identifier: MIT
// The operations of all records, for a record's source, which includes this file first and DefineRecord.h
// with its member table.
#pragma once

#include "modelkit/ClassNames.h"
#include "routerinterface/machinery/Binary.h"
#include "routerinterface/machinery/Checking.h"
#include "routerinterface/machinery/DebuggerLayout.h"
#include "routerinterface/machinery/Description.h"
#include "routerinterface/machinery/Diagnostics.h"
#include "routerinterface/machinery/Items.h"
#include "routerinterface/machinery/Lifecycle.h"
#include "routerinterface/machinery/Members.h"
#include "routerinterface/machinery/Walks.h"
#include "routerinterface/machinery/WholeRecord.h"
#include "routerinterface/machinery/Xml.h"

/// Defines the translation helpers of a record with enumerated members.
#define ROUTERINTERFACE_DEFINE_TRANSLATION(Record)                                                           \
    QString Record::tr(const char* text, const char* disambiguation)                                         \
    {                                                                                                        \
        return MODELKIT::QtVersion::translate("PELLU300ROUTERINTERFACEXML::" #Record, text, disambiguation); \
    }                                                                                                        \
    QString Record::tr(const char* text, const char* disambiguation, int n)                                  \
    {                                                                                                        \
        return MODELKIT::QtVersion::translate("PELLU300ROUTERINTERFACEXML::" #Record, text, disambiguation,  \
                                              n);                                                            \
    }                                                                                                        \
    QString Record::trUtf8(const char* text, const char* disambiguation)                                     \
    {                                                                                                        \
        return tr(text, disambiguation);                                                                     \
    }                                                                                                        \
    QString Record::trUtf8(const char* text, const char* disambiguation, int n)                              \
    {                                                                                                        \
        return tr(text, disambiguation, n);                                                                  \
    }
