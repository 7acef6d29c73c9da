// SPDX-License-Identifier: MIT
// A document for the samples of several pages.
#pragma once

#include "TestSupport.h"

namespace testing_support {

inline PelLu300RouterInterfaceXml sample()
{
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Event);
    message.SetMessageID(1);
    Fragment fragment;
    fragment.GetOstraInterfacePort().SetPort(5000);
    message.AppendFragment(fragment);
    return document;
}

inline unsigned int messageID(const PelLu300RouterInterfaceXml& document)
{
    return document.GetPelLu300RouterMessage().GetMessageID();
}

inline unsigned int port(const PelLu300RouterMessage& message)
{
    return message.GetFragment().first().GetOstraInterfacePort().GetPort();
}

} // namespace testing_support
