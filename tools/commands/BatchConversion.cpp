// SPDX-License-Identifier: MIT
#include "BatchConversion.h"

#include "BatchPlan.h"
#include "BatchReport.h"
#include "Conversion.h"
#include "OrderedThreads.h"
#include "Progress.h"
#include "SharedOptions.h"
#include "Uninterrupted.h"
#include "UsageError.h"
#include "documents/Sentences.h"

#include <QtCore/QFileInfo>

#include <algorithm>
#include <thread>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

constexpr const char* jobsName = "--jobs";
constexpr int mostJobs = 1000;

Form formOfFiles(const Arguments& arguments)
{
    if (const auto form = formOf(arguments, "--to"))
        return *form;
    throw UsageError(QStringLiteral("%1 is a folder. Name the form of its converted files with --to: %2.")
                         .arg(arguments.text("IN"), Listed(FormNames())));
}

QString folderToWrite(const Arguments& arguments)
{
    QString folder = arguments.text("OUT");
    if (folder == QLatin1String("-"))
        throw UsageError(
            QStringLiteral("%1 is a folder, whose files cannot go to standard output. Name another "
                           "folder.")
                .arg(arguments.text("IN")));
    return folder;
}

// Passes the findings of a file on to the report.
class ToldFindings : public FindingReceiver
{
public:
    ToldFindings(const Tell& tell, BatchReport& report) : m_tell(tell), m_report(report) {}

    void add(const Finding& finding) override
    {
        m_tell([&report = m_report, finding] { report.add(finding); });
    }

private:
    const Tell& m_tell;
    BatchReport& m_report;
};

// One run of the command.
class Batch
{
public:
    Batch(const Arguments& arguments, Session& session)
        : m_arguments(arguments), m_session(session), m_form(formOfFiles(arguments)),
          m_outFolder(folderToWrite(arguments)), m_jobs(jobsOf(arguments)), m_report(session)
    {}

    Status run()
    {
        const QFileInfo outFolder(m_outFolder);
        if (outFolder.exists() && !outFolder.isDir())
            m_report.addProblem(
                Finding::ofFile(m_outFolder, QStringLiteral("The folder cannot be written: it is a file.")));
        else
            convertAll();
        return m_report.end();
    }

private:
    void convertAll()
    {
        const BatchPlan plan = planOf(m_arguments.text("IN"), m_outFolder, m_form);
        for (const Finding& problem : plan.problems)
            m_report.addProblem(problem);
        QStringList paths;
        for (const BatchFile& file : plan.files)
            paths += file.input;
        Progress progress(m_session, paths);
        const SignalWatch signalWatch;
        doInOrder(static_cast<int>(plan.files.size()), m_jobs, [&](int number, const Tell& tell) {
            const BatchFile& file = plan.files.at(number);
            ToldFindings findings(tell, m_report);
            BatchOutcome outcome{file.input};
            try {
                convert(file, findings, progress, outcome);
            } catch (const Refusal& refusal) {
                findings.add(refusal.finding());
                outcome.status = refusal.finding().status;
            } catch (const std::exception& error) {
                findings.add(Finding::ofFile(file.input, QString::fromUtf8(error.what())));
                outcome.status = Failed;
            }
            tell([this, outcome] { m_report.add(outcome); });
        });
    }

    void convert(const BatchFile& file, FindingReceiver& findings, Progress& whole,
                 BatchOutcome& outcome) const
    {
        if (!file.obstacle.isEmpty())
            throw Refusal(Finding::ofFile(file.input, file.obstacle));
        Target target(file.output, m_form);
        // A pipe below the folder is not written to: nobody may read it. Nor is a link to standard output.
        target.path = file.output;
        target.isFile = true;
        target.makesFolders = true;
        Progress progress(&whole);
        Conversion conversion(m_arguments, findings, progress);
        MessageWriter writer(target, m_session, findings);
        conversion.read(file.input,
                        [&](const ConvertedMessage& message) { writer.add(*message.document.record); });
        if (conversion.hasMessages()) {
            outcome.input = conversion.inputs().constFirst();
            outcome.output = conversion.finish(writer, target);
        } else if (conversion.status() == Fine) {
            // Other files may hold what is wanted.
            outcome.leftOut = conversion.inputs().constFirst().leftOut;
        }
        outcome.status = conversion.status();
    }

    const Arguments& m_arguments;
    Session& m_session;
    const Form m_form;
    const QString m_outFolder;
    const int m_jobs;
    BatchReport m_report;
};

} // namespace

OptionTable jobsOption()
{
    return suggesting(
        {"1", "2", "4", "8"},
        option({jobsName}, "N",
               "Convert so many files of a folder at the same time; as many as there are processors, if the "
               "option is not given. The result is always the same."));
}

int jobsOf(const Arguments& arguments)
{
    if (!arguments.isGiven(jobsName))
        return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, mostJobs);
    const QString text = arguments.text(jobsName);
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber || number < 1 || number > mostJobs)
        arguments.refuse(QStringLiteral("\"%1\" is no value of --jobs. Write a number from 1 to %2.")
                             .arg(text)
                             .arg(mostJobs));
    return number;
}

Status convertFolder(const Arguments& arguments, Session& session)
{
    // Wrong values are found before the work begins.
    static_cast<void>(messagesOf(arguments));
    static_cast<void>(inputFormatOf(arguments));
    static_cast<void>(MessageFilter(arguments));
    return Batch(arguments, session).run();
}

} // namespace routermsg
