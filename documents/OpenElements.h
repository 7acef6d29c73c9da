// SPDX-License-Identifier: MIT
// The elements that are open at a place of an XML document. Not installed.
#pragma once

#include <QtCore/QString>
#include <QtCore/QVarLengthArray>
#include <QtCore/QtGlobal>

namespace ROUTERDOCUMENTS {

// The hash of an element's name, built while the name arrives. A prefix does not count.
class NameHash
{
public:
    void Add(unsigned char character)
    {
        if (character == ':') {
            m_hash = empty;
            m_hasPrefix = true;
        } else {
            m_hash = (m_hash ^ character) * 0x100000001B3ULL;
        }
    }
    static NameHash Of(const QString& name);

    quint64 Get() const { return m_hash; }
    bool HasPrefix() const { return m_hasPrefix; }

private:
    static constexpr quint64 empty = 0xCBF29CE484222325ULL;
    quint64 m_hash = empty;
    bool m_hasPrefix = false;
};

// Tells when a tag cannot belong to the document.
class OpenElements
{
public:
    // Whether another document begins with the start tag. That is so for the name of the class of documents
    // and for the root's own name, where the root's record has no such element at any depth. An open element
    // that the record does not know may hold anything, unless the document is not well-formed anyway.
    bool BeginsAnother(const NameHash& name) const;

    void Open(const NameHash& name);
    // The last one ends, whatever the name.
    void Close(const NameHash& name);
    // Whether Close() was given the name of the root while other elements were open inside it.
    bool IsRootLeft() const { return m_isRootLeft; }
    // The document goes on nevertheless.
    void StayInRoot() { m_isRootLeft = false; }
    // Something else shows that the document is not well-formed.
    void Damage() { m_isDamaged = true; }
    // Whether that is known, also because an end tag had another name than the element.
    bool IsDamaged() const { return m_isDamaged; }

    qint64 Depth() const { return m_depth; }

private:
    bool AreAllKnown() const;

    // The names of the outer ones, of as many as records may nest.
    QVarLengthArray<quint64, 16> m_names;
    qint64 m_depth = 0;
    bool m_isRootLeft = false;
    bool m_isDamaged = false;
};

} // namespace ROUTERDOCUMENTS
