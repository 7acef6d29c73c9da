// SPDX-License-Identifier: MIT
// What the tests of the XML form share: the element of each record when it is empty, and content to fill it.
#pragma once

#include "TestSupport.h"

namespace testing_support {

// The literal element name of each class.
inline QString elementName(const OstraInterfacePort&) { return text("OstraInterfacePort"); }
inline QString elementName(const RouterVtServerPort&) { return text("RouterVtServerPort"); }
inline QString elementName(const PelVtConnectServer&) { return text("PelVtConnectServer"); }
inline QString elementName(const MastershipState&) { return text("MastershipState"); }
inline QString elementName(const AcquireMastership&) { return text("AcquireMastership"); }
inline QString elementName(const ReleaseMastership&) { return text("ReleaseMastership"); }
inline QString elementName(const DF_Params&) { return text("DF_Params"); }
inline QString elementName(const Fragment&) { return text("Fragment"); }
inline QString elementName(const PelLu300RouterMessage&) { return text("PelLu300RouterMessage"); }
inline QString elementName(const PelLu300RouterInterfaceXml&) { return text("PelLu300RouterInterfaceXml"); }

// What a record writes while no member is set and validation is off.
template <class R>
QString emptyElement(const R& record)
{
    return QLatin1Char('<') + elementName(record) + QLatin1String("/>");
}
inline QString emptyElement(const PelLu300RouterMessage&)
{
    return text("<PelLu300RouterMessage><Type></Type></PelLu300RouterMessage>");
}

// Gives a record the content that it needs to be written under validation.
inline void fill(OstraInterfacePort& record) { record.SetPort(1); }
inline void fill(RouterVtServerPort& record) { record.SetPort(1); }
inline void fill(PelVtConnectServer& record) { record.SetPort(1); }
inline void fill(MastershipState& record) { record.SetState(MastershipState::MasterPresent); }
inline void fill(AcquireMastership& record) { record.SetSuccess(true); }
inline void fill(ReleaseMastership& record) { record.SetSuccess(true); }
inline void fill(DF_Params& record) { record.SetFrequency(1.0); }
inline void fill(Fragment& record) { record.GetOstraInterfacePort().SetPort(1); }
inline void fill(PelLu300RouterMessage& record) { record.SetType(PelLu300RouterMessage::Event); }
inline void fill(PelLu300RouterInterfaceXml& record)
{
    record.GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Event);
}

inline PelLu300RouterMessage messageOfType(PelLu300RouterMessage::Type type)
{
    PelLu300RouterMessage message;
    message.SetType(type);
    return message;
}

template <class R>
class XmlMappingOfEveryRecord : public ::testing::Test
{
};

} // namespace testing_support
