// SPDX-License-Identifier: MIT
#include "simulator/Options.h"

#include "documents/Sentences.h"
#include "documents/Text.h"

#include <QtCore/QCommandLineParser>

namespace ROUTERSIM {

namespace {

struct Option
{
    const char* name;
    // Empty for an option without a value.
    const char* value;
    // A line break begins another line.
    const char* description;
};

constexpr Option options[] = {
    {"host", "ADDRESS", "the address to listen on (127.0.0.1)"},
    {"port", "N", "the port to listen on; 0, the default, is any free one"},
    {"scenario", "FILE", "the router and what goes wrong with it, in JSON"},
    {"seed", "N", "decides everything that is left to chance; without it,\neach run has another one"},
    {"log", "FILE", "appends all messages to the file, in lines of JSON"},
    {"check-scenario", "", "only says what is wrong with the scenario"},
    {"help", "", "shows this text"},
    {"version", "", "shows the version"},
};

QString nameOfOption(const Option& option)
{
    const QString name = QLatin1String("--") + QLatin1String(option.name);
    return *option.value ? name + QLatin1Char(' ') + QLatin1String(option.value) : name;
}

template <class Number>
bool readNumber(const QString& text, Number most, Number& number)
{
    bool isNumber = false;
    const qulonglong value = text.toULongLong(&isNumber);
    if (!isNumber || value > most || !text.at(0).isDigit())
        return false;
    number = static_cast<Number>(value);
    return true;
}

// What QCommandLineParser says of an unknown option has no suggestion.
QString unknownOptions(const QStringList& unknown)
{
    QStringList names;
    for (const Option& option : options)
        names += QLatin1String("--") + QLatin1String(option.name);
    const QString name = QLatin1String("--") + unknown.constFirst();
    return QStringLiteral("There is no option %1.%2")
        .arg(ROUTERDOCUMENTS::Quoted(name), ROUTERDOCUMENTS::DidYouMean(name, names));
}

} // namespace

QString helpText()
{
    QString text =
        QStringLiteral("Usage: routersim [OPTION]...\n"
                       "\n"
                       "Simulates a router, to test clients of it. Prints the address and port on\n"
                       "which it listens and the seed, and runs until SIGINT or SIGTERM.\n"
                       "\n");
    constexpr int column = 20;
    for (const Option& option : options) {
        const QStringList lines = QString::fromLatin1(option.description).split(QLatin1Char('\n'));
        text += QLatin1String("  ") + nameOfOption(option).leftJustified(column) + lines.constFirst()
                + QLatin1Char('\n');
        for (int i = 1; i < lines.size(); ++i)
            text += QString(column + 2, QLatin1Char(' ')) + lines.at(i) + QLatin1Char('\n');
    }
    return text;
}

std::optional<Options> readOptions(const QStringList& words, QString& problem)
{
    QCommandLineParser parser;
    for (const Option& option : options)
        parser.addOption({QString::fromLatin1(option.name), QString(), QString::fromLatin1(option.value)});
    // The first word is the name of the program.
    if (!parser.parse(QStringList(QStringLiteral("routersim")) + words)) {
        problem = parser.unknownOptionNames().isEmpty() ? parser.errorText()
                                                        : unknownOptions(parser.unknownOptionNames());
        return {};
    }
    const auto value = [&parser](const char* name) { return parser.value(QString::fromLatin1(name)); };
    const auto isSet = [&parser](const char* name) { return parser.isSet(QString::fromLatin1(name)); };
    Options result;
    if (isSet("help") || isSet("version")) {
        result.task = isSet("help") ? Options::ShowHelp : Options::ShowVersion;
        return result;
    }
    result.scenario = value("scenario");
    result.log = value("log");
    quint64 seed = 0;
    constexpr quint16 mostPort = 65535;
    if (!parser.positionalArguments().isEmpty())
        problem = QStringLiteral("%1 is no option.")
                      .arg(ROUTERDOCUMENTS::Quoted(parser.positionalArguments().constFirst()));
    else if (isSet("port") && !readNumber(value("port"), mostPort, result.port))
        problem = QStringLiteral("--port needs a number from 0 to 65535, not %1.")
                      .arg(ROUTERDOCUMENTS::Quoted(value("port")));
    else if (isSet("seed") && !readNumber(value("seed"), std::numeric_limits<quint64>::max(), seed))
        problem = QStringLiteral("--seed needs a number from 0 to %1, not %2.")
                      .arg(std::numeric_limits<quint64>::max())
                      .arg(ROUTERDOCUMENTS::Quoted(value("seed")));
    else if (isSet("host") && !result.host.setAddress(value("host")))
        problem =
            QStringLiteral("--host needs an address, not %1.").arg(ROUTERDOCUMENTS::Quoted(value("host")));
    else if (isSet("check-scenario") && !isSet("scenario"))
        problem = QStringLiteral("--check-scenario needs --scenario.");
    for (const char* file : {"scenario", "log"})
        if (problem.isEmpty() && isSet(file) && value(file).isEmpty())
            problem = QStringLiteral("--%1 needs the name of a file.").arg(QLatin1String(file));
    if (!problem.isEmpty())
        return {};
    if (isSet("check-scenario"))
        result.task = Options::CheckScenario;
    if (isSet("seed"))
        result.seed = seed;
    return result;
}

} // namespace ROUTERSIM
