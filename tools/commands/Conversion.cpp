// SPDX-License-Identifier: MIT
#include "Conversion.h"

#include "Acceptance.h"
#include "InputFile.h"
#include "Progress.h"
#include "SharedOptions.h"

#include "modelkit/ReadingReport.h"

#include <algorithm>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

OptionTable invalidOption() { return flag({"--invalid"}, "Convert documents even if they are not valid."); }

OptionTable acceptLossOption(const QString& otherwise)
{
    return flag({"--accept-loss"}, QStringLiteral("Report success although something is lost by reading or "
                                                  "writing. What is lost is still listed. ")
                                       + otherwise);
}

std::optional<Form> formToWrite(const Arguments& arguments, const QString& path)
{
    const auto form = formOf(arguments, "--to");
    return form ? form : FormOfFileName(path);
}

Finding nothingFits(const QString& name)
{
    Finding finding =
        Finding::ofFile(name, QStringLiteral("No message fits --where, so nothing is written."));
    finding.status = Found;
    return finding;
}

Conversion::Conversion(const Arguments& arguments, FindingReceiver& report, Progress& progress, Copies copies)
    : m_report(report),
      m_progress(progress), m_options{messagesOf(arguments), inputFormatOf(arguments), &progress},
      m_copies(copies),
      m_validation(copies == Copies::All || arguments.isGiven("--invalid") ? Validation::Off
                                                                           : Validation::On),
      m_isLossAccepted(arguments.isGiven("--accept-loss")), m_filter(arguments)
{}

void Conversion::read(const QString& path, const std::function<void(const ConvertedMessage&)>& write)
{
    m_paths += path;
    m_inputs += FileSummary{inputName(path), Form::Xml, 0, std::nullopt, 0};
    FileSummary& input = m_inputs.last();
    if (m_filter.isGiven())
        input.leftOut = 0;
    m_progress.next(input.name);
    forEachMessage(
        path, m_options, [&](const InputMessage& message) { take(message, write, input); },
        [this](const Finding& finding) { addProblem(finding); });
}

void Conversion::addProblem(const Finding& finding)
{
    m_report.add(finding);
    m_worst = std::max(m_worst, finding.status);
}

void Conversion::take(const InputMessage& message, const std::function<void(const ConvertedMessage&)>& write,
                      FileSummary& input)
{
    // A message that does not fit need not be valid.
    if (m_filter.isGiven() && !m_filter.takes(*message.read().record)) {
        ++*input.leftOut;
        return;
    }
    const MODELKIT::ReadingReport accepted;
    const Document document = message.read(m_validation);
    const QVector<Finding> losses =
        m_copies == Copies::All ? QVector<Finding>() : lostByReading(accepted, message);
    for (const Finding& loss : losses)
        m_report.add(loss);
    m_isLossy |= !losses.isEmpty();
    write({message, document, losses.isEmpty()});
    input.isMixed |= input.messages > 0 && input.form != document.form;
    input.form = document.form;
    ++input.messages;
    input.size += document.size;
}

bool Conversion::hasMessages() const
{
    return std::any_of(m_inputs.begin(), m_inputs.end(),
                       [](const FileSummary& input) { return input.messages > 0; });
}

void Conversion::reportNothing()
{
    if (m_worst != Fine)
        return;
    addProblem(nothingFits(m_inputs.size() == 1 ? m_inputs.constFirst().name : QString()));
}

std::optional<FileSummary> Conversion::finish(MessageWriter& writer, const Target& target)
{
    m_isLossy |= !writer.isComplete();
    const QString reason = reasonNotToWrite(target);
    if (!reason.isEmpty()) {
        m_report.add(Finding::ofFile(target.path, reason));
        return std::nullopt;
    }
    FileSummary output = writer.finish();
    output.isComplete = isComplete();
    return output;
}

FileSummary Conversion::finish(MessageWriter& writer)
{
    m_isLossy |= !writer.isComplete();
    return writer.finish();
}

// What the file to write holds now is never replaced by a part of it. Empty when the file is written.
QString Conversion::reasonNotToWrite(const Target& target) const
{
    if (!target.isFile)
        return {};
    const bool isSame = std::any_of(m_paths.begin(), m_paths.end(),
                                    [&](const QString& path) { return isSameFile(path, target.path); });
    if (m_worst == Failed || (m_worst == Found && isSame))
        return QStringLiteral("The file is not written, because messages of the input are missing.");
    if (m_isLossy && !m_isLossAccepted && isSame)
        return QStringLiteral("The file is not written, because it is the input, and what is lost would be "
                              "lost for good. Write another file, or use --accept-loss.");
    return {};
}

Status Conversion::status() const
{
    return m_isLossy && !m_isLossAccepted ? std::max(m_worst, Found) : m_worst;
}

} // namespace routermsg
