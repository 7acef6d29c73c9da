// SPDX-License-Identifier: MIT
// What the tests of the message share: a filled message and its written forms, and the texts of its
// exceptions.
#pragma once

#include "TestSupport.h"

#include <QtCore/QVector>

namespace testing_support {

using Message = PelLu300RouterMessage;
using Logger = MODELKIT::Logger;
using Items = QVector<Fragment>;

const char* const typeMissing = "PelLu300RouterMessage: Please set Type properly.";
const char* const typeInvalid = "enum is not valid (classname=PelLu300RouterMessage,membername=m_type)";
const char* const itemIncomplete =
    "PelLu300RouterMessage: Tried to append not completely defined or invalid item Fragment.";
const char* const lengthError =
    "PelLu300RouterMessage::SetBinary(...): Length error occurred during processing of binary representation";

// An item whose payload does not pass its check.
inline Fragment withBadState()
{
    Fragment item;
    item.GetMastershipState().SetState(static_cast<MastershipState::State>(3));
    return item;
}

// The port of an item made by withPort.
inline unsigned int portOf(const Fragment& item) { return item.GetOstraInterfacePort().GetPort(); }

inline const Items& itemsOf(const Message& message) { return message.GetFragment(); }

using Ports = QVector<unsigned int>;

// A reply with number 7 and two items, as XML and as a frame.
inline Message sample()
{
    Message message;
    message.SetType(Message::Reply);
    message.SetMessageID(7);
    message.AppendFragment(withPort(5000));
    Fragment second;
    second.GetAcquireMastership().SetSuccess(true);
    message.AppendFragment(second);
    return message;
}

const char* const sampleXml =
    "<PelLu300RouterMessage><Type>Reply</Type><MessageID>7</MessageID>"
    "<Fragment><OstraInterfacePort><Port>5000</Port></OstraInterfacePort></Fragment>"
    "<Fragment><AcquireMastership><Success>true</Success></AcquireMastership></Fragment>"
    "</PelLu300RouterMessage>";

inline QByteArray sampleFrame()
{
    return bytes("0000005E"
                 " E1D9E008 00000009 00000005 5265706C79"
                 " EF193DE9 00000008 0000000000000007"
                 " 61023A90 00000035 00000002"
                 " 00000018 F9E464D0 00000010 1F980517 00000008 0000000000001388"
                 " 00000011 21BDA6E2 00000009 BF8A59C6 00000001 01");
}

} // namespace testing_support
