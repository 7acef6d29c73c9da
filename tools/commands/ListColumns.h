// SPDX-License-Identifier: MIT
/// \file
/// The columns of the command `list`.
#pragma once

#include "Messages.h"
#include "documents/Document.h"

#include <QtCore/QJsonValue>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <memory>

namespace routermsg {

/// A message in the list.
struct ListedMessage
{
    const InputMessage& message;
    const ROUTERDOCUMENTS::Document& document;
};

class ListColumn
{
public:
    ListColumn(const QString& title, int width, bool isNumber)
        : m_title(title), m_width(width), m_isNumber(isNumber)
    {}
    ListColumn(const ListColumn&) = delete;
    ListColumn& operator=(const ListColumn&) = delete;
    virtual ~ListColumn() = default;

    /// As in --columns; also the key in JSON.
    const QString& title() const { return m_title; }
    /// The usual number of characters; longer values are possible.
    int width() const { return m_width; }
    /// Whether it holds numbers, which stand on the right.
    bool isNumber() const { return m_isNumber; }

    /// The values in the message as they are, not escaped; null for a null text. None when nothing is set.
    virtual QStringList values(const ListedMessage& listed) const = 0;
    /// The same for programs; undefined when nothing is set.
    virtual QJsonValue json(const ListedMessage& listed) const = 0;

private:
    QString m_title;
    int m_width;
    bool m_isNumber;
};

using ListColumns = std::vector<std::unique_ptr<const ListColumn>>;

/// The names of the columns that are no members.
QStringList specialColumns();
/// The names of the columns that are listed when nothing else is asked for.
QStringList usualColumns();

/// \param longestFile the length of the longest name of an input
/// \throws UsageError for a name that is neither a special column nor the path of a member, or that is given
/// twice.
ListColumns listColumns(const QStringList& names, int longestFile);

} // namespace routermsg
