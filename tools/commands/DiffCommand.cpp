// SPDX-License-Identifier: MIT
// The command `diff`: where two documents, recordings or folders differ.

#include "Commands.h"
#include "DiffReport.h"
#include "FilePairs.h"
#include "InputFile.h"
#include "InputFiles.h"
#include "Progress.h"
#include "SharedOptions.h"
#include "UsageError.h"
#include "documents/Difference.h"

#include <memory>
#include <optional>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

void requireDifferentInputs(const QString& first, const QString& second)
{
    const QString standardInput = QStringLiteral("-");
    if (first == standardInput && second == standardInput)
        throw UsageError(QStringLiteral("Only one of the documents can come from standard input."));
}

IgnoredMembers ignoredMembers(const QStringList& paths)
{
    try {
        return IgnoredMembers(paths);
    } catch (const InvalidMemberPath& error) {
        throw UsageError(error.GetText());
    }
}

class Comparison
{
public:
    Comparison(const Arguments& arguments, Session& session)
        : m_ignored(ignoredMembers(arguments.texts("--ignore"))), m_range(messagesOf(arguments)),
          m_format(inputFormatOf(arguments)), m_session(session), m_report(makeDiffReport(session))
    {}

    // Compares the messages of two files in pairs, by their numbers.
    void compareFiles(const FilePair& pair, Progress& progress)
    {
        const auto first = open(pair.first, &progress);
        const auto second = first ? open(pair.second, nullptr) : nullptr;
        if (!second)
            return;
        const qint64 failuresBefore = m_failures;
        while (true) {
            const auto inFirst = nextOf(*first);
            const auto inSecond = nextOf(*second);
            if (!inFirst && !inSecond)
                return;
            // Behind something that could not be read, a message may have lost its counterpart there.
            if ((!inFirst || !inSecond) && m_failures > failuresBefore) {
                ++m_failures;
                continue;
            }
            compareMessages({pair.name, (inFirst ? inFirst : inSecond)->recorded.number}, inFirst, inSecond);
        }
    }

    void addFile(const QString& name, Difference::Kind kind, const QString& folder)
    {
        ++m_differences;
        m_report->addFile(name, kind, folder);
    }

    // What cannot be compared.
    void addProblem(const Finding& problem)
    {
        m_session.complain(problem);
        ++m_failures;
    }

    // A file whose counterpart may be among what cannot be read.
    void addDoubtfulFile() { ++m_failures; }

    Status end()
    {
        m_report->end(m_differences, m_failures);
        if (m_failures > 0)
            return Failed;
        return m_differences > 0 ? Found : Fine;
    }

private:
    // False, with a complaint, if the step refuses something.
    template <class Step>
    bool attempt(const Step& step)
    {
        try {
            step();
            return true;
        } catch (const OutputRefusal&) {
            throw;
        } catch (const Refusal& refusal) {
            addProblem(refusal.finding());
            return false;
        }
    }

    std::unique_ptr<Messages> open(const QString& path, Progress* progress)
    {
        std::unique_ptr<Messages> messages;
        attempt([&] {
            messages = std::make_unique<Messages>(path, Messages::Options{m_range, m_format, progress});
        });
        return messages;
    }

    // None at the end. What is no message is left out.
    std::optional<InputMessage> nextOf(Messages& messages)
    {
        std::optional<InputMessage> message;
        while (!attempt([&] { message = messages.next(); })) {
        }
        return message;
    }

    void compareMessages(const ComparedMessages& which, const std::optional<InputMessage>& inFirst,
                         const std::optional<InputMessage>& inSecond)
    {
        Document first;
        Document second;
        const bool isFirstRead = read(inFirst, first);
        const bool isSecondRead = read(inSecond, second);
        if (!isFirstRead || !isSecondRead)
            return;
        if (first.record && second.record)
            CompareRecords(*first.record, *second.record, m_ignored,
                           [&](const Difference& difference) { add(which, difference); });
        else
            add(which, first.record ? MissingRecord(*first.record, Difference::Removed)
                                    : MissingRecord(*second.record, Difference::Added));
    }

    // False, with a complaint, if there is a message that cannot be read.
    bool read(const std::optional<InputMessage>& message, Document& document)
    {
        return !message || attempt([&] { document = message->read(); });
    }

    void add(const ComparedMessages& which, const Difference& difference)
    {
        ++m_differences;
        m_report->add(which, difference);
    }

    const IgnoredMembers m_ignored;
    const MessageRange m_range;
    const InputFormat m_format;
    Session& m_session;
    const std::unique_ptr<DiffReport> m_report;
    qint64 m_differences = 0;
    // Files and messages that could not be read.
    qint64 m_failures = 0;
};

Status diff(const Arguments& arguments, Session& session)
{
    const QString first = arguments.text("A");
    const QString second = arguments.text("B");
    requireDifferentInputs(first, second);
    session.keepFindingsForJson();
    Comparison comparison(arguments, session);
    const PairList list = pairsOf(first, second);
    for (const Finding& problem : list.problems)
        comparison.addProblem(problem);
    QStringList inputs;
    for (const FilePair& pair : list.pairs)
        if (pair.isComplete())
            inputs += pair.first;
    {
        // What is left in the first file tells how long it takes.
        Progress progress(session, inputs);
        for (const FilePair& pair : list.pairs) {
            progress.next(inputName(pair.isComplete() ? pair.first : pair.name));
            if (pair.isComplete())
                comparison.compareFiles(pair, progress);
            else if (pair.second.isEmpty() ? !list.isSecondWhole : !list.isFirstWhole)
                comparison.addDoubtfulFile();
            else if (pair.second.isEmpty())
                comparison.addFile(pair.name, Difference::Removed, first);
            else
                comparison.addFile(pair.name, Difference::Added, second);
        }
    }
    return comparison.end();
}

} // namespace

Command diffCommand()
{
    CommandTable table;
    table.name = "diff";
    table.summary = "Show where two documents, recordings or folders differ.";
    table.arguments = {
        required(
            argument("A", fileValue(), "The first document, recording or folder, or - for standard input.")),
        required(argument("B", fileValue(), "The second one, or - for standard input."))};
    table.options = {
        messageOption(),
        repeatable(takingPath(option(
            {"--ignore"}, "PATH",
            "A member to ignore, as a path such as MessageID, DF_Params/Frequency or Fragment[2], or as "
            "diff writes it; can be given several times.")))};
    table.readsMessages = true;
    table.examples = {
        {"%1 diff before.xml after.bin", "Member by member."},
        {"%1 diff expected recorded", "Two folders, file by file."},
        {"%1 diff a.xml b.xml --ignore MessageID", "Two messages whose numbers do not matter."}};
    return {table, diff};
}

} // namespace routermsg
