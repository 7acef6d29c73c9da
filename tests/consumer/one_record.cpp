// SPDX-License-Identifier: MIT
// A program that uses one record and links with the library of the records only.
#include <routerinterface/OstraInterfacePort.h>

int main()
{
    PELLU300ROUTERINTERFACEXML::OstraInterfacePort port;
    port.SetPort(5000);
    return port.GetPort() == 5000 ? 0 : 1;
}
