// SPDX-License-Identifier: MIT
#include "Arguments.h"

#include "Suggestions.h"
#include "UsageError.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

#include <algorithm>
#include <stdexcept>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

const OptionTable* find(const QVector<OptionTable>& rows, const QString& name)
{
    const auto found = std::find_if(rows.begin(), rows.end(),
                                    [&](const OptionTable& row) { return row.names.contains(name); });
    return found == rows.end() ? nullptr : &*found;
}

bool looksLikeOption(const QString& word)
{
    const QChar dash = QLatin1Char('-');
    return word.size() > 1 && word.at(0) == dash
           && !(word.at(1) >= QLatin1Char('0') && word.at(1) <= QLatin1Char('9'));
}

} // namespace

// --- reading

class Arguments::Reader
{
public:
    Reader(Arguments& arguments, const QStringList& words)
        : m_arguments(arguments), m_options(arguments.m_table.options), m_words(words)
    {}

    void read()
    {
        bool hasOptions = true;
        while (!m_words.isEmpty()) {
            const QString word = m_words.takeFirst();
            if (!hasOptions || !looksLikeOption(word))
                readArgument(word);
            else if (word == QLatin1String("--"))
                hasOptions = false;
            else if (word.startsWith(QLatin1String("--")))
                readLongOption(word);
            else
                readShortOptions(word);
        }
    }

private:
    void readArgument(const QString& word)
    {
        for (const OptionTable& argument : m_arguments.m_table.arguments)
            if (argument.isRepeatable || !m_arguments.m_values.contains(argument.lastName()))
                return keep(argument, word);
        m_arguments.m_extras += word;
    }

    void readLongOption(const QString& word)
    {
        const OptionTable* option = find(m_options, optionName(word));
        const bool hasValue = word.contains(QLatin1Char('='));
        const QString value = word.section(QLatin1Char('='), 1);
        if (!option)
            m_arguments.m_extras += word;
        else if (option->takesValue())
            hasValue ? keep(*option, value) : keepNextWord(*option);
        else if (hasValue)
            noteMistake(QStringLiteral("The option %1 takes no value."), *option);
        else
            keep(*option, QString());
    }

    // Letter by letter. The letters after an option that takes a value are its value.
    void readShortOptions(const QString& word)
    {
        for (int i = 1; i < word.size(); ++i) {
            const OptionTable* option = find(m_options, QLatin1Char('-') + word.mid(i, 1));
            if (!option) {
                m_arguments.m_extras += QLatin1Char('-') + word.mid(i);
                return;
            }
            if (option->takesValue()) {
                i + 1 < word.size() ? keep(*option, word.mid(i + 1)) : keepNextWord(*option);
                return;
            }
            keep(*option, QString());
        }
    }

    void keepNextWord(const OptionTable& option)
    {
        if (m_words.isEmpty())
            noteMistake(QStringLiteral("The option %1 needs a value."), option);
        else
            keep(option, m_words.takeFirst());
    }

    void keep(const OptionTable& row, const QString& value) { m_arguments.m_values[row.lastName()] += value; }

    void noteMistake(const QString& text, const OptionTable& option)
    {
        if (m_arguments.m_mistake.isEmpty())
            m_arguments.m_mistake = text.arg(option.lastName());
    }

    Arguments& m_arguments;
    const QVector<OptionTable>& m_options;
    QStringList m_words;
};

Arguments::Arguments(const CommandTable& table, const QStringList& words) : m_table(table)
{
    Reader(*this, words).read();
}

// --- values

const OptionTable& Arguments::row(const char* name) const
{
    const QString text = QString::fromLatin1(name);
    for (const auto* rows : {&m_table.options, &m_table.arguments})
        if (const OptionTable* found = find(*rows, text))
            return *found;
    throw std::logic_error(std::string("There is no row ") + name + " in the table of the command.");
}

QStringList Arguments::texts(const char* name) const { return m_values.value(row(name).lastName()); }

int Arguments::choiceIndex(const char* name) const
{
    return static_cast<int>(row(name).choices.indexOf(text(name)));
}

// --- mistakes

void Arguments::requireSense() const
{
    if (!m_mistake.isEmpty())
        refuse(m_mistake);
    const QVector<OptionTable> rows = m_table.arguments + m_table.options;
    for (const OptionTable& one : rows)
        requireGoodValues(one);
    if (!m_extras.isEmpty())
        refuseExtra(m_extras.constFirst());
    for (const OptionTable& one : rows)
        if (one.isRequired && !m_values.contains(one.lastName()))
            refuse(QStringLiteral("The command %1 needs %2: %3").arg(m_table.name, one.lastName(), one.text));
}

void Arguments::requireGoodValues(const OptionTable& row) const
{
    const QStringList values = m_values.value(row.lastName());
    if (row.takesValue() && !row.isRepeatable && values.size() > 1)
        refuse(QStringLiteral("The option %1 is given more than once.").arg(row.lastName()));
    for (const QString& value : values)
        if (!row.choices.isEmpty() && !row.choices.contains(value))
            refuse(QStringLiteral("%1 is no value of %2.%3%4")
                       .arg(Quoted(value), row.lastName(), DidYouMean(value, row.choices),
                            possible(row.choices)));
}

void Arguments::refuseExtra(const QString& word) const
{
    if (!word.startsWith(QLatin1Char('-')))
        refuse(
            QStringLiteral("The command %1 takes no further argument %2.").arg(m_table.name, Quoted(word)));
    const QString name = optionName(word);
    QString meant = DidYouMean(name, namesOf(m_table.options));
    for (const OptionTable& argument : m_table.arguments)
        if (meant.isEmpty())
            meant = didYouMeanWord(QString(name).remove(QLatin1Char('-')), argument.suggestions);
    refuse(QStringLiteral("The command %1 has no option %2.%3").arg(m_table.name, name, meant));
}

void Arguments::refuse(const QString& text) const
{
    throw UsageError(text + QStringLiteral(" Try: %1 --help").arg(lineBegin(m_table)));
}

} // namespace routermsg
