// SPDX-License-Identifier: MIT
/// \file
/// Recordings that grow while a program runs.
#pragma once

#include "documents/Exchange.h"

#include <QtCore/QFile>
#include <QtCore/QString>

namespace routermsg {

/// Appends exchanges to a file, each at once. Nothing is lost silently: an exchange that cannot be written
/// ends the work.
class Recorder
{
public:
    /// \throws Refusal when the file cannot be opened.
    explicit Recorder(const QString& path);

    /// \throws OutputRefusal
    void add(const ROUTERDOCUMENTS::Exchange& exchange);

private:
    void endLastLine();

    QString m_path;
    QFile m_file;
};

} // namespace routermsg
