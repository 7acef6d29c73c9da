// SPDX-License-Identifier: MIT
// Finding the end of a JSON value while its bytes arrive. Not installed.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QtGlobal>

namespace ROUTERDOCUMENTS {

// Looks at every byte once, however the bytes are cut into pieces, from the first bracket to the one that
// belongs to it. It only knows brackets, strings and where a value may begin.
class JsonEnd
{
public:
    enum Outcome
    {
        More,  // the value goes on behind the bytes examined
        Ended, // the value ends with the last byte examined
        Broken // the last byte examined cannot occur there
    };

    enum Extent
    {
        AnyLines,
        OneLine // the value must end on its line
    };

    explicit JsonEnd(Extent extent) : m_extent(extent) {}

    // Looks at the bytes, which follow those of the calls before, and adds the number of those it has looked
    // at to \a used.
    Outcome Scan(const char* bytes, qint64 size, qint64& used);
    // How many bytes of the current line were examined.
    qint64 GetLineSize() const { return m_lineSize; }

private:
    Outcome Step(unsigned char byte);
    Outcome StepString(unsigned char byte);
    Outcome Open(char bracket);
    Outcome Close(char bracket);

    Extent m_extent;
    qint64 m_lineSize = 0;
    // The brackets that are open.
    QByteArray m_open;
    // The last character that was no white space; 'v' for the end of any value.
    char m_before = ':';
    bool m_isString = false;
    bool m_isEscape = false;
};

} // namespace ROUTERDOCUMENTS
