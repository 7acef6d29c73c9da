// SPDX-License-Identifier: MIT
// What the tests of connections share: messages in every form.
#pragma once

#include "TestSupport.h"

#include "documents/Document.h"
#include "link/MessageReader.h"

namespace link_support {

using namespace ROUTERLINK;
using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::Limits;
using ROUTERDOCUMENTS::Form;

constexpr Form wireForms[] = {Form::Xml, Form::Binary, Form::Compressed};

inline PelLu300RouterInterfaceXml numbered(unsigned int number,
                                           PelLu300RouterMessage::Type type = PelLu300RouterMessage::Request)
{
    PelLu300RouterInterfaceXml document;
    document.GetPelLu300RouterMessage().SetType(type);
    document.GetPelLu300RouterMessage().SetMessageID(number);
    return document;
}

inline QByteArray inForm(Form form, unsigned int number)
{
    PelLu300RouterInterfaceXml document = numbered(number);
    return ROUTERDOCUMENTS::WriteDocument(document, form);
}

inline QByteArray xml(unsigned int number) { return inForm(Form::Xml, number); }
inline QByteArray binary(unsigned int number) { return inForm(Form::Binary, number); }

// A binary form whose content cannot be read although its length is right: an entry is longer than the form.
inline QByteArray binaryWithWrongEntry()
{
    QByteArray form = binary(1);
    constexpr int lowestByteOfEntryLength = 15;
    form[lowestByteOfEntryLength] = static_cast<char>(form.at(lowestByteOfEntryLength) + 1);
    return form;
}

inline unsigned int numberOf(const PelLu300RouterInterfaceXml& document)
{
    return document.GetPelLu300RouterMessage().GetMessageID();
}

} // namespace link_support
