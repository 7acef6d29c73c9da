// SPDX-License-Identifier: MIT
#include "wire/SendingForm.h"

namespace routermsg {

using namespace ROUTERDOCUMENTS;

OptionTable sendingFormOption()
{
    return choice({"--as"}, "FORM", {NameOf(Form::Xml), NameOf(Form::Binary), NameOf(Form::Compressed)},
                  "The form in which messages are sent: xml, binary or compressed; without it binary.");
}

Form sendingFormOf(const Arguments& arguments)
{
    // The choices are the first forms, in their order.
    return arguments.choice<Form>("--as").value_or(Form::Binary);
}

} // namespace routermsg
