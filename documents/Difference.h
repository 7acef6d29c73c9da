/// \file
/// Where two records differ.
#pragma once

#include "routerinterface/RecordInfo.h"

#include <QtCore/QJsonValue>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <functional>

namespace routermsg {

/// The way to a member in two records that are compared: names from the root's class down, where items have
/// their numbers in either of the two.
class MemberPath
{
public:
    struct Step
    {
        QString name;
        /// Of an item the number from 1, which is 0 in the document that does not have it; of all else 0.
        int first = 0;
        int second = 0;
    };

    void enter(const Step& step) { m_steps.append(step); }
    void leave() { m_steps.removeLast(); }
    /// Makes the last step that to an item, or to another one.
    void setNumbers(int first, int second)
    {
        m_steps.last().first = first;
        m_steps.last().second = second;
    }
    const QVector<Step>& steps() const { return m_steps; }

    /// Without the root: "PelLu300RouterMessage/Fragment[2]/DF_Params/Frequency". An item that has
    /// another number in the second record has both: "Fragment[2->3]".
    QString toText() const;
    /// The same in one of the records.
    QString inFirst() const { return inOne(&Step::first); }
    QString inSecond() const { return inOne(&Step::second); }

private:
    QString inOne(int Step::*number) const;

    QVector<Step> m_steps;
};

/// Members that do not count.
///
/// Each is a path of names with slashes between them. It may begin at any record: "Frequency",
/// "DF_Params/Frequency". With a slash in front it begins with the class of the root. Of a list
/// "Fragment[2]" is the second item, counted in each document by itself, and "Fragment" or "Fragment[*]" are
/// all. What does not count, does not with all that is below.
class IgnoredMembers
{
public:
    /// \throws UsageError for a path that no record has, with the name that is closest.
    explicit IgnoredMembers(const QStringList& paths = QStringList());

    bool isEmpty() const { return m_patterns.isEmpty(); }
    bool contains(const MemberPath& path) const;

private:
    struct Step
    {
        QString name;
        /// 0 stands for all.
        int number = 0;
    };
    struct Pattern
    {
        bool isFromRoot = false;
        QVector<Step> steps;
    };

    static Pattern parse(const QString& path);
    static Step parseStep(const QString& text, const QString& path);
    static void requireExisting(const Pattern& pattern, const QString& path);
    static bool matches(const Pattern& pattern, const QVector<MemberPath::Step>& path);

    QVector<Pattern> m_patterns;
};

/// One difference.
struct Difference
{
    enum Kind
    {
        Changed, ///< a member has another value, or is set in one of the records only
        Removed, ///< an item that only the first record has
        Added    ///< an item that only the second record has
    };

    Kind kind = Changed;
    MemberPath path;
    /// What the records have there, safe to be shown: a value, "not set", or the content of a record.
    QString first;
    QString second;
    /// The same for programs; undefined where there is nothing.
    QJsonValue firstValue = QJsonValue(QJsonValue::Undefined);
    QJsonValue secondValue = QJsonValue(QJsonValue::Undefined);
};

/// Calls visit() for every difference between the records, in the order of the members. Items of lists
/// are aligned: what is the same in both goes together, and between that items that carry the same member, in
/// order.
void compareRecords(const MODELKIT::IMKObject& first, const MODELKIT::IMKObject& second,
                    const IgnoredMembers& ignored, const std::function<void(const Difference&)>& visit);

} // namespace routermsg
