// SPDX-License-Identifier: MIT
/// \file
/// Why an operation on a whole document failed.
#pragma once

#include "modelkit/Export.h"
#include "modelkit/Place.h"

#include <QtCore/QString>

namespace MODELKIT {

/// The explanation of a failed operation on a whole document.
struct MODELKIT_EXPORT Failure
{
    /// What kind of failure it is.
    enum Kind : int
    {
        None = 0,           ///< the operation succeeded
        InputOutput,        ///< a file or device could not be opened, read or written
        NotWellFormed,      ///< the XML is not well-formed or its encoding is damaged
        WrongRoot,          ///< the root element is not that of the object
        DoctypeRefused,     ///< the document has a document type declaration
        InputTooLarge,      ///< Limits::inputSize is exceeded
        InflatedTooLarge,   ///< Limits::inflatedSize is exceeded
        NestedTooDeep,      ///< Limits::nestingDepth is exceeded
        TooManyAttributes,  ///< Limits::attributes is exceeded
        TooManyItems,       ///< Limits::listItems is exceeded
        NotABinaryForm,     ///< the bytes are not a whole-object form, or the form is cut off
        WrongClass,         ///< the binary form, or the object to be merged, is of another class
        DamagedCompression, ///< the compressed form cannot be inflated
        NotRepresentable,   ///< the content holds text that the form cannot represent
        Refused,            ///< a record threw an exception, which was passed on
        EncodingRefused,    ///< the XML declaration names an encoding that is not accepted
        NotWholeYet,   ///< the document did not arrive completely in time; device and object are unchanged
        Interrupted,   ///< a device, a log sink or the allocator threw an exception, which was passed on
        NothingToWrite ///< validation is on and the object lacks required data; nothing was written
    };

    /// What went wrong.
    Kind kind = None;
    /// One sentence without the place.
    QString text;
    /// Where it went wrong, as far as that is known.
    Place place;

    /// The text with file, position and path, as far as they are known, for example
    /// "request.xml:4:5: Opening and ending tag mismatch. (in /PelLu300RouterInterfaceXml)".
    QString GetSentence() const;
};

} // namespace MODELKIT
