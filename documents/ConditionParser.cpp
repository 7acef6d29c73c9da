// SPDX-License-Identifier: MIT
#include "documents/ConditionParser.h"

#include "documents/Condition.h"
#include "documents/ConditionTokens.h"
#include "documents/DocumentError.h"
#include "documents/FoundMembers.h"
#include "documents/MemberComparison.h"
#include "documents/PathPattern.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

#include <QtCore/QStringList>

#include <algorithm>
#include <utility>
#include <vector>

namespace ROUTERDOCUMENTS {

using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::MemberInfo;

namespace {

using Clause = std::unique_ptr<const ConditionNode>;

// --- nodes

// "and" or "or".
class JoinedClauses : public ConditionNode
{
public:
    JoinedClauses(bool isAnd, std::vector<Clause> clauses) : m_isAnd(isAnd), m_clauses(std::move(clauses)) {}

    bool Holds(const IMKObject& record) const override
    {
        const auto holds = [&](const Clause& clause) { return clause->Holds(record); };
        return m_isAnd ? std::all_of(m_clauses.begin(), m_clauses.end(), holds)
                       : std::any_of(m_clauses.begin(), m_clauses.end(), holds);
    }

private:
    bool m_isAnd;
    std::vector<Clause> m_clauses;
};

class Negation : public ConditionNode
{
public:
    explicit Negation(Clause clause) : m_clause(std::move(clause)) {}

    bool Holds(const IMKObject& record) const override { return !m_clause->Holds(record); }

private:
    Clause m_clause;
};

class Existence : public ConditionNode
{
public:
    explicit Existence(const PathPattern& pattern) : m_pattern(pattern) {}

    bool Holds(const IMKObject& record) const override
    {
        bool isFound = false;
        FindMembers(record, m_pattern, [&](const FoundMember&) {
            isFound = true;
            return false;
        });
        return isFound;
    }

private:
    PathPattern m_pattern;
};

// A comparison of any member to which the path leads.
class PathComparison : public ConditionNode
{
public:
    PathComparison(const PathPattern& pattern, const QVector<MemberComparison>& comparisons)
        : m_pattern(pattern), m_comparisons(comparisons)
    {}

    bool Holds(const IMKObject& record) const override
    {
        bool fits = false;
        FindMembers(record, m_pattern, [&](const FoundMember& found) {
            fits = std::any_of(m_comparisons.begin(), m_comparisons.end(), [&](const auto& comparison) {
                return &comparison.GetMember() == found.member && comparison.Holds(found.record);
            });
            return !fits;
        });
        return fits;
    }

private:
    PathPattern m_pattern;
    QVector<MemberComparison> m_comparisons;
};

// --- parser

const QLatin1String andWord("and");
const QLatin1String orWord("or");
const QLatin1String notWord("not");

class ConditionReader
{
public:
    explicit ConditionReader(const QString& text) : m_text(text), m_tokens(TokensOf(text)) {}

    Clause read()
    {
        Clause clause = readAlternatives();
        if (current().kind == ConditionToken::Closing)
            refuse(QStringLiteral("There is no parenthesis that this one closes."));
        if (current().kind == ConditionToken::Operator)
            refuse(QStringLiteral("There is no member in front of %1.").arg(current().text));
        if (current().kind != ConditionToken::End)
            refuse(QStringLiteral("Expected \"and\", \"or\" or the end, but found %1.%2")
                       .arg(found(), DidYouMean(current().text, {andWord, orWord})));
        return clause;
    }

private:
    const ConditionToken& current() const { return m_tokens.at(m_position); }
    bool isAtWord(QLatin1String word) const
    {
        return current().kind == ConditionToken::Word && current().text == word;
    }
    bool isAtKeyword() const { return isAtWord(andWord) || isAtWord(orWord) || isAtWord(notWord); }

    Clause readAlternatives()
    {
        return readJoined(orWord, [this] { return readTerms(); });
    }

    Clause readTerms()
    {
        return readJoined(andWord, [this] { return readTerm(); });
    }

    template <class Read>
    Clause readJoined(QLatin1String word, const Read& read)
    {
        std::vector<Clause> clauses;
        clauses.push_back(read());
        while (isAtWord(word)) {
            ++m_position;
            clauses.push_back(read());
        }
        if (clauses.size() == 1)
            return std::move(clauses.front());
        return std::make_unique<JoinedClauses>(word == andWord, std::move(clauses));
    }

    Clause readTerm()
    {
        constexpr int deepest = 100;
        if (m_depth == deepest)
            refuse(QStringLiteral("The condition is nested more than %1 times.").arg(deepest));
        ++m_depth;
        Clause clause = isAtWord(notWord)                           ? readNegation()
                        : current().kind == ConditionToken::Opening ? readParentheses()
                                                                    : readMember();
        --m_depth;
        return clause;
    }

    Clause readNegation()
    {
        ++m_position;
        return std::make_unique<Negation>(readTerm());
    }

    Clause readParentheses()
    {
        const int begin = m_position++;
        Clause clause = readAlternatives();
        if (current().kind == ConditionToken::End) {
            m_position = begin;
            refuse(QStringLiteral("This parenthesis is not closed."));
        }
        if (current().kind != ConditionToken::Closing)
            refuse(QStringLiteral("Expected \"and\", \"or\" or \")\", but found %1.%2")
                       .arg(found(), DidYouMean(current().text, {andWord, orWord})));
        ++m_position;
        return clause;
    }

    Clause readMember()
    {
        if (current().kind != ConditionToken::Word || isAtKeyword())
            refuse(QStringLiteral("Expected a path, \"not\" or \"(\", but found %1.").arg(found()));
        const PathPattern pattern = readPath();
        const ConditionToken& path = m_tokens.at(m_position++);
        if (current().kind != ConditionToken::Operator)
            return std::make_unique<Existence>(pattern);
        return readComparison(pattern, path);
    }

    PathPattern readPath() const
    {
        try {
            return PathPattern(current().text);
        } catch (const InvalidMemberPath& error) {
            refuse(error.GetText());
        }
    }

    Clause readComparison(const PathPattern& pattern, const ConditionToken& path)
    {
        const auto& members = pattern.GetMembers();
        if (members.isEmpty() || members.constFirst()->GetClass())
            refuse(
                QStringLiteral("%1 is a record and has no value of its own. Compare one of its members, or "
                               "write only the path to ask whether it is set.")
                    .arg(Printable(path.text)));
        const auto comparison = ComparisonOperatorNamed(current().text);
        if (!comparison)
            refuse(QStringLiteral("There is no operator %1. The operators are %2.")
                       .arg(current().text, Listed(ComparisonOperatorNames())));
        ++m_position;
        const ConditionToken value = current();
        const bool isQuoted = value.kind == ConditionToken::QuotedText;
        if (!isQuoted && (value.kind != ConditionToken::Word || isAtKeyword()))
            refuse(QStringLiteral("Expected a value, but found %1.%2")
                       .arg(found(), isAtKeyword()
                                         ? QStringLiteral(" A text that is such a word needs quotes.")
                                         : QString()));
        QVector<MemberComparison> comparisons;
        try {
            for (const MemberInfo* member : members)
                comparisons += MemberComparison(*member, *comparison, value.text, isQuoted);
        } catch (const UnsuitableComparison& error) {
            m_position -= error.IsAboutValue() ? 0 : 1;
            refuse(error.GetText());
        }
        ++m_position;
        return std::make_unique<PathComparison>(pattern, comparisons);
    }

    // The current token in a message.
    QString found() const
    {
        return current().kind == ConditionToken::End ? QStringLiteral("the end")
                                                     : Quoted(Abbreviated(current().text));
    }

    [[noreturn]] void refuse(const QString& reason) const
    {
        throw InvalidCondition(m_text, current().column, reason);
    }

    const QString& m_text;
    QVector<ConditionToken> m_tokens;
    int m_position = 0;
    int m_depth = 0;
};

} // namespace

std::unique_ptr<const ConditionNode> ParseCondition(const QString& text)
{
    return ConditionReader(text).read();
}

} // namespace ROUTERDOCUMENTS
