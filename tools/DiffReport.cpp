// SPDX-License-Identifier: MIT
#include "DiffReport.h"

#include "documents/LargeJson.h"
#include "documents/Text.h"

#include <QtCore/QJsonObject>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

QString counted(qint64 count, const QString& one, const QString& several)
{
    return count == 1 ? one : several.arg(count);
}

class DiffText : public DiffReport
{
public:
    explicit DiffText(Session& session) : m_out(session.out()), m_isQuiet(session.isQuiet()) {}

    void add(const ComparedMessages& messages, const Difference& difference) override
    {
        const QString path = messages.prefix() + difference.path.ToText() + QStringLiteral(": ");
        switch (difference.kind) {
        case Difference::Changed:
            m_out.writeLine(m_out.paint(Style::Place, path) + m_out.paint(Style::Removed, difference.first)
                            + QStringLiteral(" -> ") + m_out.paint(Style::Added, difference.second));
            break;
        case Difference::Moved:
            m_out.writeLine(m_out.paint(Style::Place, path) + QStringLiteral("moved ") + difference.second);
            break;
        case Difference::Removed:
        case Difference::Added:
            writeOneSided(difference.kind, path + difference.first + difference.second);
            break;
        }
    }

    void addFile(const QString& file, Difference::Kind kind, const QString& folder) override
    {
        writeOneSided(kind, QStringLiteral("%1: only in %2").arg(Printable(file), Printable(folder)));
    }

    void end(qint64 differences, qint64 failures) override
    {
        if (m_isQuiet)
            return;
        if (differences > 0)
            m_out.writeLine(
                counted(differences, QStringLiteral("1 difference"), QStringLiteral("%1 differences")));
        else if (failures == 0)
            m_out.writeLine(m_out.paint(Style::Good, QStringLiteral("No differences")));
    }

private:
    void writeOneSided(Difference::Kind kind, const QString& text)
    {
        const bool isAdded = kind == Difference::Added;
        m_out.writeLine(m_out.paint(isAdded ? Style::Added : Style::Removed,
                                    (isAdded ? QStringLiteral("+ ") : QStringLiteral("- ")) + text));
    }

    Output& m_out;
    bool m_isQuiet;
};

class DiffJson : public DiffReport
{
public:
    explicit DiffJson(Session& session) : m_session(session), m_json(session.out().writer())
    {
        m_json.BeginList(QStringLiteral("differences"));
    }

    void add(const ComparedMessages& messages, const Difference& difference) override
    {
        QJsonObject json = DifferenceJson(difference);
        json[QStringLiteral("message")] = messages.message;
        if (!messages.file.isEmpty())
            json[QStringLiteral("file")] = messages.file;
        m_json.AddItem(json);
    }

    void addFile(const QString& file, Difference::Kind kind, const QString&) override
    {
        m_json.AddItem(QJsonObject{{QStringLiteral("kind"), NameOf(kind)}, {QStringLiteral("file"), file}});
    }

    void end(qint64 differences, qint64 failures) override
    {
        m_json.EndList();
        m_json.Add(QStringLiteral("count"), differences);
        m_json.Add(QStringLiteral("notCompared"), failures);
        m_json.Add(QStringLiteral("findings"), m_session.takeFindings());
        m_json.End();
    }

private:
    Session& m_session;
    LargeJson m_json;
};

} // namespace

QString ComparedMessages::prefix() const
{
    QString text = Printable(file);
    if (message != 1)
        text += QLatin1Char('#') + QString::number(message);
    return text.isEmpty() ? text : text + QStringLiteral(": ");
}

std::unique_ptr<DiffReport> makeDiffReport(Session& session)
{
    if (session.format() == Format::Json)
        return std::make_unique<DiffJson>(session);
    return std::make_unique<DiffText>(session);
}

} // namespace routermsg
