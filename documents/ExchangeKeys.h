// SPDX-License-Identifier: MIT
// The keys of an exchange, around its document. Not installed.
#pragma once

#include "documents/Exchange.h"
#include "documents/JsonPath.h"
#include "documents/JsonText.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace ROUTERDOCUMENTS {

// Takes the values of an exchange from its text, in any order, and refuses what is wrong with them.
class ExchangeKeys
{
public:
    // Whether an object with this key is an exchange. No record has such a name.
    static bool isKey(const QString& name);
    static QString document() { return QStringLiteral("document"); }

    // Both must live as long as this.
    // The object is the value that comes next.
    ExchangeKeys(JsonText& text, const JsonPath& path);

    // Takes the value of the key. False, without having taken it, when it is the document.
    // All these throw DocumentError.
    bool take(const QString& key);
    // The exchange without its record, when all keys have been taken.
    Exchange end() const;
    // When all keys have been taken: that there is a document. A fault is refused in its own words.
    void requireDocument() const;

private:
    void takeTime(const QString& key);
    void takeBytes(const QString& key);
    QString takeText(const QString& key);
    // The index of the text among the names.
    int takeName(const QString& key, const QStringList& names);
    bool has(const char* key) const { return m_seen.contains(QLatin1String(key)); }
    [[noreturn]] void refuse(const QString& key, const QString& text,
                             MODELKIT::Failure::Kind kind = MODELKIT::Failure::Refused) const;
    [[noreturn]] void refuseWhole(const QString& text) const;

    JsonText& m_text;
    const JsonPath& m_path;
    Exchange m_exchange;
    // The keys that were taken.
    QStringList m_seen;
    MODELKIT::Place m_begin;
    MODELKIT::Place m_faultPlace;
};

// Whether a JSON document is an exchange that tells of an event only.
bool isEvent(const QByteArray& json);

} // namespace ROUTERDOCUMENTS
