// SPDX-License-Identifier: MIT
/// \file
/// Comparing records by what their written forms carry.
#pragma once

#include "modelkit/IMKObject.h"
#include "routerinterface/Export.h"

namespace PELLU300ROUTERINTERFACEXML {

/// A written form of records.
enum class WrittenForm
{
    Xml,   ///< XML
    Binary ///< the binary form, plain or compressed
};

/// Whether \a a and \a b are written with the same information in that \a form, as they are while validation
/// is off. A record that was written and read again equals the original within the form, unless something was
/// lost that the form should carry.
///
/// Unlike `operator==`, this takes for the same:
/// - numbers with the same two decimals, such as 0.125 and 0.13, and two that are "nan";
/// - in XML, a text that is null and one that is empty, if both are set;
/// - a list that is set, but has no items, and one that is not set;
/// - numbers that are no enumerators, and for the type of a message also that it is not set;
/// - a payload that is selected, but not set, and none.
///
/// A MessageID or port above 2147483647 is written in XML, but read back as 0. That is a difference.
/// \param a, b the records
/// \param form the form in which they would be written
/// \returns false for records of different classes.
/// \throws std::bad_cast when an object is no record of this library.
ROUTERINTERFACE_EXPORT bool EqualsWithin(const MODELKIT::IMKObject& a, const MODELKIT::IMKObject& b,
                                         WrittenForm form = WrittenForm::Xml);

} // namespace PELLU300ROUTERINTERFACEXML
