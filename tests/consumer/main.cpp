// SPDX-License-Identifier: MIT
// The header of any record includes the base object, the exceptions and the logger.
#include <routerinterface/MastershipState.h>

#include <documents/Document.h>
#include <documents/DocumentError.h>
#include <documents/JsonForm.h>
#include <link/MessageReader.h>

#include <QtCore/QByteArray>

#include <memory>

// Whether documents are read in any form, or refused with an exception that can be caught here.
static bool readsDocuments()
{
    const auto document =
        ROUTERDOCUMENTS::ReadDocument("<OstraInterfacePort><Port>7</Port></OstraInterfacePort>");
    if (!ROUTERDOCUMENTS::ToJson(*document.record).contains("\"Port\": 7"))
        return false;
    try {
        ROUTERDOCUMENTS::ReadDocument("{}");
    } catch (const ROUTERDOCUMENTS::DocumentError&) {
        return true;
    }
    return false;
}

// Whether the messages of a connection are read.
static bool readsMessages()
{
    ROUTERLINK::MessageReader reader;
    reader.AddData("<MastershipState><State>MasterPresent</State></MastershipState>");
    PELLU300ROUTERINTERFACEXML::MastershipState state;
    return reader.Next(state) == ROUTERLINK::MessageReader::Ready;
}

int main()
{
    // The Qt that is loaded is the one whose headers were compiled.
    if (QByteArray(qVersion()).split('.').first().toInt() != QT_VERSION_MAJOR)
        return 5;
    if (!readsDocuments())
        return 3;
    if (!readsMessages())
        return 4;
    PELLU300ROUTERINTERFACEXML::MastershipState state;
    const MODELKIT::IMKObject& base = state;
    base.SetLogger(std::make_shared<MODELKIT::Logger>());
    base.SetValidate(true);
    try {
        state.SetState(static_cast<PELLU300ROUTERINTERFACEXML::MastershipState::State>(3));
    } catch (const OutOfRangeException&) {
        return state.GetXmlString().isEmpty() ? 2 : 0;
    }
    return 1;
}
