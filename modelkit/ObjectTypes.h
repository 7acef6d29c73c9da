// SPDX-License-Identifier: MIT
/// \file
/// The kinds of objects that the base object library distinguishes.
#pragma once

namespace MODELKIT {

/// What an object is used for. The kind is set at construction and copied with the object; it has no effect
/// in the library itself.
enum class ObjectTypes : int
{
    Undefined = 0, ///< no kind was given
    Document = 1,  ///< an object that is loaded and saved as a whole
    Record = 2,    ///< an object that is part of a document
    Settings = 3   ///< an object that configures a program
};

} // namespace MODELKIT
