// SPDX-License-Identifier: MIT
// Finding the end of an XML document while its bytes arrive. Not installed.
#pragma once

#include "documents/Export.h"
#include "documents/OpenElements.h"
#include "documents/TextUnits.h"

#include <QtCore/QByteArray>
#include <QtCore/QtGlobal>

namespace ROUTERDOCUMENTS {

// Which bytes of an encoding are the first of two. The second one may look like a bracket of markup.
struct DoubleBytes
{
    // The first bytes are those from 0x81 on, but in Japanese without those of single katakana. Otherwise the
    // encoding has no such pairs, or none that look like markup.
    bool isThere = false;
    bool isJapanese = false;

    bool IsFirst(unsigned char byte) const;
    // Goes by the XML declaration.
    static DoubleBytes Declared(const QByteArray& declaration);
};

// Looks at every byte once, however the bytes are cut into pieces. Every end tag ends an element, whatever
// its name: in a document that is not well-formed, the end may be at another place.
class ROUTERDOCUMENTS_EXPORT XmlEnd
{
public:
    enum What
    {
        Document,      // to the end of its root element
        SoundDocument, // the same, but no further than to where it can no longer be well-formed
        Aside          // one comment or processing instruction
    };

    enum Outcome
    {
        More,    // the text goes on behind the bytes examined
        Ended,   // the text ends with the last byte examined
        Another, // another document begins with the last markup examined: this one is cut off
        Doubt,   // the last byte examined cannot occur in XML; the scan can go on
        Damaged  // the last byte examined shows that it is not well-formed; only for SoundDocument
    };

    // HasMark: whether the document has a byte order mark, which Scan() is not given.
    XmlEnd(What what, TextUnits units, bool hasMark);

    // Looks at the bytes, which follow those of the calls before, and adds the number of those it has looked
    // at to \a used.
    Outcome Scan(const char* bytes, qint64 size, qint64& used);
    // After Another: how many of the bytes examined do not belong to the document.
    qint64 GetBehind() const { return m_behind * m_units.size; }
    // Whether the root's end tag was the last tag although other elements were open. GetBehind() is valid.
    bool IsRootLeft() const { return m_elements.IsRootLeft(); }
    // False in comments, processing instructions, CDATA sections and document type declarations.
    bool IsInElements() const;

private:
    enum State
    {
        Text,
        Markup,      // <
        Exclamation, // <!
        OneDash,     // <!-
        Comment,
        CData,
        Instruction,
        StartTag,
        Value, // of an attribute
        EndTag,
        Declaration, // <!DOCTYPE and those inside it
        Literal,     // quoted, in a declaration
        InnerMarkup, // as above, in a declaration
        InnerExclamation,
        InnerOneDash
    };

    Outcome ScanNarrow(const char* bytes, qint64 size, qint64& used);
    const char* PassOver(const char* at, const char* end);
    const char* PassOverAside(const char* at, const char* end);
    Outcome ScanWide(const char* bytes, qint64 size, qint64& used);
    Outcome Step(unsigned char character);
    Outcome StepUnlessDamaged(unsigned char character);
    void BeginMarkup();
    Outcome StepMarkup(unsigned char character);
    Outcome StepTag(unsigned char character);
    Outcome StepInstruction(unsigned char character);
    void StepDeclaration(unsigned char character);
    bool EndsCData(unsigned char character);
    // Whether that many marks and the character end the current markup.
    bool EndsRun(unsigned char character, char mark, int marks);
    Outcome LeaveTag();
    void LeaveElementTag(bool isEnd);
    Outcome LeaveAside();

    What m_what;
    TextUnits m_units;
    State m_state = Text;
    // Where a comment or processing instruction leads back to.
    State m_after = Text;
    OpenElements m_elements;
    // Of the current tag, and whether it is still arriving.
    NameHash m_name;
    bool m_isName = false;
    // Of declarations inside each other.
    qint64 m_declarations = 0;
    // The quote that ends the value; the last character of a tag; how many marks of the markup's end came
    // last.
    unsigned char m_quote = 0;
    unsigned char m_last = 0;
    int m_run = 0;
    qint64 m_behind = 0;

    // How much of the instruction's target is that of an XML declaration; negative when it is none.
    int m_target = -1;
    bool m_hasMarkup = false;
    bool m_isFirst = false;
    // The beginning of the document's XML declaration, and whether that tells the encoding.
    bool m_isDeclaring = false;
    QByteArray m_declaration;
    bool m_mayDeclare;
    DoubleBytes m_doubleBytes;
    bool m_isTrail = false;

    // The unit that has only arrived in part.
    char m_part[4] = {};
    int m_partSize = 0;
};

} // namespace ROUTERDOCUMENTS
