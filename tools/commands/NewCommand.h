// SPDX-License-Identifier: MIT
/// \file
/// The command `new`: a document from words on the command line; NewWords.h tells what they mean.
#pragma once

#include "Session.h"
#include "documents/Forms.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

namespace routermsg {

struct NewOptions
{
    QStringList words;
    /// The class of the root; empty for that of documents.
    QString root;
    QString output = QStringLiteral("-");
    /// Without one it is told by the output's name; XML for standard output.
    std::optional<ROUTERDOCUMENTS::Form> to;
};

Status makeNew(const NewOptions& options, Session& session);

} // namespace routermsg
