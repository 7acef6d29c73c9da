// SPDX-License-Identifier: MIT
// Builds a client's request to become master of the router and prints it as XML. README.md shows this
// program.

//! [the first program]
#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include <iostream>

using namespace PELLU300ROUTERINTERFACEXML;

int main()
{
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Request);
    message.SetMessageID(1);
    message.AddFragment().SetAcquireMastership(AcquireMastership());
    std::cout << document.GetXmlString().toStdString();
}
//! [the first program]
