// SPDX-License-Identifier: MIT
#include "ShowCommand.h"

#include "HexView.h"
#include "InputFiles.h"
#include "Progress.h"
#include "Saving.h"
#include "TreeView.h"
#include "documents/Tree.h"

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

// The first line of what is shown as text.
void writeHead(const QString& text, Session& session)
{
    if (!session.isQuiet())
        session.out().writeLine(session.out().paint(Style::Faint, text));
}

Document loadInput(const ShowOptions& options, Session& session)
{
    Progress progress(session, 1);
    progress.next(inputName(options.input));
    return load(options.input);
}

Status showTree(const ShowOptions& options, Session& session)
{
    const Document loaded = loadInput(options, session);
    const FileSummary copy{inputName(options.input), loaded.form, loaded.size};
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

// What is no text is taken for a binary form even if nothing of it is as it should be.
Form formToDissect(const QByteArray& bytes)
{
    const Form form = FormOfContent(bytes);
    return form == Form::Xml && !bytes.contains('<') ? Form::Binary : form;
}

// The bytes of the input when it is in a binary form, otherwise those that it has in the plain one.
Status showHex(const ShowOptions& options, Session& session)
{
    const QString name = inputName(options.input);
    const QByteArray bytes = readInput(options.input);
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

} // namespace

Status show(const ShowOptions& options, Session& session)
{
    return options.hex ? showHex(options, session) : showTree(options, session);
}

} // namespace routermsg
