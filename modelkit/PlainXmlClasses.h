// SPDX-License-Identifier: MIT
// The classes that write and read whole XML documents without Qt's stream classes. Not installed.
#pragma once

#include "modelkit/Export.h"
#include "modelkit/IMKObject.h"

#include <typeinfo>

namespace MODELKIT {

class PlainXmlReader;
class PlainXmlWriter;

// What a class offers beside its virtual operations. A derived class may change these, so all this holds for
// objects of exactly that class only.
struct PlainXmlClass
{
    const std::type_info* type;
    // Does what GetXml() does.
    void (*write)(const IMKObject& object, PlainXmlWriter& writer);
    // Does what ProcessXml() does, for a reader that is at a start tag.
    void (*read)(IMKObject& object, PlainXmlReader& reader);
    // The class that was registered before.
    const PlainXmlClass* next;
};

// Called while libraries are loaded. The class must stay for ever.
MODELKIT_EXPORT void registerPlainXml(PlainXmlClass& added);

// The class of the object; null if it offers nothing.
const PlainXmlClass* plainXmlOf(const IMKObject& object);

} // namespace MODELKIT
