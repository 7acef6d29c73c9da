// SPDX-License-Identifier: MIT
/// \file
/// How far the work is.
#pragma once

#include <QtCore/QString>

#include <memory>

namespace routermsg {

class ProgressBar;
class Session;

/// Shows how far the work is, on standard error if that is a terminal, as soon as it takes longer than a
/// second. What is written meanwhile is not mixed up with it.
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
    /// Wipes it off.
    ~Progress();

    /// A step begins.
    /// \param name what it works on
    void next(const QString& name);

private:
    Session& m_session;
    std::unique_ptr<ProgressBar> m_bar;
};

} // namespace routermsg
