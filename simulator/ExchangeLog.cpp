// SPDX-License-Identifier: MIT
#include "simulator/ExchangeLog.h"

#include "documents/DocumentError.h"

namespace ROUTERSIM {

bool ExchangeLog::Open(const QString& path, QString& reason)
{
    m_file.setFileName(path);
    if (m_file.open(QIODevice::WriteOnly | QIODevice::Append))
        return true;
    reason = m_file.errorString();
    return false;
}

void ExchangeLog::Write(const ROUTERDOCUMENTS::Exchange& exchange)
{
    if (!m_file.isOpen())
        return;
    try {
        ROUTERDOCUMENTS::WriteExchange(m_file, exchange);
    } catch (const ROUTERDOCUMENTS::DocumentError& error) {
        m_file.close();
        m_failed(QStringLiteral("%1: %2").arg(m_file.fileName(), error.GetText()));
    }
}

} // namespace ROUTERSIM
