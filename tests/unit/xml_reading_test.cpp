// SPDX-License-Identifier: MIT
// Records are read from good and bad XML, alone, nested, in lists and by derived classes.

#include "XmlSupport.h"

#include <utility>

namespace {

using namespace testing_support;

TYPED_TEST_SUITE(XmlMappingOfEveryRecord, RecordsWithSamples, RecordName);

// --- reading ----------------------------------------------------------------------------------

TYPED_TEST(XmlMappingOfEveryRecord, AnEmptyElementSetsNothing)
{
    TypeParam record;
    readXml(record, QLatin1Char('<') + elementName(record) + text("/>"));
    EXPECT_TRUE(record.IsInitialized());
    EXPECT_FALSE(record.AnyData());
    EXPECT_TRUE(record == TypeParam());
}

TYPED_TEST(XmlMappingOfEveryRecord, AttributesAreAcceptedAndNotKept)
{
    TypeParam source;
    fill(source);
    QString xml = xmlOf(source);
    QString withAttributes = xml;
    withAttributes.replace(0, elementName(source).size() + 1,
                           QLatin1Char('<') + elementName(source)
                               + text(" version=\"1.0\" Port=\"9\" Type=\"Reply\""));
    ASSERT_NE(withAttributes, xml);
    TypeParam target;
    readXml(target, withAttributes);
    EXPECT_TRUE(target == source);
    EXPECT_EQ(xmlOf(target), xml);
}

TYPED_TEST(XmlMappingOfEveryRecord, UnknownElementsAreSkippedWithAllTheyContain)
{
    TypeParam source;
    fill(source);
    const QString xml = xmlOf(source);
    const QString unknown =
        text("<Unknown a=\"b\">text<Type>Reply</Type><Port>9</Port><Fragment><OstraInterfacePort/></Fragment>"
             "<Success>x</Success><State>MasterPresent</State><!-- c --><?p i?><![CDATA[<Port>]]></Unknown>");
    const auto behindStart = elementName(source).size() + 2;
    QString first = xml;
    first.insert(behindStart, unknown);
    QString last = xml;
    last.insert(xml.size() - elementName(source).size() - 3, unknown);
    for (const bool validate : {false, true})
        for (const QString& input : {first, last}) {
            TypeParam target;
            target.SetValidate(validate);
            readXml(target, input);
            EXPECT_TRUE(target == source);
            EXPECT_EQ(xmlOf(target), xml);
        }
}

TYPED_TEST(XmlMappingOfEveryRecord, TextBetweenTheChildElementsIsIgnored)
{
    TypeParam source;
    fill(source);
    QString xml = xmlOf(source);
    xml.insert(elementName(source).size() + 2, text("\n  7 <!-- 8 --><![CDATA[9]]><?p i?>\n  "));
    TypeParam target;
    readXml(target, xml);
    EXPECT_TRUE(target == source);
}

TYPED_TEST(XmlMappingOfEveryRecord, TheReaderIsLeftOnTheEndOfTheRecordsElement)
{
    TypeParam source;
    fill(source);
    const QString xml = xmlOf(source);
    QXmlStreamReader reader(text("<list>") + xml + xml + text("<after/></list>"));
    ASSERT_TRUE(reader.readNextStartElement());
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(reader.readNextStartElement());
        TypeParam target;
        target.ProcessXml(reader);
        EXPECT_TRUE(target == source);
        EXPECT_TRUE(reader.isEndElement());
        EXPECT_EQ(reader.name().toString(), elementName(source));
    }
    ASSERT_TRUE(reader.readNextStartElement());
    EXPECT_EQ(reader.name().toString(), text("after"));
}

TYPED_TEST(XmlMappingOfEveryRecord, TheNameOfTheElementItselfDoesNotMatter)
{
    TypeParam source;
    fill(source);
    QString xml = xmlOf(source);
    xml.replace(elementName(source), text("Anything"));
    if (xml.contains(text("<Anything>"))) {
        TypeParam target;
        readXml(target, xml);
        EXPECT_TRUE(target == source);
    } else {
        ADD_FAILURE() << "the record wrote no element of its name";
    }
}

TYPED_TEST(XmlMappingOfEveryRecord, AnElementNestedInOneOfItsOwnNameIsUnknown)
{
    TypeParam source;
    fill(source);
    const QString xml = xmlOf(source);
    const QString inner = QLatin1Char('<') + elementName(source) + text("><Port>9</Port></")
                          + elementName(source) + QLatin1Char('>');
    QString nested = xml;
    nested.insert(elementName(source).size() + 2, inner);
    TypeParam target;
    readXml(target, nested);
    EXPECT_TRUE(target == source);
}

TEST(XmlMappingReading, ChildElementsMayComeInAnyOrder)
{
    DF_Params params;
    readXml(params,
            text("<DF_Params><PanoramaSpan>4</PanoramaSpan><Frequency>1</Frequency><Bandwidth>3</Bandwidth>"
                 "<DemodulationFrequency>2</DemodulationFrequency></DF_Params>"));
    EXPECT_EQ(xmlOf(params),
              text("<DF_Params><Frequency>1.00</Frequency><DemodulationFrequency>2.00</DemodulationFrequency>"
                   "<Bandwidth>3.00</Bandwidth><PanoramaSpan>4.00</PanoramaSpan></DF_Params>"));
    PelLu300RouterMessage message;
    readXml(message,
            text("<PelLu300RouterMessage><Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort>"
                 "</Fragment><MessageID>7</MessageID><Fragment><OstraInterfacePort><Port>2</Port>"
                 "</OstraInterfacePort></Fragment><Type>Event</Type></PelLu300RouterMessage>"));
    EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Event);
    EXPECT_EQ(message.GetMessageID(), 7U);
    EXPECT_EQ(portsOf(message), (QVector<unsigned int>{1, 2}));
}

TEST(XmlMappingReading, MembersWithoutAnElementKeepValueAndFlag)
{
    PelVtConnectServer server;
    server.SetAddress(text("a"));
    readXml(server, text("<PelVtConnectServer><Port>5</Port></PelVtConnectServer>"));
    EXPECT_EQ(server.GetAddress(), text("a"));
    EXPECT_TRUE(server.IsAddressSet());
    EXPECT_EQ(server.GetPort(), 5U);
    MastershipState state;
    readXml(state, text("<MastershipState><MasterClientID>c</MasterClientID></MastershipState>"));
    EXPECT_FALSE(state.IsStateSet());
}

TEST(XmlMappingReading, TheLastOfSeveralElementsOfAMemberCounts)
{
    OstraInterfacePort record;
    readXml(record,
            text("<OstraInterfacePort><Port>1</Port><Port>2</Port><Port>3</Port></OstraInterfacePort>"));
    EXPECT_EQ(record.GetPort(), 3U);
}

TEST(XmlMappingReading, NamesAreComparedExactlyAndCaseCounts)
{
    PelLu300RouterMessage message;
    readXml(message,
            text("<PelLu300RouterMessage><type>Event</type><TYPE>Event</TYPE><messageID>1</messageID>"
                 "<MessageId>1</MessageId><fragment><OstraInterfacePort/></fragment><Types>Event</Types>"
                 "<Typ>Event</Typ></PelLu300RouterMessage>"));
    EXPECT_FALSE(message.AnyData());
    EXPECT_FALSE(message.IsFragmentSet());
    OstraInterfacePort port;
    readXml(port, text("<OstraInterfacePort><port>1</port><PORT>1</PORT></OstraInterfacePort>"));
    EXPECT_FALSE(port.IsPortSet());
    Fragment fragment;
    readXml(fragment,
            text("<Fragment><ostraInterfacePort/><Ostra/><m_ostraInterfacePort/><DFParams/></Fragment>"));
    EXPECT_FALSE(fragment.AnyData());
    PelLu300RouterInterfaceXml document;
    readXml(document, text("<PelLu300RouterInterfaceXml><Message><Type>Event</Type></Message>"
                           "<pelLu300RouterMessage><Type>Event</Type></pelLu300RouterMessage>"
                           "</PelLu300RouterInterfaceXml>"));
    EXPECT_FALSE(document.IsPelLu300RouterMessageSet());
}

TEST(XmlMappingReading, MembersOfOtherRecordsAreUnknown)
{
    AcquireMastership record;
    readXml(record,
            text("<AcquireMastership><Port>1</Port><State>MasterPresent</State><ReleaseMastership><Success>1"
                 "</Success></ReleaseMastership></AcquireMastership>"));
    EXPECT_FALSE(record.AnyData());
}

TEST(XmlMappingReading, AnUnknownElementIsLeftEarlyOnANestedOneOfTheSameName)
{
    PelVtConnectServer record;
    readXml(record, text("<PelVtConnectServer><X><Address>skipped</Address><X><Port>5</Port></X>"
                         "<Address>read</Address></X></PelVtConnectServer>"));
    EXPECT_EQ(record.GetPort(), 5U);
    EXPECT_EQ(record.GetAddress(), text("read"));
    PelVtConnectServer skipping;
    readXml(skipping, text("<PelVtConnectServer><X><Y><Port>5</Port></Y><Address>skipped</Address></X>"
                           "</PelVtConnectServer>"));
    EXPECT_FALSE(skipping.AnyData());
}

TEST(XmlMappingReading, AfterAnEarlyStopTheRecordIsReadToItsOwnEnd)
{
    QXmlStreamReader reader(
        text("<PelLu300RouterMessage><X>a<X><X/></X>b</X><MessageID>7</MessageID>"
             "<Fragment><X><X><OstraInterfacePort><Port>1</Port></OstraInterfacePort></X></X>"
             "</Fragment><Type>Event</Type></PelLu300RouterMessage>"));
    ASSERT_TRUE(reader.readNextStartElement());
    PelLu300RouterMessage message;
    message.ProcessXml(reader);
    EXPECT_EQ(message.GetMessageID(), 7U);
    EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Event);
    EXPECT_EQ(portsOf(message), (QVector<unsigned int>{1}));
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), text("PelLu300RouterMessage"));
    reader.readNext();
    EXPECT_TRUE(reader.isEndDocument());
    EXPECT_FALSE(reader.hasError());
}

// --- nested records and lists -----------------------------------------------------------------

TEST(XmlMappingNested, EachPayloadElementSelectsAndFillsItsPayload)
{
    Fragment fragment;
    const Fragment& read = fragment;
    const auto readPayload = [&](const char* element, Fragment::ChoiceFragment choice,
                                 bool (Fragment::*isSet)() const) {
        readXml(fragment, text("<Fragment>") + text(element) + text("</Fragment>"));
        EXPECT_EQ(fragment.GetChoiceFragment(), choice) << element;
        EXPECT_TRUE((fragment.*isSet)()) << element;
    };
    readPayload(
        "<MastershipState><State>MasterPresent</State><MasterClientID>c</MasterClientID></MastershipState>",
        Fragment::MastershipState, &Fragment::IsMastershipStateSet);
    EXPECT_EQ(read.GetMastershipState().GetState(), MastershipState::MasterPresent);
    readPayload("<AcquireMastership><Success>1</Success></AcquireMastership>", Fragment::AcquireMastership,
                &Fragment::IsAcquireMastershipSet);
    EXPECT_TRUE(read.GetAcquireMastership().GetSuccess());
    readPayload("<ReleaseMastership><Success>1</Success></ReleaseMastership>", Fragment::ReleaseMastership,
                &Fragment::IsReleaseMastershipSet);
    EXPECT_TRUE(read.GetReleaseMastership().GetSuccess());
    readPayload("<OstraInterfacePort><Port>1</Port></OstraInterfacePort>", Fragment::OstraInterfacePort,
                &Fragment::IsOstraInterfacePortSet);
    EXPECT_EQ(read.GetOstraInterfacePort().GetPort(), 1U);
    readPayload("<PelVtConnectServer><Port>2</Port></PelVtConnectServer>", Fragment::PelVtConnectServer,
                &Fragment::IsPelVtConnectServerSet);
    EXPECT_EQ(read.GetPelVtConnectServer().GetPort(), 2U);
    readPayload("<RouterVtServerPort><Port>3</Port></RouterVtServerPort>", Fragment::RouterVtServerPort,
                &Fragment::IsRouterVtServerPortSet);
    EXPECT_EQ(read.GetRouterVtServerPort().GetPort(), 3U);
    readPayload("<DF_Params><Bandwidth>4</Bandwidth></DF_Params>", Fragment::DF_Params,
                &Fragment::IsDF_ParamsSet);
    EXPECT_EQ(read.GetDF_Params().GetBandwidth(), 4.0);
    // The choice changes, but the payload that was read before stays set.
    EXPECT_TRUE(fragment.IsMastershipStateSet());
    EXPECT_TRUE(fragment.IsRouterVtServerPortSet());
}

TEST(XmlMappingNested, OfSeveralPayloadsInAFragmentTheLastIsChosenAndTheOthersStaySet)
{
    Fragment fragment;
    readXml(fragment,
            text("<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort><DF_Params><Bandwidth>2"
                 "</Bandwidth></DF_Params></Fragment>"));
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::DF_Params);
    EXPECT_TRUE(fragment.IsOstraInterfacePortSet());
    EXPECT_EQ(xmlOf(fragment),
              text("<Fragment><DF_Params><Bandwidth>2.00</Bandwidth></DF_Params></Fragment>"));
}

TEST(XmlMappingNested, AnElementMetASecondTimeIsReadIntoTheSameRecord)
{
    Fragment fragment;
    readXml(fragment,
            text("<Fragment><PelVtConnectServer><Address>a</Address><Port>1</Port></PelVtConnectServer>"
                 "<DF_Params/><PelVtConnectServer><Port>2</Port></PelVtConnectServer></Fragment>"));
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::PelVtConnectServer);
    EXPECT_EQ(xmlOf(fragment), text("<Fragment><PelVtConnectServer><Address>a</Address><Port>2</Port>"
                                    "</PelVtConnectServer></Fragment>"));
}

TEST(XmlMappingNested, ASecondMessageElementOverwritesMembersAndAppendsFragments)
{
    PelLu300RouterInterfaceXml document;
    readXml(
        document,
        text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Request</Type><MessageID>7</MessageID>"
             "<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment></"
             "PelLu300RouterMessage>"
             "<PelLu300RouterMessage><Type>Event</Type><Fragment><OstraInterfacePort><Port>2</Port>"
             "</OstraInterfacePort></Fragment></PelLu300RouterMessage></PelLu300RouterInterfaceXml>"));
    EXPECT_TRUE(document.IsPelLu300RouterMessageSet());
    EXPECT_EQ(
        xmlOf(document),
        text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Event</Type><MessageID>7</MessageID>"
             "<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment>"
             "<Fragment><OstraInterfacePort><Port>2</Port></OstraInterfacePort></Fragment>"
             "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>"));
}

TEST(XmlMappingNested, AnEmptyMessageElementSetsTheMessage)
{
    PelLu300RouterInterfaceXml document;
    readXml(document,
            text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage/></PelLu300RouterInterfaceXml>"));
    EXPECT_TRUE(document.IsPelLu300RouterMessageSet());
    EXPECT_FALSE(document.AnyData());
}

TEST(XmlMappingNested, ListItemsAreReadInDocumentOrderBehindThoseThatAreThere)
{
    PelLu300RouterMessage message;
    message.AppendFragment(withPort(9));
    readXml(message, text("<PelLu300RouterMessage>"
                          "<Fragment><OstraInterfacePort><Port>3</Port></OstraInterfacePort></Fragment>"
                          "<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment>"
                          "<Fragment><OstraInterfacePort><Port>2</Port></OstraInterfacePort></Fragment>"
                          "</PelLu300RouterMessage>"));
    EXPECT_TRUE(message.IsFragmentSet());
    EXPECT_EQ(portsOf(message), (QVector<unsigned int>{9, 3, 1, 2}));
}

TEST(XmlMappingNested, AListItemKeepsNothingOfTheItemReadBefore)
{
    PelLu300RouterMessage message;
    readXml(message,
            text("<PelLu300RouterMessage><Fragment><PelVtConnectServer><Address>a</Address><Port>1</Port>"
                 "</PelVtConnectServer></Fragment><Fragment><PelVtConnectServer><Port>2</Port>"
                 "</PelVtConnectServer></Fragment><Fragment/></PelLu300RouterMessage>"));
    ASSERT_EQ(message.GetFragment().size(), 3);
    EXPECT_EQ(xmlOf(message), text("<PelLu300RouterMessage><Type></"
                                   "Type><Fragment><PelVtConnectServer><Address>a</Address><Port>1</Port>"
                                   "</PelVtConnectServer></Fragment><Fragment><PelVtConnectServer><Port>2</"
                                   "Port></PelVtConnectServer>"
                                   "</Fragment><Fragment/></PelLu300RouterMessage>"));
}

TEST(XmlMappingNested, ADefaultItemDoesNotMatterInReading)
{
    PelLu300RouterMessage message;
    message.SetDefaultFragment(withPort(9));
    readXml(message, text("<PelLu300RouterMessage><Fragment/></PelLu300RouterMessage>"));
    ASSERT_EQ(message.GetFragment().size(), 1);
    EXPECT_FALSE(message.GetFragment()[0].AnyData());
}

TEST(XmlMappingNested, AnItemWithoutUsablePayloadIsRefusedUnderValidation)
{
    for (const char* item : {"<Fragment/>", "<Fragment>text</Fragment>", "<Fragment><Unknown/></Fragment>",
                             "<Fragment><dF_Params/></Fragment>"}) {
        PelLu300RouterMessage message;
        message.SetValidate(true);
        expectThrow<IncompleteDefinitionException>(
            [&] {
                readXml(message,
                        text("<PelLu300RouterMessage><Type>Event</Type><Fragment><DF_Params/></Fragment>")
                            + text(item) + text("<Fragment><DF_Params/></Fragment></PelLu300RouterMessage>"));
            },
            text("PelLu300RouterMessage: Tried to append not completely defined or invalid item Fragment."));
        EXPECT_EQ(message.GetFragment().size(), 1) << item;
        EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Event);
    }
}

TEST(XmlMappingNested, AFailedPayloadMovesTheChoiceButIsNotFlagged)
{
    Fragment fragment = withPort(1);
    fragment.SetValidate(true);
    EXPECT_THROW(
        readXml(fragment, text("<Fragment><AcquireMastership><Success/></AcquireMastership></Fragment>")),
        InvalidXmlException);
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::AcquireMastership);
    EXPECT_FALSE(fragment.IsAcquireMastershipSet());
    EXPECT_TRUE(fragment.IsOstraInterfacePortSet());
}

TEST(XmlMappingNested, AFailedMessageIsNotFlaggedAndKeepsWhatWasReadBefore)
{
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] {
            readXml(document,
                    text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><MessageID>7</MessageID>"
                         "<Fragment><DF_Params/></Fragment><Type>Unknown</Type></PelLu300RouterMessage>"
                         "</PelLu300RouterInterfaceXml>"));
        },
        text("enum is not valid (classname=PelLu300RouterMessage,membername=m_type)"));
    EXPECT_FALSE(document.IsPelLu300RouterMessageSet());
    EXPECT_EQ(std::as_const(document).GetPelLu300RouterMessage().GetMessageID(), 7U);
    EXPECT_EQ(std::as_const(document).GetPelLu300RouterMessage().GetFragment().size(), 1);
}

TEST(XmlMappingNested, FailuresOfPayloadsPassThroughTheWholeDocument)
{
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    expectThrow<InvalidXmlException>(
        [&] {
            readXml(document,
                    text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Reply</Type><Fragment>"
                         "<ReleaseMastership><Success></Success></ReleaseMastership></Fragment>"
                         "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>"));
        },
        text("Please set a value or a default for the boolean 'Success' in 'ReleaseMastership'."));
    EXPECT_TRUE(std::as_const(document).GetPelLu300RouterMessage().GetFragment().isEmpty());
    expectThrow<OutOfRangeException>(
        [&] {
            readXml(document,
                    text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Fragment><MastershipState>"
                         "<State>Absent</State></MastershipState></Fragment></PelLu300RouterMessage>"
                         "</PelLu300RouterInterfaceXml>"));
        },
        text("enum is not valid (classname=MastershipState,membername=m_state)"));
}

TEST(XmlMappingNested, ReadingRunsNoCheck)
{
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    EXPECT_NO_THROW(
        readXml(document, text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><MessageID>7"
                               "</MessageID></PelLu300RouterMessage></PelLu300RouterInterfaceXml>")));
    EXPECT_THROW(document.Check(), OutOfRangeException);
}

// --- the reader's state -----------------------------------------------------------------------

TYPED_TEST(XmlMappingOfEveryRecord, AReaderThatHasNotBegunIsLeftAsItIs)
{
    TypeParam source;
    fill(source);
    QXmlStreamReader reader(xmlOf(source));
    TypeParam target;
    target.ProcessXml(reader);
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::NoToken);
    EXPECT_FALSE(target.AnyData());
    ASSERT_TRUE(reader.readNextStartElement());
    target.ProcessXml(reader);
    EXPECT_TRUE(target == source);
}

TYPED_TEST(XmlMappingOfEveryRecord, AReaderOnAnyOtherTokenIsLeftAsItIs)
{
    TypeParam source;
    fill(source);
    QXmlStreamReader reader(text("<list>text<!-- c --><?p i?>") + xmlOf(source) + text("</list>"));
    QXmlStreamReader::TokenType tokens[] = {QXmlStreamReader::StartDocument, QXmlStreamReader::StartElement,
                                            QXmlStreamReader::Characters, QXmlStreamReader::Comment,
                                            QXmlStreamReader::ProcessingInstruction};
    for (const auto token : tokens) {
        ASSERT_EQ(reader.readNext(), token);
        if (token == QXmlStreamReader::StartElement)
            continue;
        TypeParam target;
        target.ProcessXml(reader);
        EXPECT_EQ(reader.tokenType(), token);
        EXPECT_FALSE(target.AnyData());
    }
    ASSERT_TRUE(reader.readNextStartElement());
    TypeParam target;
    target.ProcessXml(reader);
    EXPECT_TRUE(target == source);
    ASSERT_TRUE(reader.isEndElement());
    TypeParam onEnd;
    onEnd.ProcessXml(reader);
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::EndElement);
    EXPECT_FALSE(onEnd.AnyData());
}

TYPED_TEST(XmlMappingOfEveryRecord, AReaderAtItsEndIsLeftAsItIs)
{
    for (const char* input : {"", "no XML", "<a/>", "<a"}) {
        QXmlStreamReader reader(text(input));
        while (!reader.atEnd())
            reader.readNext();
        TypeParam record;
        record.ProcessXml(reader);
        EXPECT_TRUE(reader.atEnd()) << input;
        EXPECT_FALSE(record.AnyData()) << input;
    }
}

TEST(XmlMappingReaderState, EveryBeginningOfADocumentIsReadToItsEndAndKeepsWhatWasComplete)
{
    const QString whole =
        text("<PelLu300RouterInterfaceXml version=\"1\"><Unknown><PelLu300RouterMessage/></Unknown>"
             "<PelLu300RouterMessage><MessageID>7</MessageID><Fragment><OstraInterfacePort><Port>1</Port>"
             "</OstraInterfacePort></Fragment><Fragment><X><X/></"
             "X><PelVtConnectServer><Address>a&amp;<![CDATA[b]]>"
             "</Address></PelVtConnectServer></Fragment><Type>Event</Type></PelLu300RouterMessage>"
             "</PelLu300RouterInterfaceXml>");
    const auto behindFirstItem = whole.indexOf(text("<Fragment><X>"));
    for (auto size = text("<PelLu300RouterInterfaceXml version=\"1\">").size(); size < whole.size(); ++size) {
        QXmlStreamReader reader(whole.left(size));
        ASSERT_TRUE(reader.readNextStartElement());
        PelLu300RouterInterfaceXml document;
        document.ProcessXml(reader);
        EXPECT_TRUE(reader.atEnd()) << size;
        EXPECT_EQ(reader.error(), QXmlStreamReader::PrematureEndOfDocumentError) << size;
        const PelLu300RouterMessage& message = std::as_const(document).GetPelLu300RouterMessage();
        if (size >= behindFirstItem) {
            EXPECT_EQ(message.GetMessageID(), 7U) << size;
            EXPECT_GE(message.GetFragment().size(), 1) << size;
            EXPECT_EQ(message.GetFragment()[0].GetOstraInterfacePort().GetPort(), 1U) << size;
        }
        EXPECT_LE(message.GetFragment().size(), 2) << size;
    }
}

TEST(XmlMappingReaderState, InputThatIsNotWellFormedEndsTheReadingWithTheErrorInTheReader)
{
    for (const char* input : {"<PelVtConnectServer><Port>5</Port></Wrong>",
                              "<PelVtConnectServer><Port>5</Port><X></Y></PelVtConnectServer>",
                              "<PelVtConnectServer><Port>5</Port>&undeclared;</PelVtConnectServer>",
                              "<PelVtConnectServer><Port>5</Port><Address>a</Adress></PelVtConnectServer>"}) {
        QXmlStreamReader reader(text(input));
        ASSERT_TRUE(reader.readNextStartElement());
        PelVtConnectServer record;
        record.SetValidate(true);
        EXPECT_NO_THROW(record.ProcessXml(reader)) << input;
        EXPECT_TRUE(reader.hasError()) << input;
        EXPECT_TRUE(reader.atEnd()) << input;
        EXPECT_EQ(record.GetPort(), 5U) << input;
    }
}

TEST(XmlMappingReaderState, ADeeplyNestedUnknownElementIsSkipped)
{
    QString open;
    QString close;
    for (int level = 0; level < 500; ++level) {
        const QString name = text("X%1").arg(level);
        open += QLatin1Char('<') + name + QLatin1Char('>');
        close.prepend(text("</") + name + QLatin1Char('>'));
    }
    OstraInterfacePort record;
    readXml(record, text("<OstraInterfacePort>") + open + text("<Port>1</Port>") + close
                        + text("<Port>2</Port></OstraInterfacePort>"));
    EXPECT_EQ(record.GetPort(), 2U);
    OstraInterfacePort unset;
    readXml(unset, text("<OstraInterfacePort>") + open + text("<Port>1</Port>") + close
                       + text("</OstraInterfacePort>"));
    EXPECT_FALSE(unset.IsPortSet());
}

// --- derived classes --------------------------------------------------------------------------

// Notes the child elements for which the walk calls it, and reads one of its own.
template <class R>
class Extended : public R
{
public:
    QStringList visited;
    QString note;

protected:
    void ProcessXmlStartElement(QXmlStreamReader& reader) override
    {
        EXPECT_TRUE(reader.isStartElement());
        visited.append(reader.name().toString());
        if (visited.last() == text("Note"))
            note = this->GetTextValue(reader);
        else
            R::ProcessXmlStartElement(reader);
    }
};

TYPED_TEST(XmlMappingOfEveryRecord, TheWalkCallsTheReadingOperationOfADerivedClassOncePerChildElement)
{
    TypeParam source;
    fill(source);
    QString xml = xmlOf(source);
    xml.insert(elementName(source).size() + 2,
               text("<Unknown><Note>skipped</Note></Unknown><Note>a<b>c</b>d</Note>"));
    xml.insert(xml.size() - elementName(source).size() - 3, text("<Last/>"));
    Extended<TypeParam> target;
    readXml(target, xml);
    EXPECT_EQ(target.note, text("ad"));
    ASSERT_EQ(target.visited.size(), 4);
    EXPECT_EQ(target.visited[0], text("Unknown"));
    EXPECT_EQ(target.visited[1], text("Note"));
    EXPECT_EQ(target.visited[3], text("Last"));
    EXPECT_TRUE(static_cast<const TypeParam&>(target) == source);
}

TEST(XmlMappingDerived, TheWalkVisitsEveryFragmentOfAMessage)
{
    Extended<PelLu300RouterMessage> message;
    readXml(message,
            text("<PelLu300RouterMessage><Type>Event</Type><Fragment><DF_Params/></Fragment><Fragment/>"
                 "<MessageID>7</MessageID></PelLu300RouterMessage>"));
    EXPECT_EQ(message.visited,
              (QStringList{text("Type"), text("Fragment"), text("Fragment"), text("MessageID")}));
    EXPECT_EQ(message.GetFragment().size(), 2);
}

// Makes the reading operation callable for a single child element.
template <class R>
struct ChildReader : R
{
    using R::ProcessXmlStartElement;
};

TYPED_TEST(XmlMappingOfEveryRecord, ASingleUnknownChildElementIsConsumedToItsEnd)
{
    QXmlStreamReader reader(text("<outer><Unknown><a>1</a></Unknown><after/></outer>"));
    ASSERT_TRUE(reader.readNextStartElement());
    ASSERT_TRUE(reader.readNextStartElement());
    ChildReader<TypeParam> record;
    record.ProcessXmlStartElement(reader);
    EXPECT_TRUE(record.IsInitialized());
    EXPECT_FALSE(record.AnyData());
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), text("Unknown"));
}

TEST(XmlMappingDerived, ASingleKnownChildElementIsConsumedToItsEnd)
{
    QXmlStreamReader reader(text("<outer><Port>7</Port><Fragment><DF_Params/></Fragment></outer>"));
    ASSERT_TRUE(reader.readNextStartElement());
    ASSERT_TRUE(reader.readNextStartElement());
    ChildReader<OstraInterfacePort> port;
    port.ProcessXmlStartElement(reader);
    EXPECT_EQ(port.GetPort(), 7U);
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), text("Port"));
    ASSERT_TRUE(reader.readNextStartElement());
    ChildReader<PelLu300RouterMessage> message;
    message.ProcessXmlStartElement(reader);
    EXPECT_EQ(message.GetFragment().size(), 1);
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), text("Fragment"));
}

TEST(XmlMappingDerived, AnUnknownChildElementIsLeftOnANestedStartOfTheSameName)
{
    QXmlStreamReader reader(text("<outer><X><a/><X></X></X></outer>"));
    ASSERT_TRUE(reader.readNextStartElement());
    ASSERT_TRUE(reader.readNextStartElement());
    ChildReader<OstraInterfacePort> record;
    record.ProcessXmlStartElement(reader);
    EXPECT_TRUE(reader.isStartElement());
    EXPECT_EQ(reader.name().toString(), text("X"));
}

// --- both ways --------------------------------------------------------------------------------

TEST(XmlMappingRoundTrip, AWholeDocumentComesBackEqual)
{
    PelLu300RouterInterfaceXml source;
    source.SetValidate(true);
    PelLu300RouterMessage& message = source.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Reply);
    message.SetMessageID(2147483647);
    Fragment fragment;
    fragment.GetMastershipState().SetState(MastershipState::RouterIsMaster);
    fragment.GetMastershipState().SetMasterClientID(text("Zürich <7>"));
    message.AppendFragment(fragment);
    fragment.GetDF_Params().SetFrequency(433.92);
    message.AppendFragment(fragment);
    fragment.GetPelVtConnectServer().SetAddress(empty());
    message.AppendFragment(fragment);
    PelLu300RouterInterfaceXml target;
    target.SetValidate(true);
    readXml(target, xmlOf(source));
    EXPECT_TRUE(target == source);
    EXPECT_EQ(xmlOf(target), xmlOf(source));
}

} // namespace
