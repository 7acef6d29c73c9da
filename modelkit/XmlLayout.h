// SPDX-License-Identifier: MIT
/// \file
/// How XML is laid out.
#pragma once

namespace MODELKIT {

/// The white space between the elements of a document that is written.
enum class XmlLayout
{
    Indented, ///< every element on a line of its own, indented by two blanks for each level
    Compact   ///< none
};

} // namespace MODELKIT
