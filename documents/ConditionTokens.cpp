// SPDX-License-Identifier: MIT
#include "documents/ConditionTokens.h"

#include "documents/Condition.h"
#include "documents/Text.h"

namespace ROUTERDOCUMENTS {

namespace {

bool isIn(QChar unit, const char* units) { return QString::fromLatin1(units).contains(unit); }

class ConditionScanner
{
public:
    explicit ConditionScanner(const QString& text) : m_text(text) {}

    QVector<ConditionToken> scan()
    {
        QVector<ConditionToken> tokens;
        do {
            while (!isAtEnd() && current().isSpace())
                ++m_position;
            tokens += next();
        } while (tokens.constLast().kind != ConditionToken::End);
        return tokens;
    }

private:
    bool isAtEnd() const { return m_position >= m_text.size(); }
    QChar current() const { return m_text.at(m_position); }

    ConditionToken next()
    {
        const int begin = m_position;
        const auto token = [&](ConditionToken::Kind kind) {
            return ConditionToken{kind, m_text.mid(begin, m_position - begin), begin + 1};
        };
        if (isAtEnd())
            return token(ConditionToken::End);
        if (isIn(current(), "\"'"))
            return {ConditionToken::QuotedText, quotedText(), begin + 1};
        if (isIn(current(), "()")) {
            const auto kind =
                current() == QLatin1Char('(') ? ConditionToken::Opening : ConditionToken::Closing;
            ++m_position;
            return token(kind);
        }
        const bool isOperator = isIn(current(), operators);
        while (!isAtEnd() && (isOperator ? isIn(current(), operators) : isOfWord()))
            m_position += isOperator ? 1 : lengthInWord();
        return token(isOperator ? ConditionToken::Operator : ConditionToken::Word);
    }

    bool isOfWord() const { return !current().isSpace() && !isIn(current(), "()\"'=!<>~"); }

    // Brackets belong to a path, whatever is between them: "Fragment[2->3]".
    int lengthInWord()
    {
        if (current() != QLatin1Char('[') || !m_hasBrackets)
            return 1;
        const auto end = m_text.indexOf(QLatin1Char(']'), m_position);
        m_hasBrackets = end >= 0;
        return m_hasBrackets ? static_cast<int>(end) + 1 - m_position : 1;
    }

    QString quotedText()
    {
        const int begin = m_position;
        const QChar quote = m_text.at(m_position++);
        QString content;
        while (!isAtEnd() && current() != quote)
            content += current() == QLatin1Char('\\') ? escaped() : m_text.at(m_position++);
        if (isAtEnd())
            throw InvalidCondition(
                m_text, begin + 1,
                QStringLiteral("The text in quotes does not end. Write \\%1 for a quote in it.").arg(quote));
        ++m_position;
        return content;
    }

    QChar escaped()
    {
        static const QString letters = QStringLiteral("bfnrt\"'\\/");
        static const QString meanings = QStringLiteral("\b\f\n\r\t\"'\\/");
        const int begin = m_position++;
        if (!isAtEnd() && letters.contains(current()))
            return meanings.at(letters.indexOf(m_text.at(m_position++)));
        bool isNumber = false;
        const QString digits = m_text.mid(m_position + 1, 4);
        const ushort number = digits.toUShort(&isNumber, 16);
        if (isAtEnd() || current() != QLatin1Char('u') || digits.size() < 4 || !isNumber
            || !isHexadecimal(digits))
            throw InvalidCondition(
                m_text, begin + 1,
                QStringLiteral("There is no escape %1. Those of JSON are possible, such as \\n and \\u00e4; "
                               "\\\\ is a backslash.")
                    .arg(Printable(m_text.mid(begin, 2))));
        m_position += 5;
        return QChar(number);
    }

    static bool isHexadecimal(const QString& digits)
    {
        for (const QChar digit : digits)
            if (!isIn(digit, "0123456789abcdefABCDEF"))
                return false;
        return true;
    }

    static constexpr const char* operators = "=!<>~";

    const QString& m_text;
    int m_position = 0;
    // Whether there may be a closing bracket behind the position.
    bool m_hasBrackets = true;
};

} // namespace

QVector<ConditionToken> TokensOf(const QString& condition) { return ConditionScanner(condition).scan(); }

} // namespace ROUTERDOCUMENTS
