/// \file
/// Results as JSON that are too many to be kept until all are known.
#pragma once

#include "Output.h"

#include <QtCore/QJsonValue>
#include <QtCore/QString>

namespace routermsg {

/// A JSON object that is written while it is made, with every item of its lists in a line of its own.
/// Nothing in it can steer a terminal.
///
/// \code
/// LargeJson json(session.out());
/// json.beginList("differences");
/// json.addItem(difference);
/// json.endList();
/// json.add("count", 1);
/// json.end();
/// \endcode
class LargeJson
{
public:
    explicit LargeJson(Output& out) : m_out(out) { m_out.write(QStringLiteral("{")); }
    LargeJson(const LargeJson&) = delete;
    LargeJson& operator=(const LargeJson&) = delete;

    void add(const QString& key, const QJsonValue& value);
    void beginList(const QString& key);
    void addItem(const QJsonValue& item);
    void endList();
    void end();

private:
    void beginMember(const QString& key);

    Output& m_out;
    bool m_isFirstMember = true;
    bool m_isFirstItem = true;
};

} // namespace routermsg
