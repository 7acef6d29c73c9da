// SPDX-License-Identifier: MIT
// The words, quoted texts and signs of a condition. Not installed.
#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

namespace ROUTERDOCUMENTS {

struct ConditionToken
{
    enum Kind
    {
        Word,
        QuotedText,
        Operator,
        Opening, // parenthesis
        Closing, // parenthesis
        End
    };

    Kind kind = End;
    // As it is written; of a quoted text its content.
    QString text;
    // The number of its first character, from 1.
    int column = 1;
};

// Ends with a token of the kind End.
// throws InvalidCondition when a quoted text does not end or has an unknown escape.
QVector<ConditionToken> TokensOf(const QString& condition);

} // namespace ROUTERDOCUMENTS
