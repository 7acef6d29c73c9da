// SPDX-License-Identifier: MIT
// The command `show`: what is in a document, for people.

#include "Commands.h"
#include "HexHint.h"
#include "HexView.h"
#include "InputFile.h"
#include "InputFiles.h"
#include "Progress.h"
#include "Saving.h"
#include "SharedOptions.h"
#include "TreeView.h"
#include "WhereOption.h"
#include "documents/Tree.h"

#include "modelkit/BinaryForm.h"
#include "modelkit/Limits.h"

#include <QtCore/QFileInfo>

#include <algorithm>
#include <utility>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

// Writes the first line of a result in text format.
void writeHead(const QString& text, Session& session)
{
    if (!session.isQuiet())
        session.out().writeLine(session.out().paint(Style::Faint, text));
}

// Returns whether the message fits the filter.
bool showTree(const InputMessage& message, MessageFilter& filter, bool isFirst, Session& session)
{
    const Document loaded = message.read();
    if (!filter.takes(*loaded.record))
        return false;
    const FileSummary summary{message.name, loaded.form, loaded.size};
    if (session.format() == Format::Json) {
        QJsonObject json = summary.toJson();
        json[QStringLiteral("document")] = TreeJson(*loaded.record);
        session.writeJson(json);
        return true;
    }
    if (!isFirst)
        session.out().writeLine();
    writeHead(summary.toText(), session);
    writeTree(*loaded.record, session.out());
    return true;
}

// Without any "<" the bytes cannot be XML, so they are treated as a binary form, however wrong.
Form formToDissect(const QByteArray& bytes, const InputFormat& format)
{
    if (format.frame || (format.form && IsBinary(*format.form)))
        return MODELKIT::IsCompressedForm(bytes) ? Form::Compressed : Form::Binary;
    if (format.form)
        return *format.form;
    const Form form = FormOfContent(bytes);
    return form == Form::Xml && !bytes.contains('<') ? Form::Binary : form;
}

// Shows bytes in a binary form. Bytes in another form are shown as their plain binary form.
Status showHex(const InputMessage& message, Session& session)
{
    const QByteArray& bytes = message.recorded.bytes;
    const Form form = message.recorded.frame ? message.recorded.form : formToDissect(bytes, message.format);
    const FileSummary summary{message.name, form, bytes.size()};
    const HexForm shown = IsBinary(form)
                              ? HexForm{bytes, message.recorded.offset,
                                        message.recorded.frame.value_or(FrameFormat()), message.format.info}
                              : HexForm{encode(*message.read().record, Form::Binary, message.name), 0};

    std::optional<Finding> wrong;
    if (session.format() == Format::Json) {
        wrong = writeHexJson(shown, summary.toJson(), session.out());
    } else {
        writeHead(IsBinary(form) ? summary.toText()
                                 : summary.toText() + QStringLiteral(", in the binary form"),
                  session);
        wrong = writeHex(shown, session.out());
    }
    if (!wrong)
        return Fine;
    message.reject();
    wrong->place.file = message.name;
    // The JSON has it already.
    if (session.format() == Format::Text)
        session.complain(*wrong);
    return wrong->status;
}

// As JSON, each message and each problem is an object in its place.
void complain(const Finding& finding, Session& session)
{
    session.complain(finding);
    session.writeFindings();
}

// Whether an input is shown as far as it can be decoded: it holds no message, or begins with a damaged binary
// form. What stands behind a message that is too large is still shown message by message.
bool isShownAsWhole(const Messages& messages, const QString& path)
{
    if (messages.count() > 0)
        return false;
    if (messages.isWithoutMessage())
        return true;
    const bool isTooLarge = QFileInfo(path).size() > MODELKIT::Limits::Get().inputSize;
    return !isTooLarge && (MODELKIT::IsCompressedForm(messages.head()) || ClassOfBinary(messages.head()));
}

Status showHexOfAll(const QString& path, const Messages::Options& options, MessageFilter& filter,
                    Session& session)
{
    Messages messages(path, options);
    Status worst = Fine;
    bool isOver = false;
    bool isFirst = true;
    while (!isOver) {
        try {
            const auto message = messages.next();
            isOver = !message;
            isFirst = false;
            if (message && (!filter.isGiven() || filter.takes(*message->read().record)))
                worst = std::max(worst, showHex(*message, session));
        } catch (const Refusal& refusal) {
            if (std::exchange(isFirst, false) && !filter.isGiven() && isShownAsWhole(messages, path)) {
                const QByteArray bytes = messages.whole();
                const InputFormat& format = options.format;
                return showHex({path,
                                inputName(path),
                                {1, 0, 1, 1, formToDissect(bytes, format), bytes, format.frame},
                                format},
                               session);
            }
            Finding finding = refusal.finding();
            // It would point to this command.
            if (isHexHint(finding.hint))
                finding.hint.clear();
            complain(finding, session);
            worst = std::max(worst, refusal.finding().status);
        }
    }
    return worst;
}

Status show(const Arguments& arguments, Session& session)
{
    session.keepFindingsForJson();
    const QString path = arguments.text("FILE");
    Progress progress(session, {path});
    const Messages::Options options{messagesOf(arguments), inputFormatOf(arguments), &progress};
    progress.next(inputName(path));
    MessageFilter filter(arguments);
    if (arguments.isGiven("--hex"))
        return showHexOfAll(path, options, filter, session);
    bool isFirst = true;
    return forEachMessage(
        path, options,
        [&](const InputMessage& message) {
            if (showTree(message, filter, isFirst, session))
                isFirst = false;
            session.out().flush();
        },
        [&](const Finding& finding) { complain(finding, session); });
}

} // namespace

Command showCommand()
{
    CommandTable table;
    table.name = "show";
    table.summary = "Show what is in a document.";
    table.arguments = {required(argument("FILE", fileValue(), "The document, or - for standard input."))};
    table.options = {messageOption(), whereOption(),
                     flag({"--hex"}, "Show the bytes of the binary form and what they mean.")};
    table.readsMessages = true;
    table.examples = {{"%1 show request.xml", "The document as a tree, with types and what is not set."},
                      {"%1 show week.rec --where 'Type=Reply and DF_Params'",
                       "Only the replies with DF_Params of a recording."},
                      {"%1 show --hex request.bin", "Every byte of a binary document, explained."}};
    return {table, show};
}

} // namespace routermsg
