// SPDX-License-Identifier: MIT
#include "TestSupport.h"
