// SPDX-License-Identifier: MIT
// The command `convert`: a document in another form.

#include "BatchConversion.h"
#include "Commands.h"
#include "Conversion.h"
#include "Progress.h"
#include "Saving.h"
#include "SharedOptions.h"

#include <QtCore/QFileInfo>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

Status convertFile(const Arguments& arguments, Session& session)
{
    const QString path = arguments.text("IN");
    const Target target(arguments.text("OUT"), formOf(arguments, "--to"));
    Progress progress(session, {path});
    SavingReport report(target.path, session);
    Conversion conversion(arguments, report, progress);
    MessageWriter writer(target, session, report);
    return report.run([&] {
        conversion.read(path, [&](const ConvertedMessage& message) { writer.add(*message.document.record); });
        if (!conversion.hasMessages()) {
            conversion.reportNothing();
            return conversion.status();
        }
        const FileSummary& input = conversion.inputs().constFirst();
        report.addFile(QStringLiteral("input"), input.toJson());
        if (const auto output = conversion.finish(writer, target)) {
            report.addFile(QStringLiteral("output"), output->toJson());
            report.setText(input.toText() + QStringLiteral(" -> ") + output->toText());
        }
        return conversion.status();
    });
}

Status convert(const Arguments& arguments, Session& session)
{
    jobsOf(arguments);
    return QFileInfo(arguments.text("IN")).isDir() ? convertFolder(arguments, session)
                                                   : convertFile(arguments, session);
}

} // namespace

Command convertCommand()
{
    CommandTable table;
    table.name = "convert";
    table.summary = "Write a document, or all of a folder, in another form.";
    table.arguments = {
        required(argument("IN", fileValue(),
                          "The document to read, a folder of documents, or - for standard input.")),
        required(argument(
            "OUT", fileValue(),
            "The file to write, the folder to write the files of a folder to, or - for standard output."))};
    table.options = {
        messageOption(),
        whereOption(),
        formOption("--to", "The form of OUT. Without it, the ending tells the form; - means xml. "
                           "A folder needs the option."),
        jobsOption(),
        invalidOption(),
        acceptLossOption(
            "Without the option OUT is written as well, unless it is IN, but the exit status is 1.")};
    table.readsMessages = true;
    table.examples = {
        {"%1 convert request.xml request.bin", "From XML to the binary form."},
        {"%1 convert --accept-loss scan.json scan.xml", "To XML, even if numbers lose decimals."},
        {"%1 convert request.bin - --to json | less", "Look at a binary document as JSON."},
        {"%1 convert monday.rec replies.rec --to binary --where Type=Reply",
         "Only the replies of a recording."},
        {"%1 convert week archive --to jsonl", "All documents in and below a folder."},
        {"%1 convert - reply.binz < reply.json", "From standard input to the compressed form."}};
    return {table, convert};
}

} // namespace routermsg
