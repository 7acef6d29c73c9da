// SPDX-License-Identifier: MIT
// The command line of routersim.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtNetwork/QHostAddress>

#include <optional>

namespace ROUTERSIM {

struct Options
{
    enum Task
    {
        Serve,
        CheckScenario,
        ShowHelp,
        ShowVersion
    };

    Task task = Serve;
    QHostAddress host = QHostAddress(QHostAddress::LocalHost);
    quint16 port = 0;
    QString scenario;
    QString log;
    std::optional<quint64> seed;
};

QString helpText();

// The words without the name of the program. Nothing, with a sentence in the problem, when they are wrong.
std::optional<Options> readOptions(const QStringList& words, QString& problem);

} // namespace ROUTERSIM
