// SPDX-License-Identifier: MIT
/// \file
/// What a command that saves a document tells about it.
#pragma once

#include "Finding.h"
#include "Session.h"
#include "documents/LargeJson.h"

#include <QtCore/QJsonObject>
#include <QtCore/QMap>
#include <QtCore/QString>

#include <functional>
#include <optional>

namespace routermsg {

/// Tells findings as soon as they are known, and about the files in the end.
///
/// As text, findings go to standard error and the files to standard output, unless the document goes there.
/// As JSON, all is one object for every outcome. It goes to standard output, or if the document goes there,
/// to standard error. It begins when there is something to tell.
class SavingReport : public FindingReceiver
{
public:
    /// \param path the file that is written; "-" is standard output
    SavingReport(const QString& path, Session& session);
    SavingReport(const SavingReport&) = delete;
    SavingReport& operator=(const SavingReport&) = delete;

    void add(const Finding& finding) override;
    void addFile(const QString& key, const QJsonObject& file);
    /// A list for the JSON. Its items are added in the end.
    void addList(const QString& key, const std::function<void(ROUTERDOCUMENTS::LargeJson&)>& addItems);
    void setText(const QString& text) { m_text = text; }

    /// Does the work and ends the report. A Refusal becomes a finding, and so does standard output that
    /// cannot take the document. Other exceptions are passed on. \returns what \a work returns, or the status
    /// of the exception.
    Status run(const std::function<Status()>& work);

private:
    bool isToStandardOutput() const { return m_path == QLatin1String("-"); }
    /// Where the JSON goes.
    Output& output();
    ROUTERDOCUMENTS::LargeJson& json();
    Status attempt(const std::function<Status()>& work);
    void end();

    QString m_path;
    Session& m_session;
    std::optional<ROUTERDOCUMENTS::LargeJson> m_json;
    QJsonObject m_files;
    QMap<QString, std::function<void(ROUTERDOCUMENTS::LargeJson&)>> m_lists;
    QString m_text;
};

} // namespace routermsg
