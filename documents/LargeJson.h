// SPDX-License-Identifier: MIT
/// \file
/// JSON that is too large to be kept in memory.
#pragma once

#include "documents/Export.h"

#include <QtCore/QJsonValue>
#include <QtCore/QString>

#include <functional>

namespace ROUTERDOCUMENTS {

/// Writes a JSON object piece by piece, with every list item on a line of its own. Control characters are
/// escaped, so the text is safe to display. Exceptions of the sink are passed on; the text then ends there.
///
/// \code
/// LargeJson json([](const QString& text) { std::cout << text.toStdString(); });
/// json.BeginList("differences");
/// json.AddItem(difference);
/// json.EndList();
/// json.Add("count", 1);
/// json.End();
/// \endcode
class ROUTERDOCUMENTS_EXPORT LargeJson
{
public:
    /// Receives the text piece by piece.
    using Sink = std::function<void(const QString&)>;

    /// Writes the beginning of the object. Exceptions of the sink are passed on, here and by all operations.
    explicit LargeJson(const Sink& sink);
    /// Not copied: it writes one text.
    LargeJson(const LargeJson&) = delete;
    /// Not copied: it writes one text.
    LargeJson& operator=(const LargeJson&) = delete;

    /// Writes a member of the object, with that key and value.
    void Add(const QString& key, const QJsonValue& value);
    /// Begins a member that is a list. Until EndList() only items may be added.
    void BeginList(const QString& key);
    /// Writes an item of the current list.
    void AddItem(const QJsonValue& item);
    /// Ends the current list.
    void EndList();
    /// Writes the end of the object. Nothing may be added afterwards.
    void End();

private:
    void beginMember(const QString& key);

    Sink m_sink;
    bool m_isFirstMember = true;
    bool m_isFirstItem = true;
};

} // namespace ROUTERDOCUMENTS
