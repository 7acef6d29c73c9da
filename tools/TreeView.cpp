// SPDX-License-Identifier: MIT
#include "TreeView.h"

#include "Output.h"
#include "documents/Values.h"

#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace routermsg {

using namespace ROUTERDOCUMENTS;
using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

class Tree
{
public:
    explicit Tree(Output& output) : m_output(output) {}

    void writeRoot(const IMKObject& record)
    {
        writeLine(0, name(RecordInfo::Of(record).GetName()));
        writeMembers(record, 1);
    }

private:
    void writeMembers(const IMKObject& record, int depth)
    {
        QVector<const MemberInfo*> unset;
        const RecordInfo& info = RecordInfo::Of(record);
        for (const MemberInfo* member : info.GetMembers()) {
            if (member->IsSet(record))
                writeMember(record, *member, depth);
            else
                unset += member;
        }
        // A choice carries one member: the others are not missing.
        if (!unset.isEmpty() && !(info.IsChoice() && unset.size() < info.GetMembers().size()))
            writeUnset(unset, info.IsChoice(), depth);
    }

    void writeMember(const IMKObject& record, const MemberInfo& member, int depth)
    {
        const QString begin = name(member.GetName()) + faint(QStringLiteral(": ") + TypeName(member));
        switch (member.GetKind()) {
        case MemberInfo::Record:
            writeLine(depth, begin);
            writeMembers(member.GetRecord(record), depth + 1);
            break;
        case MemberInfo::List:
            writeLine(depth, begin + faint(QStringLiteral(" of %1").arg(member.CountItems(record))));
            writeItems(record, member, depth + 1);
            break;
        default:
            writeLine(depth, begin + faint(QStringLiteral(" = "))
                                 + m_output.paint(Style::Value, ValueText(member, member.GetValue(record))));
        }
    }

    void writeItems(const IMKObject& record, const MemberInfo& member, int depth)
    {
        const QString itemName = name(member.GetClass()->GetName());
        for (int i = 0, count = member.CountItems(record); i < count; ++i) {
            writeLine(depth, faint(QStringLiteral("[%1] ").arg(i + 1)) + itemName);
            writeMembers(member.GetItem(record, i), depth + 1);
        }
    }

    void writeUnset(const QVector<const MemberInfo*>& members, bool isChoice, int depth)
    {
        QStringList texts;
        for (const MemberInfo* member : members)
            texts += isChoice ? member->GetName()
                              : QStringLiteral("%1 (%2)").arg(member->GetName(), TypeName(*member));
        writeLine(depth, faint((isChoice ? QStringLiteral("not set: one of ") : QStringLiteral("not set: "))
                               + texts.join(QStringLiteral(", "))));
    }

    QString name(const QString& text) const { return m_output.paint(Style::Name, text); }
    QString faint(const QString& text) const { return m_output.paint(Style::Faint, text); }

    void writeLine(int depth, const QString& text)
    {
        m_output.writeLine(QString(2 * depth, QLatin1Char(' ')) + text);
    }

    Output& m_output;
};

} // namespace

void writeTree(const IMKObject& record, Output& output) { Tree(output).writeRoot(record); }

} // namespace routermsg
