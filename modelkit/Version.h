// SPDX-License-Identifier: MIT
/// \file
/// The version of the libraries; the build system reads it from here.
#pragma once

/// Major, minor and patch number.
#define MODELKIT_VERSION "1.0.0"
