// SPDX-License-Identifier: MIT
#include "CommandLine.h"

#include "Completions.h"
#include "HelpPage.h"
#include "ManualPage.h"
#include "Parsing.h"
#include "UsageError.h"
#include "commands/CheckCommand.h"
#include "commands/ConvertCommand.h"
#include "commands/DiffCommand.h"
#include "commands/NewCommand.h"
#include "commands/NewWords.h"
#include "commands/ShowCommand.h"
#include "commands/StatsCommand.h"
#include "documents/Forms.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

#include "modelkit/Version.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

const QString fileValue = QStringLiteral("FILE");

} // namespace

/// The parser and what it has understood.
class CommandLine::Parser
{
public:
    Parser()
    {
        m_program.set_help_flag("-h,--help", "Show this help.");
        m_program.add_flag_callback(
            "--version", [this] { m_isVersionWanted = true; }, "Show the version.");
        m_program.allow_extras();
        addConvert();
        addCheck();
        addShow();
        addDiff();
        addNew();
        addStats();
        addMan();
        addCompletion();
    }

    Work parse(int argc, const char* const* argv)
    {
        const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
        for (const Command& command : m_commands)
            if (!arguments.empty() && command.app->get_name() == arguments.front())
                return parse(command, {arguments.begin() + 1, arguments.end()});
        return parseWithoutCommand(arguments);
    }

    const CommonOptions& commonOptions() const { return m_common; }

    ProgramTable tables() const
    {
        ProgramTable program;
        program.name = QStringLiteral("routermsg");
        program.version = version();
        program.summary = QStringLiteral(
            "Look at messages of the router interface, make, convert, check and compare them.");
        for (const Command& command : m_commands)
            program.commands += tableOf(command);
        for (const CLI::Option* option : m_program.get_options())
            program.options += tableOf(*option);
        program.sections = sections();
        return program;
    }

private:
    // --- building the commands

    static QString version() { return QStringLiteral(MODELKIT_VERSION); }

    /// Parsers of their own instead of subcommands: those would end at "--".
    struct Command
    {
        std::unique_ptr<CLI::App> app;
        Work work;
        QVector<Example> examples;

        QString name() const { return fromStd(app->get_name()); }
    };

    CLI::App& add(const char* name, const char* summary, Work work, const QVector<Example>& examples)
    {
        auto app = std::make_unique<CLI::App>(summary, name);
        app->set_help_flag("-h,--help", "Show this help.");
        app->allow_extras();
        m_commands.push_back({std::move(app), std::move(work), examples});
        return *m_commands.back().app;
    }

    void addCommon(CLI::App& app)
    {
        addChoice(app, "--format", "FORMAT", {"text", "json"}, "How results are written: text or json.",
                  [this](int index) { m_common.format = static_cast<Format>(index); });
        addChoice(app, "--color", "WHEN", {"auto", "always", "never"},
                  "Whether the output has colours: auto (on a terminal), always or never.",
                  [this](int index) { m_common.colour = static_cast<Colour>(index); });
        app.add_flag("-q,--quiet", m_common.quiet, "Write findings and errors only.");
    }

    static CLI::Option& addText(CLI::App& app, const char* name, const QString& value, QString& target,
                                const char* text)
    {
        return *app.add_option_function<std::string>(
                       name, [&target](const std::string& given) { target = unguarded(given); }, text)
                    ->type_name(toStd(value));
    }

    static CLI::Option& addTexts(CLI::App& app, const char* name, const QString& value, QStringList& target,
                                 const char* text)
    {
        CLI::Option* option = app.add_option_function<std::vector<std::string>>(
            name,
            [&target](const std::vector<std::string>& given) {
                for (const std::string& one : given)
                    target += unguarded(one);
            },
            text);
        return *option->type_name(toStd(value));
    }

    template <class Set>
    void addChoice(CLI::App& app, const char* name, const char* value, const QStringList& choices,
                   const char* text, const Set& set)
    {
        CLI::Option* option = app.add_option_function<std::string>(
            name,
            [name, choices, set, &app](const std::string& given) {
                const auto index = choices.indexOf(unguarded(given));
                if (index < 0)
                    refuse(app, QStringLiteral("%1 is no value of %2.%3%4")
                                    .arg(Quoted(unguarded(given)), QLatin1String(name),
                                         DidYouMean(unguarded(given), choices), possible(choices)));
                set(static_cast<int>(index));
            },
            text);
        option->type_name(value);
        m_choices[option] = choices;
    }

    void addForm(CLI::App& app, const char* name, const char* text, std::optional<Form>& target)
    {
        addChoice(app, name, "FORM", FormNames(), text,
                  [&target](int index) { target = static_cast<Form>(index); });
    }

    void addConvert()
    {
        CLI::App& app = add(
            "convert", "Write a document in another form.",
            [this](Session& session) { return convert(m_convert, session); },
            {{"routermsg convert request.xml request.bin", "From XML to the binary form."},
             {"routermsg convert request.bin - --to json | less", "Look at a binary document as JSON."},
             {"routermsg convert - reply.binz < reply.json", "From standard input to the compressed form."}});
        addText(app, "IN", fileValue, m_convert.input, "The document to read, or - for standard input.")
            .required();
        addText(app, "OUT", fileValue, m_convert.output, "The file to write, or - for standard output.")
            .required();
        addForm(app, "--from", "The form of IN; otherwise its content tells it.", m_convert.from);
        addForm(app, "--to", "The form of OUT; otherwise its ending tells it, and it is xml for -.",
                m_convert.to);
        app.add_flag("--invalid{false}", m_convert.validate, "Convert the document even if it is not valid.");
        addCommon(app);
    }

    void addCheck()
    {
        CLI::App& app = add(
            "check", "Say whether documents are valid, or what is wrong and where.",
            [this](Session& session) { return check(m_check, session); },
            {{"routermsg check request.xml", "One document."},
             {"routermsg check --quiet recordings", "Only what is wrong among the documents of a folder."},
             {"routermsg check --strict request.xml", "Also what a reader accepts without a word."}});
        addTexts(app, "FILE", fileValue, m_check.inputs,
                 "Documents, folders of documents, or - for standard input.")
            .required();
        app.add_flag(
            "--strict", m_check.strict,
            "Also find what is accepted in silence: what is unknown or repeated, numbers that are none "
            "or lose digits, attributes, and what is not set although it should be.");
        addCommon(app);
    }

    void addShow()
    {
        CLI::App& app = add(
            "show", "Show what is in a document.", [this](Session& session) { return show(m_show, session); },
            {{"routermsg show request.xml", "The document as a tree, with types and what is not set."},
             {"routermsg show --hex request.bin", "Every byte of a binary document, explained."}});
        addText(app, "FILE", fileValue, m_show.input, "The document, or - for standard input.").required();
        app.add_flag("--hex", m_show.hex, "Show the bytes of the binary form and what they mean.");
        addCommon(app);
    }

    void addDiff()
    {
        CLI::App& app = add("diff", "Show where two documents differ, whatever their forms.",
                            [this](Session& session) { return diff(m_diff, session); },
                            {{"routermsg diff before.xml after.bin", "Member by member."},
                             {"routermsg diff a.xml b.xml --ignore MessageID",
                              "Two messages that may have different numbers."}});
        addText(app, "A", fileValue, m_diff.first, "The first document, or - for standard input.").required();
        addText(app, "B", fileValue, m_diff.second, "The second document, or - for standard input.")
            .required();
        addTexts(app, "--ignore", QStringLiteral("PATH"), m_diff.ignored,
                 "A member that does not count, as a path of names such as MessageID, DF_Params/Frequency or "
                 "Fragment[2]; can be given several times.")
            .allow_extra_args(false);
        addCommon(app);
    }

    void addNew()
    {
        CLI::App& app = add(
            "new", "Make a document from words.",
            [this](Session& session) { return makeNew(m_new, session); },
            {{"routermsg new Request MessageID=7 AcquireMastership", "A request, as XML on standard output."},
             {"routermsg new Event DF_Params Frequency=98.5e6 DF_Params Frequency=99.1e6 -o scan.bin",
              "Two fragments in order, written as a binary file."},
             {"routermsg new Request PelVtConnectServer 'Address=host name' Port=5000 --to json",
              "A text with a blank."}});
        CLI::Option& words = addTexts(
            app, "WORD", QStringLiteral("WORD"), m_new.words,
            "Names of records, values as Member=value, and names of enumerators, in order. A value belongs "
            "to the "
            "record that was named last, or to one around it. What is around a record comes by itself.");
        m_choices[&words] = possibleWords();
        addText(app, "-o,--output", fileValue, m_new.output,
                "The file to write; otherwise, and for -, standard output.");
        addForm(app, "--to",
                "The form to write; otherwise the ending of the file tells it, and it is xml for -.",
                m_new.to);
        m_choices[&addText(app, "--root", QStringLiteral("RECORD"), m_new.root,
                           "The record to make; otherwise a whole document.")] = recordNames();
        addCommon(app);
    }

    void addStats()
    {
        CLI::App& app = add("stats", "Count what documents hold.",
                            [this](Session& session) { return stats(m_stats, session); },
                            {{"routermsg stats recordings", "All documents of a folder together."}});
        addTexts(app, "FILE", fileValue, m_stats.inputs,
                 "Documents, folders of documents, or - for standard input.")
            .required();
        addCommon(app);
    }

    void addMan()
    {
        add("man", "Write the manual page.", printing([this] { return manualPage(tables()); }),
            {{"routermsg man | man -l -", "Read it."}});
    }

    void addCompletion()
    {
        CLI::App& app = add("completion", "Write the completion of words for a shell.",
                            printing([this] { return completion(tables(), m_shell); }),
                            {{"source <(routermsg completion bash)", "Have it in this bash."}});
        addChoice(app, "SHELL", "SHELL", shells(), "The shell: bash, zsh or fish.",
                  [this](int index) { m_shell = shells().at(index); });
        app.get_option("SHELL")->required();
    }

    // --- work that is done at once

    static Work printing(const QString& text)
    {
        return printing([text] { return text; });
    }

    static Work printing(const std::function<QString()>& text)
    {
        return [text](Session& session) {
            session.out().write(text());
            return Fine;
        };
    }

    Work printingHelp(const std::function<QString(int)>& page) const
    {
        return [page](Session& session) {
            session.out().write(page(session.out().width()));
            return Fine;
        };
    }

    // --- parsing

    // The parser wants them backwards.
    static std::vector<std::string> prepared(const std::vector<std::string>& arguments)
    {
        std::vector<std::string> result(arguments.size());
        std::transform(arguments.rbegin(), arguments.rend(), result.begin(), guarded);
        return result;
    }

    Work parse(const Command& command, const std::vector<std::string>& arguments)
    {
        try {
            command.app->parse(prepared(arguments));
        } catch (const CLI::CallForHelp&) {
            return printingHelp(
                [this, &command](int width) { return helpPage(tables(), tableOf(command), width); });
        } catch (const CLI::RequiredError&) {
            refuseExtras(*command.app);
            refuseMissing(*command.app);
        } catch (const CLI::ArgumentMismatch& error) {
            refuseNumberOfValues(*command.app, error);
        } catch (const CLI::ParseError& error) {
            refuseExtras(*command.app);
            refuse(*command.app, fromStd(error.what()) + QLatin1Char('.'));
        }
        refuseExtras(*command.app);
        return command.work;
    }

    Work parseWithoutCommand(const std::vector<std::string>& arguments)
    {
        try {
            m_program.parse(prepared(arguments));
        } catch (const CLI::CallForHelp&) {
            return printingHelp([this](int width) { return helpPage(tables(), width); });
        } catch (const CLI::ParseError& error) {
            refuse(m_program, fromStd(error.what()) + QLatin1Char('.'));
        }
        for (const std::string& extra : m_program.remaining())
            refuseExtra(unguarded(extra));
        if (!m_isVersionWanted)
            refuse(m_program, QStringLiteral("A command is missing.") + possible(commandNames()));
        return printing(QStringLiteral("routermsg %1\n").arg(version()));
    }

    // --- mistakes

    QStringList commandNames() const
    {
        QStringList names;
        for (const Command& command : m_commands)
            names += command.name();
        return names;
    }

    [[noreturn]] void refuseExtra(const QString& word) const
    {
        if (!word.startsWith(QLatin1Char('-')))
            refuse(m_program,
                   QStringLiteral("There is no command %1.%2%3")
                       .arg(Quoted(word), DidYouMean(word, commandNames()), possible(commandNames())));
        const QString name = word.section(QLatin1Char('='), 0, 0);
        for (const Command& command : m_commands)
            if (optionNames(*command.app).contains(name))
                refuse(m_program, QStringLiteral("The option %1 belongs behind the command.").arg(name));
        refuse(
            m_program,
            QStringLiteral("There is no option %1.%2").arg(name, DidYouMean(name, optionNames(m_program))));
    }

    // --- tables

    OptionTable tableOf(const CLI::Option& option) const
    {
        OptionTable table;
        table.names = namesOf(option);
        table.isRequired = option.get_required();
        table.isRepeatable = option.get_items_expected_max() > 1;
        table.text = fromStd(option.get_description());
        if (option.get_items_expected_max() > 0)
            table.value = fromStd(option.get_type_name());
        table.isFile = table.value == fileValue;
        const auto choices = m_choices.find(&option);
        if (choices != m_choices.end())
            table.choices = choices->second;
        return table;
    }

    CommandTable tableOf(const Command& command) const
    {
        CommandTable table;
        table.name = command.name();
        table.summary = fromStd(command.app->get_description());
        table.examples = command.examples;
        for (const CLI::Option* option : command.app->get_options())
            (option->get_positional() ? table.arguments : table.options) += tableOf(*option);
        if (table.name == QLatin1String("new"))
            addWords(table);
        return table;
    }

    static void addWords(CommandTable& table)
    {
        table.notesTitle = QStringLiteral("Words");
        for (const RecordWords& record : describeWords())
            table.notes += Note{record.record, (record.isChoice ? QStringLiteral("one of ") : QString())
                                                   + record.words.join(QLatin1Char(' '))};
    }

    static QVector<Section> sections()
    {
        return {
            {QStringLiteral("Forms"),
             {QStringLiteral(
                  "A document has one of the forms %1. Reading recognises them by the content, writing "
                  "goes by the ending of the file's name: %2.")
                  .arg(Enumerated(FormNames()), KnownEndings()),
              QStringLiteral("JSON is the form that loses nothing; the others carry decimal numbers with two "
                             "decimals.")}},
            {QStringLiteral("Exit status"),
             {QStringLiteral(
                 "0 when all is well; 1 when a document is not valid or documents differ; 2 when the "
                 "command line makes no sense or a file cannot be read or written.")}},
            {QStringLiteral("Environment"),
             {QStringLiteral("NO_COLOR: when it is set and not empty, --color auto means never.")}}};
    }

    CommonOptions m_common;
    ConvertOptions m_convert;
    CheckOptions m_check;
    ShowOptions m_show;
    DiffOptions m_diff;
    NewOptions m_new;
    StatsOptions m_stats;
    QString m_shell;

    CLI::App m_program;
    bool m_isVersionWanted = false;
    std::vector<Command> m_commands;
    std::map<const CLI::Option*, QStringList> m_choices;
};

CommandLine::CommandLine() : m_parser(std::make_unique<Parser>()) {}

CommandLine::~CommandLine() = default;

CommandLine::Work CommandLine::parse(int argc, const char* const* argv)
{
    return m_parser->parse(argc, argv);
}

const CommonOptions& CommandLine::commonOptions() const { return m_parser->commonOptions(); }

ProgramTable CommandLine::tables() const { return m_parser->tables(); }

} // namespace routermsg
