// SPDX-License-Identifier: MIT
#include "Messages.h"

#include "HexHint.h"
#include "InputFiles.h"
#include "Progress.h"
#include "documents/DocumentError.h"
#include "documents/UnknownForm.h"

#include <QtCore/QBuffer>

#include <algorithm>
#include <memory>
#include <utility>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

// A place that says nothing stays so in a document that is the only one.
MODELKIT::Place InputMessage::placeInInput(const MODELKIT::Place& place) const
{
    const bool saysNothing = recorded.number == 1 && place.line <= 0 && place.offset < 0;
    return saysNothing ? place : recorded.PlaceInRecording(place);
}

MODELKIT::Place InputMessage::placeInInput(const DocumentError& error) const
{
    const MODELKIT::Place& place = error.GetPlace();
    return place.offset < 0 ? placeInInput(place) : recorded.PlaceInRecording(error);
}

namespace {

// What is wrong with a place in an input. In texts it is a line, otherwise an offset.
Finding problemOf(const DocumentError& error, const QString& name)
{
    Finding finding = Finding::of(error, name);
    if (error.GetKind() != MODELKIT::Failure::NotWellFormed)
        finding.place.line = 0;
    finding.isNoMessage = true;
    if (const auto form = error.GetOtherForm())
        finding.hint = QStringLiteral("--from %1 reads it; without --from, messages of all forms are read.")
                           .arg(NameOf(*form));
    return finding;
}

// That the input is in another form than the user says; empty when it is not.
QString otherForm(const QByteArray& head, const InputFormat& format)
{
    if (!format.form || format.frame || !WhyNoForm(head).isEmpty())
        return QString();
    const Form found = FormOfContent(head);
    const bool isSame = IsBinary(found)      ? IsBinary(*format.form)
                        : found == Form::Xml ? format.form == Form::Xml
                                             : format.form == Form::Json || format.form == Form::JsonLines;
    return isSame ? QString()
                  : QStringLiteral("It looks like %1, but --from says %2.")
                        .arg(NameOf(found), NameOf(*format.form));
}

} // namespace

Document InputMessage::read(Validation validation) const
{
    try {
        return ReadDocument(recorded.bytes, format.reading(recorded, validation));
    } catch (const DocumentError& error) {
        throw Refusal(findingOf(error));
    }
}

Finding InputMessage::findingOf(const DocumentError& error) const
{
    reject();
    Finding finding = Finding::of(error, name);
    const QString file = finding.place.file;
    finding.place = placeInInput(error);
    finding.place.file = file;
    QString hint = hexHint(error, finding.place, path, recorded.number, format);
    if (hint.isEmpty())
        hint = otherForm(recorded.bytes, format);
    if (!hint.isEmpty())
        finding.hint = hint;
    return finding;
}

void InputMessage::reject() const
{
    if (reader)
        reader->Reject(recorded);
}

Messages::Messages(const QString& path, const Options& options)
    : m_path(path), m_name(inputName(path)), m_options(options), m_file(path),
      m_reader(m_file, options.format.recording())
{}

std::optional<InputMessage> Messages::next()
{
    if (!m_hasBegun) {
        m_hasBegun = true;
        begin();
    }
    while (!m_isOver) {
        Step step = take();
        if (step.error) {
            if (!isTold(*step.error))
                continue;
            m_hasErrors = true;
            if (step.error->GetKind() == MODELKIT::Failure::InputOutput)
                m_file.refuse();
            Finding problem = problemOf(*step.error, m_name);
            if (!m_remedy.isEmpty())
                problem.hint = m_remedy;
            throw Refusal(problem);
        }
        if (!step.message) {
            m_isOver = true;
            if (m_count < m_options.range.first && !(m_count == 0 && m_hasErrors))
                throw Refusal(noSuchMessage(m_name, m_options.range, m_count));
            continue;
        }
        if (++m_count < m_options.range.first)
            continue;
        m_isOver = m_count >= m_options.range.last;
        const QString name = m_count == 1 ? m_name : m_name + QLatin1Char('#') + QString::number(m_count);
        return InputMessage{m_path, name, std::move(*step.message), m_options.format, &m_reader};
    }
    return std::nullopt;
}

bool Messages::isTold(const DocumentError& error) const
{
    const bool isOutside = m_count < m_options.range.first && !m_options.range.isWhole();
    // A message that is too large does not count, so the numbers of those behind it are others.
    const auto kind = error.GetKind();
    return !isOutside || m_isWithoutMessage || kind == MODELKIT::Failure::InputOutput
           || kind == MODELKIT::Failure::InputTooLarge;
}

QByteArray Messages::whole()
{
    if (!m_file.isStream() && m_path != QLatin1String("-"))
        return readInput(m_path);
    for (QByteArray bytes; m_file.hasAll() && m_file.take(1 << 16, bytes);)
        bytes.clear();
    if (!m_file.hasAll())
        throw Refusal(
            Finding::ofFile(m_name, QStringLiteral("The input is too large to be shown as a whole.")));
    return m_file.beginning();
}

// Looks for a message. Errors in front of it are kept: if there is no message at all, they do not explain the
// input as well as reading it as one document does.
void Messages::begin()
{
    constexpr int mostErrors = 100;
    do {
        m_ahead.push_back(read());
    } while (m_ahead.back().error && m_ahead.size() < mostErrors);
    m_isWithoutMessage = !m_ahead.back().message && !m_ahead.back().error;
    const bool isBroken = std::any_of(m_ahead.begin(), m_ahead.end(), [](const Step& step) {
        return step.error && step.error->GetKind() == MODELKIT::Failure::InputOutput;
    });
    if (m_ahead.front().message)
        m_file.forget();
    if (!m_isWithoutMessage || isBroken)
        return;
    if (m_ahead.front().error)
        m_remedy = remedy();
    if (m_options.format.frame || isJsonOnSeveralLines())
        return;
    if (!m_file.hasAll()) {
        explainByHead();
        return;
    }
    const QByteArray bytes = m_file.beginning();
    const Form form = m_options.format.form.value_or(FormOfContent(bytes));
    const auto errors = std::exchange(m_ahead, {});
    m_isOver = true;
    try {
        ReadDocument(bytes, {m_options.format.form, Validation::Off, std::nullopt, m_options.format.info});
    } catch (const DocumentError& error) {
        // A text that is cut off is a message, too: its reader may find more that is wrong.
        if (IsBinary(form) || !(m_options.format.form || WhyNoForm(bytes).isEmpty())
            || error.GetKind() == MODELKIT::Failure::InputTooLarge) {
            Finding finding = Finding::of(error, m_name);
            const QString hint = hintOf(error);
            if (!hint.isEmpty())
                finding.hint = hint;
            throw Refusal(finding);
        }
    }
    m_isOver = false;
    // What can be read as a document is a message, except for a binary form: bytes behind it are not read.
    if (IsBinary(form)) {
        m_ahead = errors;
        return;
    }
    m_isWithoutMessage = false;
    m_ahead.push_back({RecordedMessage{1, 0, 1, 1, form, bytes}, {}});
    m_ahead.push_back({});
}

QString Messages::hintOf(const DocumentError& error) const
{
    if (!m_remedy.isEmpty())
        return m_remedy;
    QString hint = hexHint(error, error.GetPlace(), m_path, 1, m_options.format);
    return hint.isEmpty() ? otherForm(m_file.head(), m_options.format) : hint;
}

QString Messages::remedy() const
{
    if (isJsonOnSeveralLines())
        return QStringLiteral("--from json reads it.");
    if (!isInOtherByteOrder())
        return QString();
    const bool isLittle = m_options.format.inOtherByteOrder().frame->byteOrder == QDataStream::LittleEndian;
    return QStringLiteral("--byte-order %1 reads it.")
        .arg(isLittle ? QStringLiteral("little") : QStringLiteral("big"));
}

// Whether the input begins with a message when it is read in the other byte order.
bool Messages::isInOtherByteOrder() const
{
    const auto form = m_options.format.form;
    if (form && !IsBinary(*form))
        return false;
    const InputFormat other = m_options.format.inOtherByteOrder();
    QByteArray bytes = m_file.beginning();
    QBuffer buffer(&bytes);
    try {
        RecordingReader reader(buffer, other.recording());
        RecordedMessage message;
        if (!reader.ReadNext(message))
            return false;
        ReadDocument(message.bytes, other.reading(message));
        return true;
    } catch (const DocumentError&) {
        return false;
    }
}

// Whether the input begins with JSON that does not end on its line, although --from says so.
bool Messages::isJsonOnSeveralLines() const
{
    if (m_options.format.form != Form::JsonLines)
        return false;
    QByteArray bytes = m_file.beginning();
    QBuffer buffer(&bytes);
    try {
        RecordingReader reader(buffer, {Form::Json});
        RecordedMessage message;
        if (!reader.ReadNext(message) || !message.bytes.contains('\n'))
            return false;
        ReadDocument(message.bytes, {Form::Json, Validation::Off, std::nullopt, m_options.format.info});
        return true;
    } catch (const DocumentError&) {
        return false;
    }
}

// Explains an input without a message that is too large to keep.
void Messages::explainByHead()
{
    const QString reason = m_options.format.form ? QString() : WhyNoForm(m_file.head());
    if (!reason.isEmpty())
        m_ahead = {{{}, DocumentError(MODELKIT::Failure{MODELKIT::Failure::NotABinaryForm, reason, {}})}, {}};
}

Messages::Step Messages::read()
{
    Step step;
    try {
        RecordedMessage message;
        if (m_reader.ReadNext(message))
            step.message = std::move(message);
    } catch (const DocumentError& error) {
        step.error = error;
    }
    if (m_options.progress)
        m_options.progress->reached(m_file.count());
    return step;
}

Messages::Step Messages::take()
{
    if (m_ahead.empty())
        return read();
    Step step = std::move(m_ahead.front());
    m_ahead.pop_front();
    return step;
}

Finding noSuchMessage(const QString& input, const MessageRange& range, qint64 count)
{
    if (count > 0)
        return Finding::ofFile(
            input, QStringLiteral("There is no message %1; the last one is %2.").arg(range.first).arg(count));
    // As for a small input, which is read as one document.
    Finding finding = Finding::ofFile(input, QStringLiteral("The input holds no message."));
    finding.status = Found;
    return finding;
}

Status forEachMessage(const QString& path, const Messages::Options& options,
                      const std::function<void(const InputMessage&)>& onMessage,
                      const std::function<void(const Finding&)>& onProblem)
{
    Status worst = Fine;
    // Whether there is more to do.
    const auto attempt = [&](const auto& step) {
        try {
            return step();
        } catch (const OutputRefusal&) {
            throw;
        } catch (const Refusal& refusal) {
            onProblem(refusal.finding());
            worst = std::max(worst, refusal.finding().status);
            return true;
        }
    };
    std::unique_ptr<Messages> messages;
    attempt([&] {
        messages = std::make_unique<Messages>(path, options);
        return true;
    });
    while (messages && attempt([&] {
               const auto message = messages->next();
               if (message)
                   onMessage(*message);
               return message.has_value();
           })) {
    }
    return worst;
}

} // namespace routermsg
