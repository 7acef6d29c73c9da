// SPDX-License-Identifier: MIT
/// \file
/// The options of all commands that read messages: how the inputs are written, and how large messages may be.
#pragma once

#include "Arguments.h"
#include "documents/Document.h"
#include "documents/Forms.h"
#include "documents/FrameFormat.h"
#include "documents/Recording.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

namespace routermsg {

/// How all inputs of a command are written, as far as the user says.
struct InputFormat
{
    /// The form of all messages; otherwise the content of each determines it.
    std::optional<ROUTERDOCUMENTS::Form> form = std::nullopt;
    /// The layout of bare frames.
    std::optional<ROUTERDOCUMENTS::FrameFormat> frame = std::nullopt;
    /// The class of all messages; null for any.
    const PELLU300ROUTERINTERFACEXML::RecordInfo* info = nullptr;

    ROUTERDOCUMENTS::RecordingOptions recording() const { return {form, frame}; }
    /// How to read one of the messages.
    ROUTERDOCUMENTS::ReadingOptions
    reading(const ROUTERDOCUMENTS::RecordedMessage& message,
            ROUTERDOCUMENTS::Validation validation = ROUTERDOCUMENTS::Validation::Off) const
    {
        return {message.form, validation, message.frame, info};
    }
    /// Frames in the other byte order; any binary messages count as frames in the usual layout.
    InputFormat inOtherByteOrder() const;
    /// The options that say the same.
    QStringList words() const;
};

QVector<OptionTable> inputOptionRows();

/// \throws UsageError when the options make no sense together.
InputFormat inputFormatOf(const Arguments& arguments);

/// Puts the limits in force that the options set.
/// \throws UsageError for a value that is no size.
void setLimits(const Arguments& arguments);

/// The option that admits messages as large as those in force; empty if that is so without it.
QStringList limitWords();

} // namespace routermsg
