// SPDX-License-Identifier: MIT
#include "documents/JsonBehindXml.h"

#include "documents/Document.h"
#include "documents/DocumentError.h"
#include "documents/JsonEnd.h"

#include "modelkit/ReadingReport.h"

#include <QtCore/QByteArray>
#include <QtCore/QVector>

#include <algorithm>

namespace ROUTERDOCUMENTS {

namespace {

class JsonBehindXml
{
public:
    JsonBehindXml(const char* bytes, qint64 size, const BeginningRules& rules)
        : m_bytes(bytes), m_size(size), m_rules(rules)
    {}

    qint64 find()
    {
        for (qint64 at = nextBegin(1); at < m_size; at = nextBegin(at))
            at = passValues(at);
        const auto found = std::find_if(m_values.begin(), m_values.end(),
                                        [this](const Value& value) { return isMessage(value); });
        return found == m_values.end() ? 0 : found->begin;
    }

    qint64 examined() const { return m_examined; }

private:
    // A whole value that begins a line like a message.
    struct Value
    {
        qint64 begin;
        qint64 size;
    };

    // The next place where a line begins like a message.
    qint64 nextBegin(qint64 at)
    {
        for (; at < m_size; ++at) {
            at = std::find(m_bytes + at, m_bytes + m_size, '{') - m_bytes;
            if (at < m_size && isBegin(at))
                break;
        }
        return std::min(at, m_size);
    }

    bool isBegin(qint64 at)
    {
        if (m_bytes[at] != '{' || (m_bytes[at - 1] != '\n' && m_bytes[at - 1] != '\r'))
            return false;
        BeginningRules rules = m_rules;
        rules.look = Look::Searching;
        rules.isAtLineBegin = true;
        rules.isAll = true;
        return recogniseBeginning(m_bytes + at, m_size - at, rules).kind == MessageBeginning::Message;
    }

    // Returns where something else follows. Only values that nothing else follows are kept.
    qint64 passValues(qint64 at)
    {
        m_values.clear();
        while (at < m_size && m_bytes[at] == '{') {
            JsonEnd end(JsonEnd::AnyLines);
            qint64 used = 0;
            const JsonEnd::Outcome outcome = end.Scan(m_bytes + at, m_size - at, used);
            m_examined += used;
            if (outcome == JsonEnd::More)
                return m_size;
            if (outcome == JsonEnd::Broken) {
                m_values.clear();
                // A message may begin in the line where the value breaks.
                return std::max(at + 1, at + used - end.GetLineSize());
            }
            if (isBegin(at))
                m_values.append({at, used});
            at += used;
            while (at < m_size && isWhite(static_cast<unsigned char>(m_bytes[at])))
                ++at;
        }
        if (at < m_size)
            m_values.clear();
        return at;
    }

    bool isMessage(const Value& value)
    {
        m_examined += value.size;
        // Whoever reads the message gets its notices.
        const MODELKIT::ReadingReport ignored;
        try {
            ReadDocument(QByteArray::fromRawData(m_bytes + value.begin, static_cast<int>(value.size)),
                         {Form::Json});
            return true;
        } catch (const DocumentError&) {
            return false;
        }
    }

    const char* m_bytes;
    qint64 m_size;
    const BeginningRules& m_rules;
    QVector<Value> m_values;
    qint64 m_examined = 0;
};

} // namespace

qint64 jsonBehindXml(const char* bytes, qint64 size, const BeginningRules& rules, qint64& examined)
{
    JsonBehindXml search(bytes, size, rules);
    const qint64 place = search.find();
    examined += search.examined();
    return place;
}

} // namespace ROUTERDOCUMENTS
