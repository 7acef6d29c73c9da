// SPDX-License-Identifier: MIT
/// \file
/// How the differences between documents are displayed.
#pragma once

#include "Session.h"
#include "documents/Difference.h"

#include <QtCore/QString>

#include <memory>

namespace routermsg {

/// What is compared: a message of each input.
struct ComparedMessages
{
    /// The file in both folders when folders are compared; otherwise empty.
    QString file;
    /// The number of the messages in their recordings.
    qint64 message = 1;

    /// "file#2: ", without the parts that go without saying.
    QString prefix() const;
};

/// Writes differences as they are found.
class DiffReport
{
public:
    virtual ~DiffReport() = default;
    virtual void add(const ComparedMessages& messages, const ROUTERDOCUMENTS::Difference& difference) = 0;
    /// A file that is only in one of the folders.
    /// \param kind Removed or Added
    /// \param folder the folder that has it
    virtual void addFile(const QString& file, ROUTERDOCUMENTS::Difference::Kind kind,
                         const QString& folder) = 0;
    /// \param failures how many messages and files could not be compared
    virtual void end(qint64 differences, qint64 failures) = 0;
};

/// As text or JSON.
std::unique_ptr<DiffReport> makeDiffReport(Session& session);

} // namespace routermsg
