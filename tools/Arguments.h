// SPDX-License-Identifier: MIT
/// \file
/// The words after a command, read according to its table.
#pragma once

#include "CommandTables.h"

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

namespace routermsg {

/// The values that words give to the rows of a table. Options and arguments may be in any order. All words
/// after "--" are arguments. "-" and negative numbers are always arguments.
class Arguments
{
public:
    /// Reads all words. requireSense() reports mistakes.
    Arguments(const CommandTable& table, const QStringList& words);

    /// \name The values of a row
    /// Any name of the row will do: "--quiet" or "-q", "FILE".
    /// \throws std::logic_error when the table has no such row
    /// @{
    bool isGiven(const char* name) const { return !texts(name).isEmpty(); }
    /// The value, or an empty text.
    QString text(const char* name) const { return texts(name).value(0); }
    /// All values. An option that takes no value has an empty text for each time it is given.
    QStringList texts(const char* name) const;
    /// The value as an enumerator. The choices of the row are the names of the enumerators, in order.
    template <class Enum>
    std::optional<Enum> choice(const char* name) const
    {
        const auto index = choiceIndex(name);
        return index < 0 ? std::nullopt : std::make_optional(static_cast<Enum>(index));
    }
    /// @}

    /// \name Mistakes
    /// \throws UsageError
    /// @{
    /// Throws if the words do not fit the table.
    void requireSense() const;
    /// The words that fit no row.
    const QStringList& extras() const { return m_extras; }
    /// Throws the text and a hint to the help of the command.
    [[noreturn]] void refuse(const QString& text) const;
    /// @}

private:
    class Reader;

    const OptionTable& row(const char* name) const;
    int choiceIndex(const char* name) const;
    void requireGoodValues(const OptionTable& row) const;
    [[noreturn]] void refuseExtra(const QString& word) const;

    const CommandTable m_table;
    // By the last name of the row.
    QHash<QString, QStringList> m_values;
    QStringList m_extras;
    // About the first option that lacks its value, or has one although it takes none.
    QString m_mistake;
};

} // namespace routermsg
