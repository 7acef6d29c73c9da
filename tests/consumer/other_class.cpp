// SPDX-License-Identifier: MIT
// The library knows all classes, also those that a program does not use and a linker could leave out.
#include <routerinterface/OstraInterfacePort.h>

int main()
{
    PELLU300ROUTERINTERFACEXML::OstraInterfacePort port;
    // This is a DF_Params.
    const QByteArray other = QByteArray::fromHex("f1ee139c00000000");
    if (port.SetBinaryRepresentation(other))
        return 1;
    return port.GetLastFailure().GetSentence().contains(QLatin1String("DF_Params")) ? 0 : 2;
}
