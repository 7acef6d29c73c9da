// SPDX-License-Identifier: MIT
// Reading a JSON text value by value. Not installed.
#pragma once

#include "documents/Export.h"

#include "modelkit/Place.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QtGlobal>

namespace ROUTERDOCUMENTS {

// Takes exactly what RFC 8259 calls JSON, and a byte order mark in front of it. Every byte is looked at once,
// and nothing is kept but the brackets that are open.
//
// The reader asks for what comes next and then takes it:
//
//     JsonText text(json);
//     if (text.NextType() == JsonText::Object) {
//         text.Enter();
//         for (QString key; text.NextKey(key);)
//             read(text); // exactly one value
//     }
//     text.End();
//
// All functions that read throw a DocumentError of the kind Failure::NotWellFormed, with line and column,
// when the text is not JSON as far as they read it.
class ROUTERDOCUMENTS_EXPORT JsonText
{
public:
    enum Type
    {
        Null,
        Boolean,
        Number,
        String,
        Array,
        Object
    };

    // More brackets are never open at a time.
    static constexpr int deepest = 1024;

    // The bytes must live as long as this.
    explicit JsonText(const QByteArray& json);

    // The type of the value that comes next. That it is whole is known only when it has been taken.
    Type NextType();
    // After NextType() the offset of the value that comes next, after NextKey() that of the key.
    qint64 Offset() const { return m_begin; }

    // Take a value of that type, after NextType().
    void TakeNull();
    bool TakeBoolean();
    // The number as it is written.
    QByteArray TakeNumber();
    // Never null. An escape of half a surrogate pair stays half a pair.
    QString TakeString();

    // Goes into the array or object that comes next, after NextType().
    void Enter();
    // Whether the array has another item, which then comes next. At its end, goes out of it.
    bool NextItem();
    // Whether the object has another key; its value then comes next. At its end, goes out of it.
    bool NextKey(QString& key);

    // Takes the value that comes next, whatever it is.
    void Pass();

    // Makes sure that nothing stands behind the value.
    void End();

    // The line and column of an offset. Columns count UTF-16 units, as those of XML do. Places that are asked
    // for in their order cost no more than one.
    MODELKIT::Place PlaceOf(qint64 offset) const;

private:
    bool isAtEnd() const { return m_at == m_end; }
    char current() const { return isAtEnd() ? '\0' : *m_at; }
    qint64 offsetOf(const char* at) const { return at - m_json.constData(); }
    void passSpace();
    void passDigits(const char* missing);
    bool isWord(const char* word) const;
    bool goOn(char end, const char* missing);
    QString takeString();
    QString takePlain();
    void appendEscape(QString& text);
    char16_t takeHexDigits();
    [[noreturn]] void refuse(const char* at, const QString& text) const;
    [[noreturn]] void refuseHere(const char* expected) const;

    // A place that was asked for.
    struct Known
    {
        qint64 offset = 0;
        qint64 line = 1;
        qint64 column = 1;
    };

    const QByteArray& m_json;
    const char* m_at;
    const char* m_end;
    // The offset behind a byte order mark.
    qint64 m_begunAt = 0;
    qint64 m_begin = 0;
    mutable Known m_known;
    // The brackets that are open.
    QByteArray m_open;
    // Whether nothing has been taken from the innermost bracket.
    bool m_isFirst = false;
};

// The type with its article: "a string".
QString nameOf(JsonText::Type type);

} // namespace ROUTERDOCUMENTS
