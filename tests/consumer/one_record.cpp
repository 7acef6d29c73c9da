// SPDX-License-Identifier: MIT
// A program that uses one record and links with the library of the records only.
#include <routerinterface/OstraInterfacePort.h>

int main()
{
    PELLU300ROUTERINTERFACEXML::OstraInterfacePort port;
    port.SetPort(5000);
    if (port.GetPort() != 5000)
        return 1;
    // The library knows the other classes, although this program does not use them: this is a DF_Params.
    const QByteArray other = QByteArray::fromHex("f1ee139c00000000");
    if (port.SetBinaryRepresentation(other))
        return 2;
    return port.GetLastFailure().GetSentence().contains(QLatin1String("DF_Params")) ? 0 : 3;
}
