// SPDX-License-Identifier: MIT
/// \file
/// The progress display.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>

namespace routermsg {

class ProgressBar;
class Session;

/// Shows how far the work is, as soon as it takes longer than a second, if standard error is a terminal.
/// Output that is written meanwhile does not mix with it.
///
/// \code
/// Progress progress(session, files);
/// for (const QString& file : files) {
///     progress.next(inputName(file));
///     forEachMessage(file, {messages, form, &progress}, ...);
/// }
/// \endcode
class Progress
{
public:
    /// \param inputs all that is going to be read. When all are files, their size tells how much work is
    /// left.
    Progress(Session& session, const QStringList& inputs);
    /// For a thread that does a part of the work, at the same time as others. It is gone before \a whole.
    explicit Progress(Progress* whole);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    /// Removes the display.
    ~Progress();

    /// Begins to read the next input.
    /// \param name what is shown
    void next(const QString& name);
    /// So many bytes of the input have been read.
    void reached(qint64 bytes);

private:
    // None for a part.
    Session* m_session = nullptr;
    std::shared_ptr<ProgressBar> m_bar;
    // Of the current input.
    qint64 m_reached = 0;
};

} // namespace routermsg
