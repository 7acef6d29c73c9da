// SPDX-License-Identifier: MIT
// The command `new`: a document from words on the command line. NewWords.h explains the words.

#include "Commands.h"
#include "NewWords.h"
#include "Saving.h"
#include "SharedOptions.h"
#include "Suggestions.h"
#include "UsageError.h"
#include "documents/DocumentError.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

#include "modelkit/IMKObject.h"
#include "routerinterface/RecordInfo.h"

#include <memory>

namespace routermsg {

using namespace ROUTERDOCUMENTS;
using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

const RecordInfo& rootOf(const QString& name)
{
    if (name.isEmpty())
        return RecordInfo::Document();
    if (const RecordInfo* info = RecordInfo::Find(name))
        return *info;
    const QStringList names = recordNames();
    throw UsageError(QStringLiteral("There is no record %1.%2%3")
                         .arg(Quoted(name), DidYouMean(name, names), possible(names)));
}

std::unique_ptr<IMKObject> checked(const RecordInfo& root, const QStringList& words)
{
    try {
        std::unique_ptr<IMKObject> record = build(root, words);
        record->Check();
        return record;
    } catch (const ModelKitException& exception) {
        throw Refusal(Finding::of(DocumentError(exception), QString()));
    }
}

Status makeNew(const Arguments& arguments, Session& session)
{
    const QString path = arguments.isGiven("--output") ? arguments.text("--output") : QStringLiteral("-");
    const Target target(path, formOf(arguments, "--to"));
    SavingReport report(target.path, session);
    return report.run([&] {
        const std::unique_ptr<IMKObject> record =
            checked(rootOf(arguments.text("--root")), arguments.texts("WORD"));
        MessageWriter writer(target, session, report);
        writer.add(*record);
        const FileSummary file = writer.finish();
        report.addFile(QStringLiteral("output"), file.toJson());
        report.setText(file.toText());
        return *file.isComplete ? Fine : Found;
    });
}

OptionTable wordsArgument()
{
    return repeatable(suggesting(
        offeredWords(),
        argument(
            "WORD", "WORD",
            "Names of records, values as Member=value, and names of enumerators, in order. A value belongs "
            "to the record that was named last, or to one that contains it. The records that contain a "
            "named one are made automatically.")));
}

QVector<Note> wordNotes()
{
    QVector<Note> notes;
    for (const RecordWords& record : describeWords())
        notes += Note{record.record, (record.isChoice ? QStringLiteral("one of ") : QString())
                                         + record.words.join(QLatin1Char(' '))};
    return notes;
}

} // namespace

Command newCommand()
{
    CommandTable table;
    table.name = "new";
    table.summary = "Make a document from words.";
    table.arguments = {wordsArgument()};
    table.options = {
        option({"-o", "--output"}, fileValue(), "The file to write. Without it, or for -, standard output."),
        formOption("--to",
                   "The form to write. Without it, the ending of the file tells the form; - means xml."),
        suggesting(recordNames(),
                   option({"--root"}, "RECORD", "The record to make. Without it, a whole document."))};
    table.notesTitle = "Words";
    table.notes = wordNotes();
    table.examples = {
        {"%1 new Request MessageID=7 AcquireMastership", "A request, as XML on standard output."},
        {"%1 new Event DF_Params Frequency=98.5e6 DF_Params Frequency=99.1e6 -o scan.bin",
         "Two fragments in order, written as a binary file."},
        {"%1 new Request PelVtConnectServer 'Address=host name' Port=5000 --to json",
         "A text with a blank."}};
    return {table, makeNew};
}

} // namespace routermsg
