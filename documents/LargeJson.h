// SPDX-License-Identifier: MIT
/// \file
/// Results as JSON that are too many to be kept until all are known.
#pragma once

#include "documents/Export.h"

#include <QtCore/QJsonValue>
#include <QtCore/QString>

#include <functional>

namespace ROUTERDOCUMENTS {

/// A JSON object that is handed out while it is made, with every item of its lists in a line of its own.
/// Nothing in it can steer a terminal. What the sink throws passes through; the text then ends there.
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
    /// Takes the text piece by piece.
    using Sink = std::function<void(const QString&)>;

    /// Hands the beginning to the sink.
    explicit LargeJson(const Sink& sink);
    LargeJson(const LargeJson&) = delete;
    LargeJson& operator=(const LargeJson&) = delete;

    /// A member of the object.
    void Add(const QString& key, const QJsonValue& value);
    /// A member that is a list; until EndList() only items may be added.
    void BeginList(const QString& key);
    void AddItem(const QJsonValue& item);
    void EndList();
    /// The end of the object.
    void End();

private:
    void beginMember(const QString& key);

    Sink m_sink;
    bool m_isFirstMember = true;
    bool m_isFirstItem = true;
};

} // namespace ROUTERDOCUMENTS
