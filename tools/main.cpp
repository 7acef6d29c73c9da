// SPDX-License-Identifier: MIT
#include "CommandLine.h"
#include "UsageError.h"

#include <QtCore/QStringList>
#include <QtCore/QtGlobal>

#include <clocale>
#include <exception>
#include <fcntl.h>
#include <unistd.h>

using namespace routermsg;

namespace {

// Names and texts are in UTF-8, whatever the user's locale.
void useUtf8() { std::setlocale(LC_CTYPE, "C.UTF-8"); }

// The next file that is opened would take the place of a closed standard stream. The null device takes it
// instead, opened in the wrong direction, so that reading or writing fails as before.
void occupyStandardStreams()
{
    const auto occupy = [](int descriptor, int mode) {
        if (fcntl(descriptor, F_GETFD) < 0)
            open("/dev/null", mode);
    };
    occupy(STDIN_FILENO, O_WRONLY);
    occupy(STDOUT_FILENO, O_RDONLY);
    occupy(STDERR_FILENO, O_RDONLY);
}

// The program has its own messages for everything that goes wrong.
void ignoreQtMessages()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
}

Status run(const CommandLine& commandLine, Session& session)
{
    try {
        const Status status = commandLine.run(session);
        session.writeFindings();
        session.out().flush();
        return status;
    } catch (const Refusal& refusal) {
        session.complain(refusal.finding());
        session.writeFindings();
        session.out().flush();
        return refusal.finding().status;
    } catch (const UsageError& error) {
        session.complain(error.text());
        return Failed;
    }
}

Status run(const QStringList& words)
{
    const CommandLine commandLine(words);
    Session session(commandLine.commonOptions());
    try {
        return run(commandLine, session);
    } catch (const OutputError& error) {
        if (!error.isBrokenPipe())
            session.complain(QString::fromUtf8(error.what()));
        return Failed;
    } catch (const std::exception& exception) {
        session.complain(QString::fromUtf8(exception.what()));
        return Failed;
    }
}

} // namespace

int main(int argc, char* argv[])
{
    useUtf8();
    occupyStandardStreams();
    ignoreQtMessages();
    try {
        QStringList words;
        for (int i = 1; i < argc; ++i)
            words += QString::fromUtf8(argv[i]);
        return run(words);
    } catch (const OutputError&) {
        // Not even the complaint could be written.
        return Failed;
    }
}
