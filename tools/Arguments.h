// SPDX-License-Identifier: MIT
/// \file
/// The words behind a command, read by its table.
#pragma once

#include "CommandTables.h"

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

namespace routermsg {

/// What words give for the rows of a table. Options and arguments may stand in any order. Behind "--" all
/// words are arguments; everywhere "-" is one, and so is a negative number.
class Arguments
{
public:
    /// Reads all words; what makes no sense is told by requireSense().
    Arguments(const CommandTable& table, const QStringList& words);

    /// \name What was given for a row
    /// The row is called by any of its names: "--quiet" or "-q", "FILE".
    /// \throws std::logic_error when the table has no such row
    /// @{
    bool isGiven(const char* name) const { return !texts(name).isEmpty(); }
    /// The value, or an empty text.
    QString text(const char* name) const { return texts(name).value(0); }
    /// All values; of an option without value an empty text for each time it is given.
    QStringList texts(const char* name) const;
    /// The value as an enumerator, of a row whose choices are the names of the enumerators in their order.
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
    /// When the words do not fit the table.
    void requireSense() const;
    /// Says the text, and advises to look at the help of the command.
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
    // What the table does not have.
    QStringList m_extras;
    // The first option that has no value but needs one, or the other way round.
    QString m_mistake;
};

} // namespace routermsg
