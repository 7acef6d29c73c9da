// SPDX-License-Identifier: MIT
// The names of the kinds of failures, as they stand in the code.
#pragma once

#include "modelkit/Failure.h"

namespace testing_support {

inline const char* nameOfKind(MODELKIT::Failure::Kind kind)
{
    static const char* const names[] = {"None",
                                        "InputOutput",
                                        "NotWellFormed",
                                        "WrongRoot",
                                        "DoctypeRefused",
                                        "InputTooLarge",
                                        "InflatedTooLarge",
                                        "NestedTooDeep",
                                        "TooManyAttributes",
                                        "TooManyItems",
                                        "NotABinaryForm",
                                        "WrongClass",
                                        "DamagedCompression",
                                        "NotRepresentable",
                                        "Refused",
                                        "EncodingRefused",
                                        "NotWholeYet",
                                        "Interrupted",
                                        "NothingToWrite"};
    static_assert(sizeof names / sizeof *names == MODELKIT::Failure::NothingToWrite + 1,
                  "each kind has a name");
    return names[kind];
}

} // namespace testing_support
