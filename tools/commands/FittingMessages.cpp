// SPDX-License-Identifier: MIT
#include "FittingMessages.h"

#include "InputFile.h"
#include "Progress.h"
#include "Session.h"
#include "SharedOptions.h"

#include <algorithm>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

FittingMessages::FittingMessages(const Arguments& arguments, Session& session)
    : m_session(session), m_filter(arguments),
      m_inputs(inputsOf(arguments)), m_options{messagesOf(arguments), inputFormatOf(arguments)}
{}

Status FittingMessages::forEach(const std::function<void(const InputMessage&, const Document&)>& onMessage)
{
    Status worst = Fine;
    const auto addProblem = [&](const Finding& problem) {
        m_session.complainInLine(problem);
        worst = std::max(worst, problem.status);
    };
    for (const Finding& problem : m_inputs.problems)
        addProblem(problem);
    Progress progress(m_session, m_inputs.files);
    Messages::Options options = m_options;
    options.progress = &progress;
    for (const QString& file : m_inputs.files) {
        progress.next(inputName(file));
        forEachMessage(
            file, options,
            [&](const InputMessage& message) {
                const Document document = message.read();
                if (m_filter.takes(*document.record))
                    onMessage(message, document);
                m_session.out().flush();
            },
            addProblem);
    }
    return worst;
}

} // namespace routermsg
