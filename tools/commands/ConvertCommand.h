// SPDX-License-Identifier: MIT
/// \file
/// The command `convert`: a document in another form.
#pragma once

#include "Session.h"
#include "documents/Forms.h"

#include <QtCore/QString>

#include <optional>

namespace routermsg {

struct ConvertOptions
{
    QString input;
    QString output;
    /// Without one it is told by the content.
    std::optional<ROUTERDOCUMENTS::Form> from;
    /// Without one it is told by the output's name; XML for standard output.
    std::optional<ROUTERDOCUMENTS::Form> to;
    /// Whether a document that is not valid is refused.
    bool validate = true;
};

Status convert(const ConvertOptions& options, Session& session);

} // namespace routermsg
