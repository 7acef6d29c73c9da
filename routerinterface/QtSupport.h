// SPDX-License-Identifier: MIT
/// \file
/// What users of Qt expect of types, for all records: everything that stands in free functions. Each header
/// can also be included alone.
#pragma once

#include "modelkit/FailurePrinting.h"
#include "modelkit/ReadOutcome.h"
#include "routerinterface/Enumerators.h"
#include "routerinterface/Hashing.h"
#include "routerinterface/Messages.h"
#include "routerinterface/Payloads.h"
#include "routerinterface/Printing.h"
#include "routerinterface/RecordMetatypes.h"
#include "routerinterface/RoundTrip.h"
