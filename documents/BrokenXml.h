// SPDX-License-Identifier: MIT
// The part of an XML document in front of the place where it is no longer well-formed. Not installed.
#pragma once

#include <QtCore/QByteArray>

namespace ROUTERDOCUMENTS {

// That part, with end tags for the elements that are open, so that it can be read; places in it are those of
// the document. Empty when there is nothing to read, or the text is not UTF-8.
// xml: a document that an object has refused because it is not well-formed. Do not pass other documents: no
// limits apply here.
QByteArray readablePartOf(const QByteArray& xml);

} // namespace ROUTERDOCUMENTS
