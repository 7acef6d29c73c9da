// SPDX-License-Identifier: MIT
// The log of what comes and goes, as a file.
#pragma once

#include "documents/Exchange.h"

#include <QtCore/QFile>
#include <QtCore/QString>

#include <functional>

namespace ROUTERSIM {

class ExchangeLog
{
public:
    // What is called, once, when the log cannot be written any more, with the reason.
    explicit ExchangeLog(const std::function<void(const QString&)>& failed) : m_failed(failed) {}

    // Appends to what the file has. False with the reason in the text when that is impossible.
    bool Open(const QString& path, QString& reason);
    bool IsOpen() const { return m_file.isOpen(); }
    void Write(const ROUTERDOCUMENTS::Exchange& exchange);

private:
    QFile m_file;
    std::function<void(const QString&)> m_failed;
};

} // namespace ROUTERSIM
