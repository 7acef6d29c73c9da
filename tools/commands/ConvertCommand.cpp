// SPDX-License-Identifier: MIT
// The command `convert`: a document in another form.

#include "Commands.h"
#include "InputFile.h"
#include "InputFiles.h"
#include "Progress.h"
#include "Saving.h"
#include "SharedOptions.h"

#include <QtCore/QFileInfo>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

bool isSameFile(const QString& path, const QString& other)
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return !canonical.isEmpty() && canonical == QFileInfo(other).canonicalFilePath();
}

Status convert(const Arguments& arguments, Session& session)
{
    const QString path = arguments.text("IN");
    const Target target(arguments.text("OUT"), formOf(arguments, "--to"));
    const auto validation = arguments.isGiven("--invalid") ? Validation::Off : Validation::On;
    Progress progress(session, {path});
    progress.next(inputName(path));

    MessageWriter writer(target, session);
    FileSummary input{inputName(path), Form::Xml, 0, std::nullopt, 0};
    const Status worst = forEachMessage(
        path, {messagesOf(arguments), formOf(arguments, "--from"), &progress},
        [&](const InputMessage& message) {
            const Document document = message.read(validation);
            writer.add(*document.record);
            input.isMixed |= input.messages > 0 && input.form != document.form;
            input.form = document.form;
            ++input.messages;
            input.size += document.size;
        },
        [&](const Finding& finding) { session.complain(finding); });
    if (input.messages == 0)
        return worst;
    // Nothing is replaced by a part of it.
    if (worst == Failed || (worst == Found && isSameFile(path, target.path))) {
        if (target.path != QLatin1String("-"))
            session.complain(Finding::ofFile(
                target.path,
                QStringLiteral("The file is not written, because messages of the input are missing.")));
        return worst;
    }

    FileSummary output = writer.finish();
    output.isComplete = *output.isComplete && worst == Fine;
    reportSaving(input.toText() + QStringLiteral(" -> ") + output.toText(),
                 {{QStringLiteral("input"), input.toJson()}, {QStringLiteral("output"), output.toJson()}},
                 target, session);
    return worst;
}

} // namespace

Command convertCommand()
{
    CommandTable table;
    table.name = "convert";
    table.summary = "Write a document in another form.";
    table.arguments = {
        required(argument("IN", fileValue(), "The document to read, or - for standard input.")),
        required(argument("OUT", fileValue(), "The file to write, or - for standard output."))};
    table.options = {
        messageOption(), formOption("--from", "The form of IN. Without it, the content tells the form."),
        formOption("--to", "The form of OUT. Without it, the ending tells the form; - means xml."),
        flag({"--invalid"}, "Convert the document even if it is not valid.")};
    table.examples = {
        {"%1 convert request.xml request.bin", "From XML to the binary form."},
        {"%1 convert request.bin - --to json | less", "Look at a binary document as JSON."},
        {"%1 convert - reply.binz < reply.json", "From standard input to the compressed form."}};
    return {table, convert};
}

} // namespace routermsg
