// SPDX-License-Identifier: MIT
// What the tests of checking and of settings share.
#pragma once

#include "TestSupport.h"

#include <string>

namespace testing_support {

using MODELKIT::IMKObject;
using MODELKIT::Logger;

using LoggerPointer = std::shared_ptr<Logger>;

// Names the instances for a record itself and for a class derived from it, which is read by another way.
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

// Reads one child element that no record knows.
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
