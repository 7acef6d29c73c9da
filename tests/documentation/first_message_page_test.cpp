// SPDX-License-Identifier: MIT
// The samples of docs/first-message.md, and what the page says that they print.

#include "Said.h"
#include "ShownOnPage.h"

#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>

using namespace testing_support;

namespace {

const char* const page = "docs/first-message.md";

PelLu300RouterInterfaceXml built()
{
    //! [building]
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Request);
    message.SetMessageID(1);
    message.AddFragment().GetDF_Params().SetFrequency(98.5e6);
    //! [building]
    return document;
}

QString said() { return Said::texts().join(QLatin1Char('\n')); }

} // namespace

TEST(FirstMessagePage, AMessageIsWrittenInBothForms)
{
    const Said heard;
    PelLu300RouterInterfaceXml document = built();
    //! [writing]
    qInfo().noquote() << document.GetXmlString();
    const QByteArray bytes = document.GetBinaryRepresentationAsQByteArray();
    qInfo().noquote() << bytes.size() << "bytes in the binary form";
    //! [writing]
    ASSERT_EQ(Said::texts().size(), 2);
    EXPECT_EQ(Said::texts().at(0).trimmed(), shownOn(page, QStringLiteral("<?xml")));
    EXPECT_EQ(Said::texts().at(1), shownOn(page, QStringLiteral("in the binary form")));
}

TEST(FirstMessagePage, AWrongFileIsExplained)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("reply.xml")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(
        "<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Replay</Type></PelLu300RouterMessage>"
        "</PelLu300RouterInterfaceXml>");
    file.close();
    const QString path = file.fileName();
    const Said heard;
    PelLu300RouterInterfaceXml received;
    received.SetValidate(true);
    //! [reading]
    try {
        if (!received.LoadXml(path))
            qWarning().noquote() << MODELKIT::IMKObject::GetLastFailure().GetSentence();
    } catch (const OutOfRangeException& exception) {
        qWarning().noquote() << MODELKIT::IMKObject::GetLastFailure().GetSentence();
        if (!exception.GetClosest().isEmpty())
            qWarning().noquote() << "Did you mean" << exception.GetClosest() + '?';
    } catch (const MKException&) {
        qWarning().noquote() << MODELKIT::IMKObject::GetLastFailure().GetSentence();
    }
    //! [reading]
    EXPECT_EQ(said().remove(folder.path() + QLatin1Char('/')), shownOn(page, QStringLiteral("reply.xml")));
}

TEST(FirstMessagePage, AMessageIsReadAndCompared)
{
    const Said heard;
    const PelLu300RouterInterfaceXml document = built();
    //! [using]
    const PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    for (const Fragment& fragment : message.GetFragment())
        if (fragment.GetChoiceFragment() == Fragment::DF_Params)
            qInfo().noquote() << "request" << message.GetMessageID() << "tunes to"
                              << QString::number(fragment.GetDF_Params().GetFrequency(), 'f', 0);
    //! [using]
    EXPECT_EQ(said(), shownOn(page, QStringLiteral("tunes to")));
    Said::texts().clear();
    //! [comparing]
    PelLu300RouterInterfaceXml copy(document);
    qInfo() << "equal:" << (copy == document);
    copy.GetPelLu300RouterMessage().SetMessageID(2);
    qInfo() << "equal:" << (copy == document);
    //! [comparing]
    EXPECT_EQ(said(), shownOn(page, QStringLiteral("equal:")));
}
