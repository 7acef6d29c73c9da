// SPDX-License-Identifier: MIT
/// \file
/// How XML is laid out.
#pragma once

namespace MODELKIT {

/// The white space between the elements of a written document.
enum class XmlLayout
{
    Indented, ///< every element on its own line, indented by two spaces for each level
    Compact   ///< no white space
};

} // namespace MODELKIT
