// SPDX-License-Identifier: MIT
// The operations of the base object that help classes to read: skipping a binary entry, the text of an XML
// element, and the walk over its child elements.

#include "BaseObjectSupport.h"

#include <QtCore/QIODevice>

#include <algorithm>
#include <climits>
#include <cstring>
#include <utility>

namespace {

using namespace testing_support;

TYPED_TEST_SUITE(BaseObjectOfRecord, RecordsWithSamples, );

// --- skipping a binary entry ------------------------------------------------------------------

// Delivers its content in pieces of at most a given size and cannot seek.
class SequentialDevice : public QIODevice
{
public:
    SequentialDevice(QByteArray content, int pieceSize)
        : m_content(std::move(content)), m_pieceSize(pieceSize)
    {
        open(ReadOnly | Unbuffered);
    }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 maxSize) override
    {
        if (m_content.isEmpty())
            return -1;
        const int size = static_cast<int>(std::min<qint64>({maxSize, m_content.size(), m_pieceSize}));
        std::memcpy(data, m_content.constData(), static_cast<std::size_t>(size));
        m_content.remove(0, size);
        return size;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray m_content;
    int m_pieceSize;
};

TEST(BaseObjectSkip, MovesBehindThePayloadAndTellsItsLength)
{
    const Note note;
    QDataStream stream(bytes("AA BBBBBB CCDD"));
    qint8 first = 0;
    stream >> first;
    EXPECT_EQ(note.skipCurrentElement(stream, 3, 0x1F980517), 3);
    EXPECT_EQ(stream.device()->pos(), 4);
    quint16 behind = 0;
    stream >> behind;
    EXPECT_EQ(behind, 0xCCDD);
    EXPECT_EQ(stream.status(), QDataStream::Ok);
}

TEST(BaseObjectSkip, TheTagDoesNotMatter)
{
    const Note note;
    for (const int tag : {0, -1, INT_MIN, INT_MAX}) {
        QDataStream stream(bytes("01020304"));
        EXPECT_EQ(note.skipCurrentElement(stream, 2, tag), 2) << tag;
        EXPECT_EQ(stream.device()->pos(), 2) << tag;
    }
}

TEST(BaseObjectSkip, ALengthOfZeroConsumesNothing)
{
    const Note note;
    QDataStream stream(bytes("01020304"));
    EXPECT_EQ(note.skipCurrentElement(stream, 0, 1), 0);
    EXPECT_EQ(stream.device()->pos(), 0);
    EXPECT_EQ(stream.status(), QDataStream::Ok);
}

TEST(BaseObjectSkip, ANegativeLengthConsumesNothingAndNeverMovesBack)
{
    const Note note;
    for (const int length : {-1, -3, INT_MIN}) {
        QDataStream stream(bytes("01020304"));
        stream.device()->seek(3);
        EXPECT_EQ(note.skipCurrentElement(stream, length, 1), 0) << length;
        EXPECT_EQ(stream.device()->pos(), 3) << length;
    }
}

TEST(BaseObjectSkip, ATooLongLengthConsumesWhatIsThere)
{
    const Note note;
    for (const int length : {4, 5000, INT_MAX}) {
        QDataStream stream(bytes("0102030405"));
        stream.device()->seek(2);
        EXPECT_EQ(note.skipCurrentElement(stream, length, 1), 3) << length;
        EXPECT_EQ(stream.device()->pos(), 5) << length;
        EXPECT_TRUE(stream.atEnd()) << length;
    }
}

TEST(BaseObjectSkip, AtTheEndOfTheStreamNothingIsConsumed)
{
    const Note note;
    QDataStream stream(bytes("0102"));
    stream.device()->seek(2);
    EXPECT_EQ(note.skipCurrentElement(stream, 1, 1), 0);
    EXPECT_EQ(stream.device()->pos(), 2);
}

TEST(BaseObjectSkip, AStreamWithoutDeviceGivesNothing)
{
    const Note note;
    QDataStream stream;
    EXPECT_EQ(note.skipCurrentElement(stream, 4, 1), 0);
}

TEST(BaseObjectSkip, ASequentialDeviceIsReadToTheEndOfThePayload)
{
    const Note note;
    SequentialDevice device(QByteArray(10000, 'x') + bytes("CCDD"), INT_MAX);
    QDataStream stream(&device);
    EXPECT_EQ(note.skipCurrentElement(stream, 10000, 1), 10000);
    quint16 behind = 0;
    stream >> behind;
    EXPECT_EQ(behind, 0xCCDD);
}

TEST(BaseObjectSkip, ASequentialDeviceMayDeliverThePayloadInPieces)
{
    const Note note;
    SequentialDevice device(QByteArray(2500, 'x') + bytes("CCDD"), 1000);
    QDataStream stream(&device);
    EXPECT_EQ(note.skipCurrentElement(stream, 2500, 1), 2500);
    quint16 behind = 0;
    stream >> behind;
    EXPECT_EQ(behind, 0xCCDD);
}

TEST(BaseObjectSkip, ASequentialDeviceThatEndsTooEarlyGivesWhatIsThere)
{
    const Note note;
    SequentialDevice device(QByteArray(1500, 'x'), INT_MAX);
    QDataStream stream(&device);
    EXPECT_EQ(note.skipCurrentElement(stream, 2000, 1), 1500);
    EXPECT_TRUE(stream.atEnd());
}

TEST(BaseObjectSkip, ASequentialDeviceIsLeftAloneByANegativeLength)
{
    const Note note;
    SequentialDevice device(bytes("CCDD"), INT_MAX);
    QDataStream stream(&device);
    EXPECT_EQ(note.skipCurrentElement(stream, -2, 1), 0);
    quint16 behind = 0;
    stream >> behind;
    EXPECT_EQ(behind, 0xCCDD);
}

// --- the text of an element -------------------------------------------------------------------

// The text of the first element "V" in the document. The reader must be at the end of that element
// afterwards, with "Next" as the next one.
QString textOfV(const QString& documentUpToNext)
{
    Note note;
    QXmlStreamReader reader(documentUpToNext + QStringLiteral("<Next/></D>"));
    while (!(reader.isStartElement() && reader.name() == QLatin1String("V")) && !reader.atEnd())
        reader.readNext();
    const QString text = note.GetTextValue(reader);
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("V"));
    EXPECT_TRUE(reader.readNextStartElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("Next"));
    return text;
}

TEST(BaseObjectText, IsTheTextOfTheElementAsItStands)
{
    EXPECT_EQ(textOfV(QStringLiteral("<D><V> a \u00FC\n b </V>")), QStringLiteral(" a \u00FC\n b "));
}

TEST(BaseObjectText, OfAnEmptyElementIsEmptyButNotNull)
{
    for (const char* document : {"<D><V/>", "<D><V></V>", "<D><V><!-- c --></V>", "<D><V><![CDATA[]]></V>",
                                 "<D><V><x/></V>", "<D><V><x>inner</x></V>"}) {
        const QString text = textOfV(QLatin1String(document));
        EXPECT_TRUE(text.isEmpty()) << document;
        EXPECT_FALSE(text.isNull()) << document;
    }
}

TEST(BaseObjectText, LeavesCommentsAndInstructionsOut)
{
    EXPECT_EQ(textOfV(QStringLiteral("<D><V>a<!-- no -->b<?no no?>c</V>")), QStringLiteral("abc"));
}

TEST(BaseObjectText, TakesCharacterDataSections)
{
    EXPECT_EQ(textOfV(QStringLiteral("<D><V>1 <![CDATA[<2> & ]]>3</V>")), QStringLiteral("1 <2> & 3"));
}

TEST(BaseObjectText, ResolvesEntitiesAndCharacterReferences)
{
    EXPECT_EQ(textOfV(QStringLiteral("<D><V>&lt;&amp;&gt;&quot;&apos;&#65;&#x20AC;</V>")),
              QStringLiteral("<&>\"'A\u20AC"));
    EXPECT_EQ(textOfV(QStringLiteral("<!DOCTYPE D [<!ENTITY unit \"MHz\">]><D><V>98 &unit;</V>")),
              QStringLiteral("98 MHz"));
}

TEST(BaseObjectText, IsTakenOutsideTheChildElements)
{
    EXPECT_EQ(textOfV(QStringLiteral("<D><V>a<x>no<y>no</y>no</x>b<x/>c</V>")), QStringLiteral("abc"));
}

TEST(BaseObjectText, EndsOnTheElementsOwnEndBehindChildrenOfTheSameName)
{
    EXPECT_EQ(textOfV(QStringLiteral("<D><V>a<V>no<V/></V>b</V>")), QStringLiteral("ab"));
}

TEST(BaseObjectText, IsEmptyWhereTheReaderStandsOnNoStartElement)
{
    Note note;
    QXmlStreamReader reader(QStringLiteral("<D>text<V/></D>"));
    EXPECT_EQ(note.GetTextValue(reader), empty());
    EXPECT_FALSE(note.GetTextValue(reader).isNull());
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::NoToken);

    while (!reader.isCharacters())
        reader.readNext();
    EXPECT_EQ(note.GetTextValue(reader), empty());
    EXPECT_TRUE(reader.isCharacters());
    EXPECT_EQ(reader.text().toString(), QStringLiteral("text"));

    while (!reader.isEndElement())
        reader.readNext();
    EXPECT_EQ(note.GetTextValue(reader), empty());
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("V"));
}

TEST(BaseObjectText, StopsAtTheEndOfTheInput)
{
    Note note;
    QXmlStreamReader reader(QStringLiteral("<D><V>ab"));
    ASSERT_TRUE(reader.readNextStartElement());
    ASSERT_TRUE(reader.readNextStartElement());
    EXPECT_FALSE(note.GetTextValue(reader).isNull());
    EXPECT_TRUE(reader.atEnd());
    EXPECT_TRUE(reader.hasError());
}

// --- the walk over an element -----------------------------------------------------------------

// Walks the root element of the document.
QStringList visitedIn(const char* document, Walker::Treatment treatment, QXmlStreamReader& reader)
{
    reader.addData(QString::fromUtf8(document));
    EXPECT_TRUE(reader.readNextStartElement());
    Walker walker(treatment);
    walker.ProcessXml(reader);
    return walker.visited;
}

QStringList visitedIn(const char* document, Walker::Treatment treatment)
{
    QXmlStreamReader reader;
    return visitedIn(document, treatment, reader);
}

QStringList list(const char* entries) { return QString::fromUtf8(entries).split(QLatin1Char(' ')); }

TEST(BaseObjectWalk, VisitsEachChildElementOnceInDocumentOrder)
{
    for (const Walker::Treatment treatment : {Walker::SkipToEnd, Walker::LeaveOnStart})
        EXPECT_EQ(visitedIn("<R><A/>text<B>1</B><!-- c --><A></A><?p i?><C/></R>", treatment),
                  list("A B A C"));
    EXPECT_EQ(visitedIn("<R><A/>text<B>1</B><A>2</A></R>", Walker::ReadText), list("A= B=1 A=2"));
}

TEST(BaseObjectWalk, DoesNotVisitWhatAChildHasConsumed)
{
    EXPECT_EQ(visitedIn("<R><A><x/></A><B/></R>", Walker::SkipToEnd), list("A B"));
    EXPECT_EQ(visitedIn("<R><A>1<x>no</x></A><B>2</B></R>", Walker::ReadText), list("A=1 B=2"));
}

TEST(BaseObjectWalk, VisitsWhatAChildHasLeft)
{
    EXPECT_EQ(visitedIn("<R><A><x><y/></x></A><B/></R>", Walker::LeaveOnStart), list("A x y B"));
}

TEST(BaseObjectWalk, OfAnEmptyElementVisitsNothing)
{
    for (const char* document : {"<R/>", "<R></R>", "<R> text <!-- c --></R>"})
        EXPECT_TRUE(visitedIn(document, Walker::LeaveOnStart).isEmpty()) << document;
}

TEST(BaseObjectWalk, EndsOnTheEndOfItsElementAndReadsNothingBehind)
{
    QXmlStreamReader reader(QStringLiteral("<D><R a='1'><A/></R><Next/></D>"));
    ASSERT_TRUE(reader.readNextStartElement());
    ASSERT_TRUE(reader.readNextStartElement());
    Walker walker(Walker::SkipToEnd);
    walker.ProcessXml(reader);
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("R"));
    EXPECT_EQ(walker.visited, list("A"));
    ASSERT_TRUE(reader.readNextStartElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("Next"));
}

TEST(BaseObjectWalk, StartsOnAnElementOfAnyName)
{
    // The name of the start element matters, not that of the object.
    auto port = OstraInterfacePort();
    QXmlStreamReader reader(QStringLiteral("<Any><Port>5</Port></Any>"));
    ASSERT_TRUE(reader.readNextStartElement());
    port.ProcessXml(reader);
    EXPECT_EQ(port.GetPort(), 5U);
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("Any"));
}

TEST(BaseObjectWalk, EndsAtTheFirstEndElementOfItsNameThatNoChildHasConsumed)
{
    QXmlStreamReader reader;
    EXPECT_EQ(visitedIn("<R><A><R><x/></R><B/></A><C/></R>", Walker::LeaveOnStart, reader), list("A R x"));
    EXPECT_TRUE(reader.isEndElement());
    ASSERT_TRUE(reader.readNextStartElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("B"));
}

TEST(BaseObjectWalk, GoesOnBehindAChildOfItsOwnNameThatIsConsumed)
{
    EXPECT_EQ(visitedIn("<R><R><x/></R><B/></R>", Walker::SkipToEnd), list("R B"));
    EXPECT_EQ(visitedIn("<R><R>1</R><B>2</B></R>", Walker::ReadText), list("R=1 B=2"));
}

TEST(BaseObjectWalk, EndsAtTheEndOfInputThatBreaksOff)
{
    for (const char* document : {"<R><A/><B/>", "<R><A/><B/></", "<R><A/><B/></wrong>", "<R><A/><B/><C"}) {
        QXmlStreamReader reader;
        EXPECT_EQ(visitedIn(document, Walker::SkipToEnd, reader), list("A B")) << document;
        EXPECT_TRUE(reader.atEnd()) << document;
        EXPECT_TRUE(reader.hasError()) << document;
    }
}

TEST(BaseObjectWalk, LeavesAReaderThatStandsOnNoStartElement)
{
    QXmlStreamReader reader(QStringLiteral("<R>text<A/></R>"));
    Walker walker(Walker::LeaveOnStart);
    walker.ProcessXml(reader);
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::NoToken);
    reader.readNext();
    walker.ProcessXml(reader);
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::StartDocument);
    while (!reader.isCharacters())
        reader.readNext();
    walker.ProcessXml(reader);
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::Characters);
    while (!reader.isEndElement())
        reader.readNext();
    walker.ProcessXml(reader);
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::EndElement);
    EXPECT_EQ(reader.name().toString(), QStringLiteral("A"));
    while (!reader.atEnd())
        reader.readNext();
    walker.ProcessXml(reader);
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::EndDocument);
    EXPECT_TRUE(walker.visited.isEmpty());
}

TEST(BaseObjectWalk, LeavesAReaderWithoutInputOrInError)
{
    Walker walker(Walker::LeaveOnStart);
    QXmlStreamReader none;
    walker.ProcessXml(none);
    EXPECT_EQ(none.tokenType(), QXmlStreamReader::NoToken);
    QXmlStreamReader broken(QStringLiteral("<<"));
    broken.readNext();
    broken.readNext();
    ASSERT_TRUE(broken.hasError());
    walker.ProcessXml(broken);
    EXPECT_TRUE(broken.hasError());
    EXPECT_TRUE(walker.visited.isEmpty());
}

TYPED_TEST(BaseObjectOfRecord, ReadingLeavesAReaderThatStandsOnNoStartElement)
{
    TypeParam record = TestFixture::Expected::make();
    QXmlStreamReader reader(TestFixture::xml());
    record.ProcessXml(reader);
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::NoToken);
    ASSERT_TRUE(reader.readNextStartElement());
    while (!reader.isEndElement())
        reader.readNext();
    const QString name = reader.name().toString();
    record.ProcessXml(reader);
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), name);
    TestFixture::expectSample(record);
}

TYPED_TEST(BaseObjectOfRecord, ReadingEndsOnTheRecordsOwnEnd)
{
    QXmlStreamReader reader(QStringLiteral("<D>") + TestFixture::xml() + QStringLiteral("<Next/></D>"));
    ASSERT_TRUE(reader.readNextStartElement());
    ASSERT_TRUE(reader.readNextStartElement());
    TypeParam record;
    record.ProcessXml(reader);
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), TestFixture::name());
    ASSERT_TRUE(reader.readNextStartElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("Next"));
    TestFixture::expectSample(record);
}

TEST(BaseObjectWalk, GoesOnToTheRecordsEndWhenSkippingStoppedOnANestedElementOfTheSameName)
{
    OstraInterfacePort port;
    QXmlStreamReader reader(
        QStringLiteral("<D><OstraInterfacePort><X><X/></X><Port>5</Port></OstraInterfacePort><Next/></D>"));
    ASSERT_TRUE(reader.readNextStartElement());
    ASSERT_TRUE(reader.readNextStartElement());
    port.ProcessXml(reader);
    EXPECT_EQ(port.GetPort(), 5U);
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("OstraInterfacePort"));
    ASSERT_TRUE(reader.readNextStartElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("Next"));
}

} // namespace
