// SPDX-License-Identifier: MIT
// What the tests of checking and of settings share.
#pragma once

#include "TestSupport.h"

#include <string>

namespace testing_support {

using MODELKIT::IMKObject;
using MODELKIT::Logger;

using LoggerPointer = std::shared_ptr<Logger>;

// Names the tests for a record and for a class derived from it, which takes another way through the code.
struct RecordOrDerived
{
    template <class R>
    static std::string GetName(int instance)
    {
        return instance == 0 ? "Record" : "Derived";
    }
};

template <class R>
class Renamed : public R
{
public:
    Renamed() { this->SetObjectName(text("Other")); }
};

inline void readBinary(IMKObject& record, const char* hex, int length)
{
    QDataStream stream(bytes(hex));
    record.SetBinary(stream, length);
}

// Reads a child element that is unknown to all records.
template <class R>
void readUnknownChild(Opened<R>& record)
{
    QXmlStreamReader reader(text("<outer><Unknown/></outer>"));
    ASSERT_TRUE(reader.readNextStartElement());
    ASSERT_TRUE(reader.readNextStartElement());
    record.ProcessXmlStartElement(reader);
}

inline MastershipState::State state(int value) { return static_cast<MastershipState::State>(value); }
inline PelLu300RouterMessage::Type type(int value) { return static_cast<PelLu300RouterMessage::Type>(value); }

} // namespace testing_support
