// SPDX-License-Identifier: MIT
/// \file
/// Conditions that records fit or not.
#pragma once

#include "documents/Export.h"

#include "modelkit/IMKObject.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <exception>
#include <memory>

namespace ROUTERDOCUMENTS {

class ConditionNode;

/// A condition such as "Type=Reply and (DF_Params/Frequency>98e6 or not MasterClientID~\"north\")".
///
/// - A path of a member, see PathPattern, is true when the member is set. A path of a list is true when it
/// has
///   an item.
/// - A path, an operator and a value compare the member: = != < <= > >=, and ~ for a text that contains the
///   other. A path that leads to several values, as of several fragments, is true if any of them fits. A
///   member that is not set has no value, so no comparison is true.
/// - "and" binds more tightly than "or"; "not" and parentheses as usual.
///
/// The type of the member determines the comparison. Numbers are compared exactly; "nan" equals "nan".
/// Enumerators and truth values have their names and know only = and !=. Texts are compared character by
/// character, with capital and small letters distinguished. A null text equals only the word null, which also
/// stands for an enumeration without enumerator.
///
/// A value is a word, or a text in single or double quotes with the escapes of JSON. In quotes, null is a
/// text.
class ROUTERDOCUMENTS_EXPORT Condition
{
public:
    /// \throws InvalidCondition when the text is no condition.
    explicit Condition(const QString& text);

    /// Whether the record fits. Any record of the record library will do.
    /// \throws std::bad_cast when the object is no record of the record library.
    bool Holds(const MODELKIT::IMKObject& record) const;

private:
    std::shared_ptr<const ConditionNode> m_root;
};

/// A text is no condition.
class ROUTERDOCUMENTS_EXPORT InvalidCondition : public std::exception
{
public:
    /// \param column the number of the character in the condition, from 1
    /// \param reason what is wrong there, safe to display
    InvalidCondition(const QString& condition, int column, const QString& reason);
    /// Copies the error.
    InvalidCondition(const InvalidCondition& other) noexcept;
    /// Copies the error.
    InvalidCondition& operator=(const InvalidCondition& other) noexcept;
    /// Releases the texts.
    ~InvalidCondition() override;

    /// The number of the character where the mistake is, from 1.
    int GetColumn() const noexcept { return m_column; }
    /// Where the mistake is, what is wrong and what may have been meant, safe to display.
    const QString& GetText() const noexcept { return m_text; }
    /// The text in UTF-8.
    const char* what() const noexcept override { return m_utf8.constData(); }

private:
    int m_column;
    QString m_text;
    QByteArray m_utf8;
};

} // namespace ROUTERDOCUMENTS
