// SPDX-License-Identifier: MIT
#include "simulator/ExchangeLog.h"
#include "simulator/Interruption.h"
#include "simulator/Options.h"
#include "simulator/SimulatorServer.h"

#include "documents/Text.h"

#include "modelkit/Version.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QRandomGenerator>

#include <cstdio>

using namespace ROUTERSIM;

namespace {

enum ExitStatus
{
    Good = 0,
    Failed = 1,
    WrongUsage = 2
};

int complain(const QString& text, ExitStatus status)
{
    const QByteArray line = "routersim: " + ROUTERDOCUMENTS::Printable(text).toUtf8() + '\n';
    // When that cannot be written either, the exit status is all that is left.
    static_cast<void>(std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stderr));
    return status;
}

int say(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    const auto size = static_cast<size_t>(bytes.size());
    if (std::fwrite(bytes.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0)
        return Good;
    return complain(QStringLiteral("Cannot write to the standard output."), Failed);
}

int serve(const Options& options, const Scenario& scenario)
{
    int status = Good;
    QString reason;
    ExchangeLog log([&status](const QString& failure) {
        status = complain(failure, Failed);
        // Before the event loop runs, it cannot be ended.
        QMetaObject::invokeMethod(QCoreApplication::instance(), "quit", Qt::QueuedConnection);
    });
    if (!options.log.isEmpty() && !log.Open(options.log, reason))
        return complain(QStringLiteral("%1: %2").arg(options.log, reason), Failed);
    const quint64 seed = options.seed ? *options.seed : QRandomGenerator::system()->generate();
    TimerClock clock;
    SimulatorServer::Log write;
    if (log.IsOpen())
        write = [&log](const ROUTERDOCUMENTS::Exchange& exchange) { log.Write(exchange); };
    SimulatorServer server(scenario, seed, clock, write);
    if (!onInterruption(server, &QCoreApplication::quit))
        return complain(QStringLiteral("The system does not tell of signals."), Failed);
    if (!server.Listen(options.host, options.port))
        return complain(QStringLiteral("Cannot listen on %1: %2")
                            .arg(nameOf(options.host, options.port), server.GetError()),
                        Failed);
    if (say(QStringLiteral("Listening on %1, seed %2.\n").arg(server.GetName()).arg(seed)) != Good)
        return Failed;
    QCoreApplication::exec();
    server.Close();
    return status;
}

} // namespace

int main(int argc, char* argv[])
{
    // The program has its own messages for everything that goes wrong.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    const QCoreApplication application(argc, argv);
    QString problem;
    const std::optional<Options> options = readOptions(QCoreApplication::arguments().mid(1), problem);
    if (!options)
        return complain(problem + QStringLiteral(" See routersim --help."), WrongUsage);
    try {
        if (options->task == Options::ShowHelp)
            return say(helpText());
        if (options->task == Options::ShowVersion)
            return say(QStringLiteral("routersim %1\n").arg(QStringLiteral(MODELKIT_VERSION)));
        const Scenario scenario = options->scenario.isEmpty() ? Scenario() : LoadScenario(options->scenario);
        if (options->task == Options::CheckScenario)
            return say(QStringLiteral("%1: no errors.\n").arg(ROUTERDOCUMENTS::Printable(options->scenario)));
        return serve(*options, scenario);
    } catch (const std::exception& exception) {
        return complain(QString::fromUtf8(exception.what()), Failed);
    }
}
