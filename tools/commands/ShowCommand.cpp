// SPDX-License-Identifier: MIT
// The command `show`: what is in a document, for people.

#include "Commands.h"
#include "HexView.h"
#include "InputFiles.h"
#include "Progress.h"
#include "Saving.h"
#include "TreeView.h"
#include "documents/Tree.h"

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

// Writes the first line of a result in text format.
void writeHead(const QString& text, Session& session)
{
    if (!session.isQuiet())
        session.out().writeLine(session.out().paint(Style::Faint, text));
}

Document loadInput(const QString& path, Session& session)
{
    Progress progress(session, 1);
    progress.next(inputName(path));
    return load(path);
}

Status showTree(const QString& path, Session& session)
{
    const Document loaded = loadInput(path, session);
    const FileSummary copy{inputName(path), loaded.form, loaded.size};
    if (session.format() == Format::Json) {
        QJsonObject json = copy.toJson();
        json[QStringLiteral("document")] = TreeJson(*loaded.record);
        session.writeJson(json);
    } else {
        writeHead(copy.toText(), session);
        writeTree(*loaded.record, session.out());
    }
    return Fine;
}

bool isBinary(Form form) { return form == Form::Binary || form == Form::Compressed; }

// Without any "<" the bytes cannot be XML, so they are treated as a binary form, however wrong.
Form formToDissect(const QByteArray& bytes)
{
    const Form form = FormOfContent(bytes);
    return form == Form::Xml && !bytes.contains('<') ? Form::Binary : form;
}

// Shows the bytes of an input in a binary form. Another input is shown as its plain binary form.
Status showHex(const QString& path, Session& session)
{
    const QString name = inputName(path);
    const QByteArray bytes = readInput(path);
    const Form form = formToDissect(bytes);
    const FileSummary copy{name, form, bytes.size()};
    const QByteArray shown =
        isBinary(form) ? bytes : encode(*parse(bytes, name, {form, false}).record, Form::Binary, name);

    std::optional<Finding> wrong;
    if (session.format() == Format::Json) {
        wrong = writeHexJson(shown, copy.toJson(), session.out());
    } else {
        writeHead(isBinary(form) ? copy.toText() : copy.toText() + QStringLiteral(", in the binary form"),
                  session);
        wrong = writeHex(shown, session.out());
    }
    if (!wrong)
        return Fine;
    wrong->place.file = name;
    throw Refusal(*wrong);
}

Status show(const Arguments& arguments, Session& session)
{
    const QString path = arguments.text("FILE");
    return arguments.isGiven("--hex") ? showHex(path, session) : showTree(path, session);
}

} // namespace

Command showCommand()
{
    CommandTable table;
    table.name = "show";
    table.summary = "Show what is in a document.";
    table.arguments = {required(argument("FILE", fileValue(), "The document, or - for standard input."))};
    table.options = {flag({"--hex"}, "Show the bytes of the binary form and what they mean.")};
    table.examples = {
        {"routermsg show request.xml", "The document as a tree, with types and what is not set."},
        {"routermsg show --hex request.bin", "Every byte of a binary document, explained."}};
    return {table, show};
}

} // namespace routermsg
