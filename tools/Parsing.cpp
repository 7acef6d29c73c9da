// SPDX-License-Identifier: MIT
#include "Parsing.h"

#include "UsageError.h"
#include "commands/NewWords.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

// The parser takes "[a,b]" for two values. No argument begins with a bracket when it gets them.
constexpr char guard = '\1';

template <class Container>
QStringList withDashes(const Container& names, const char* dashes)
{
    QStringList result;
    for (const std::string& name : names)
        result += QLatin1String(dashes) + fromStd(name);
    return result;
}

} // namespace

std::string toStd(const QString& text) { return text.toStdString(); }

QString fromStd(const std::string& text) { return QString::fromStdString(text); }

std::string guarded(const std::string& argument)
{
    const bool isUnsafe = !argument.empty() && (argument.front() == '[' || argument.front() == guard);
    return isUnsafe ? guard + argument : argument;
}

QString unguarded(const std::string& argument)
{
    const bool isGuarded = !argument.empty() && argument.front() == guard;
    return fromStd(isGuarded ? argument.substr(1) : argument);
}

QString possible(const QStringList& words)
{
    return QStringLiteral(" Possible are %1.").arg(Enumerated(words));
}

QStringList namesOf(const CLI::Option& option)
{
    if (option.get_positional())
        return {fromStd(option.get_name(true))};
    return withDashes(option.get_snames(), "-") + withDashes(option.get_lnames(), "--");
}

QStringList optionNames(const CLI::App& app)
{
    QStringList names;
    for (const CLI::Option* option : app.get_options())
        if (!option->get_positional())
            names += namesOf(*option);
    return names;
}

void refuse(const CLI::App& app, const QString& text)
{
    const QString name = fromStd(app.get_name());
    throw UsageError(
        text
        + QStringLiteral(" Try: routermsg %1--help").arg(name.isEmpty() ? name : name + QLatin1Char(' ')));
}

namespace {

[[noreturn]] void refuseExtra(const CLI::App& app, const QString& word)
{
    if (!word.startsWith(QLatin1Char('-')))
        refuse(app, QStringLiteral("The command %1 takes no further argument %2.")
                        .arg(fromStd(app.get_name()), Quoted(word)));
    const QString name = word.section(QLatin1Char('='), 0, 0);
    QString meant = DidYouMean(name, optionNames(app));
    if (meant.isEmpty() && fromStd(app.get_name()) == QLatin1String("new"))
        meant = didYouMeanWord(QString(name).remove(QLatin1Char('-')));
    refuse(app,
           QStringLiteral("The command %1 has no option %2.%3").arg(fromStd(app.get_name()), name, meant));
}

} // namespace

void refuseExtras(const CLI::App& app)
{
    for (const std::string& extra : app.remaining())
        if (extra != "--")
            refuseExtra(app, unguarded(extra));
}

void refuseNumberOfValues(const CLI::App& app, const CLI::ArgumentMismatch& error)
{
    const QString name = fromStd(error.what()).section(QLatin1Char(':'), 0, 0);
    const CLI::Option* option = app.get_option_no_throw(toStd(name));
    refuse(app, option && option->count() > 1
                    ? QStringLiteral("The option %1 is given more than once.").arg(name)
                    : QStringLiteral("The option %1 needs a value.").arg(name));
}

void refuseMissing(const CLI::App& app)
{
    for (const CLI::Option* option : app.get_options())
        if (option->get_required() && option->count() == 0)
            refuse(app, QStringLiteral("The command %1 needs %2: %3")
                            .arg(fromStd(app.get_name()), namesOf(*option).constFirst(),
                                 fromStd(option->get_description())));
}

} // namespace routermsg
