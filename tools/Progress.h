// SPDX-License-Identifier: MIT
/// \file
/// The progress display.
#pragma once

#include <QtCore/QString>

#include <memory>

namespace routermsg {

class ProgressBar;
class Session;

/// Shows how far the work is, as soon as it takes longer than a second, if standard error is a terminal.
/// Output that is written meanwhile does not mix with it.
///
/// \code
/// Progress progress(session, files.size());
/// for (const QString& file : files) {
///     progress.next(file);
///     ...
/// }
/// \endcode
class Progress
{
public:
    /// \param total the number of steps
    Progress(Session& session, int total);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    /// Removes the display.
    ~Progress();

    /// Begins a step.
    /// \param name what it works on
    void next(const QString& name);

private:
    Session& m_session;
    std::unique_ptr<ProgressBar> m_bar;
};

} // namespace routermsg
