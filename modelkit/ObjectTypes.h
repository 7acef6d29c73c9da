// SPDX-License-Identifier: MIT
/// \file
/// The kinds of objects that the base object library distinguishes.
#pragma once

namespace MODELKIT {

/// What an object is used for, by the program that derives classes of its own from IMKObject. The kind is
/// given to its constructor, copied with the object, and changed by IMKObject::SetObjectType(). The number of
/// the kind is the object's type code, the id of its whole-object binary form.
///
/// The library itself makes no difference between the kinds. Records have no use for them: their type code is
/// the id of their class, which a kind never replaces.
enum class ObjectTypes : int
{
    Undefined = 0, ///< no kind was given
    Document = 1,  ///< an object that is loaded and saved as a whole
    Record = 2,    ///< an object that is part of a document
    Settings = 3   ///< an object that configures a program
};

} // namespace MODELKIT
