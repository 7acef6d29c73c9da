// SPDX-License-Identifier: MIT
// The one place that knows how the supported Qt versions differ. Not installed.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QCoreApplication>
#include <QtCore/QHash>
#include <QtCore/QMetaType>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>
#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    #include <QtCore/QTextCodec>
#else
    #include <QtCore/QStringConverter>
#endif

#include <utility>

namespace MODELKIT {
namespace QtVersion {

// The type of the names and texts of a stream reader: a reference into its buffer, valid until the next
// token is read (`QStringRef` up to Qt 5, `QStringView` from Qt 6).
using XmlView = decltype(std::declval<QXmlStreamReader>().name());

// The type in which containers count their elements (`int` up to Qt 5, `qsizetype` from Qt 6).
using Size = QVector<int>::size_type;

// The type of Qt's hash values (`uint` up to Qt 5, `size_t` from Qt 6).
using HashValue = decltype(qHash(std::declval<QString>()));

// Looks the text up in the installed translations. Source texts are UTF-8: Qt 5 and later have no choice of
// encodings as Qt 4 had.
inline QString translate(const char* context, const char* text, const char* disambiguation, int n = -1)
{
    return QCoreApplication::translate(context, text, disambiguation, n);
}

// Whether the writer encodes in UTF-8; from Qt 6 on it always does.
inline bool writesUtf8([[maybe_unused]] const QXmlStreamWriter& writer)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    constexpr int utf8 = 106;
    return writer.codec() && writer.codec()->mibEnum() == utf8;
#else
    return true;
#endif
}

// Whether Qt has a codec for the encoding. Qt 6 has fewer than Qt 5.
inline bool knowsEncoding(const QByteArray& name)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return QTextCodec::codecForName(name) != nullptr;
#else
    return QStringDecoder(name.constData()).isValid();
#endif
}

// Decodes bytes in an encoding that Qt knows. U+FFFD replaces malformed bytes.
inline QString decode(const QByteArray& encoding, const QByteArray& bytes)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return QTextCodec::codecForName(encoding)->toUnicode(bytes);
#else
    return QStringDecoder(encoding.constData()).decode(bytes);
#endif
}

// The id of the metatype that is registered by that name; 0 without one.
inline int metatypeId(const char* name)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return QMetaType::type(name);
#else
    return QMetaType::fromName(name).id();
#endif
}

} // namespace QtVersion
} // namespace MODELKIT
