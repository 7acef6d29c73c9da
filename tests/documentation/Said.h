// SPDX-License-Identifier: MIT
// Collects what samples print.
#pragma once

#include <QtCore/QDebug>
#include <QtCore/QStringList>

namespace testing_support {

// Collects the messages of Qt's logging as long as the object lives.
class Said
{
public:
    Said() : m_before(qInstallMessageHandler(keep)) { texts().clear(); }
    Said(const Said&) = delete;
    Said& operator=(const Said&) = delete;
    ~Said() { qInstallMessageHandler(m_before); }

    static QStringList& texts()
    {
        static QStringList texts;
        return texts;
    }

private:
    static void keep(QtMsgType, const QMessageLogContext&, const QString& text) { texts().append(text); }

    QtMessageHandler m_before;
};

} // namespace testing_support
