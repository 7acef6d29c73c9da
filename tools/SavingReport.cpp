// SPDX-License-Identifier: MIT
#include "SavingReport.h"

#include "Saving.h"

namespace routermsg {

using namespace ROUTERDOCUMENTS;

SavingReport::SavingReport(const QString& path, Session& session) : m_path(path), m_session(session) {}

void SavingReport::add(const Finding& finding)
{
    if (m_session.format() == Format::Json) {
        json().AddItem(finding.toJson());
        output().flush();
    } else {
        m_session.complain(finding);
    }
}

void SavingReport::addFile(const QString& key, const QJsonObject& file) { m_files[key] = file; }

void SavingReport::addList(const QString& key, const std::function<void(LargeJson&)>& addItems)
{
    m_lists[key] = addItems;
}

Status SavingReport::run(const std::function<Status()>& work)
{
    const Status status = attempt(work);
    end();
    return status;
}

Status SavingReport::attempt(const std::function<Status()>& work)
{
    try {
        return work();
    } catch (const Refusal& refusal) {
        add(refusal.finding());
        return refusal.finding().status;
    } catch (const OutputError& error) {
        // Where the JSON goes, it cannot be told.
        if (m_session.format() != Format::Json || !isToStandardOutput() || error.isBrokenPipe())
            throw;
        add(Finding::ofFile(outputName(m_path), QString::fromUtf8(error.what())));
        return Failed;
    }
}

Output& SavingReport::output() { return isToStandardOutput() ? m_session.err() : m_session.out(); }

LargeJson& SavingReport::json()
{
    if (!m_json) {
        m_json.emplace(output().writer());
        m_json->BeginList(QStringLiteral("findings"));
    }
    return *m_json;
}

void SavingReport::end()
{
    if (m_session.format() == Format::Json) {
        json().EndList();
        for (auto list = m_lists.constBegin(); list != m_lists.constEnd(); ++list) {
            json().BeginList(list.key());
            list.value()(json());
            json().EndList();
        }
        for (auto file = m_files.constBegin(); file != m_files.constEnd(); ++file)
            json().Add(file.key(), file.value());
        json().End();
    } else if (!m_text.isEmpty() && !m_session.isQuiet() && !isToStandardOutput()) {
        m_session.out().writeLine(m_text);
    }
}

} // namespace routermsg
