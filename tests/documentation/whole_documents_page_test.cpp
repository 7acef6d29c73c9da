// SPDX-License-Identifier: MIT
// The samples of docs/whole-documents.md.

#include "Said.h"
#include "TestSupport.h"

#include "modelkit/ReadingReport.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <algorithm>

using namespace testing_support;

namespace {

class WholeDocumentsPage : public ::testing::Test
{
protected:
    void write(const char* content) const
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("request.xml"));
    PelLu300RouterInterfaceXml document;
    const Said said;
};

} // namespace

TEST_F(WholeDocumentsPage, AWriterOfYourOwnHasToBeAskedForErrors)
{
    document.GetPelLu300RouterMessage().AddFragment().GetMastershipState().SetMasterClientID(
        QString(QChar(1)));
    //! [a writer of your own]
    QString text;
    QXmlStreamWriter writer(&text);
    document.GetXml(writer);
    if (writer.hasError())
        qWarning() << "A text holds a character that XML cannot represent.";
    //! [a writer of your own]
    EXPECT_TRUE(text.contains(QStringLiteral("<MasterClientID></MasterClientID>")));
    EXPECT_EQ(said.texts(),
              QStringList(QStringLiteral("A text holds a character that XML cannot represent.")));
}

TEST_F(WholeDocumentsPage, SavesABinaryFile)
{
    document.GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Request);
    //! [saving a binary file]
    if (!document.SaveBinary(path))
        qWarning().noquote() << MODELKIT::IMKObject::GetLastFailure().GetSentence();
    //! [saving a binary file]
    EXPECT_TRUE(said.texts().isEmpty());
    PelLu300RouterInterfaceXml read;
    EXPECT_TRUE(read.LoadBinary(path));
    EXPECT_TRUE(read == document);
}

TEST_F(WholeDocumentsPage, WritesToADevice)
{
    QFile device(QStringLiteral("/dev/full"));
    ASSERT_TRUE(device.open(QIODevice::WriteOnly));
    //! [writing to a device]
    QDataStream stream(&device);
    document.GetBinaryRepresentation(stream);
    if (MODELKIT::IMKObject::GetLastFailure().kind != MODELKIT::Failure::None)
        qWarning().noquote() << MODELKIT::IMKObject::GetLastFailure().GetSentence();
    //! [writing to a device]
    EXPECT_EQ(said.texts(), QStringList(QStringLiteral("/dev/full: The binary form cannot be written: "
                                                       "No space left on device.")));
    EXPECT_EQ(stream.status(), QDataStream::WriteFailed);
}

namespace {

// A connection on which two forms and a part of a third have arrived.
class ArrivingSocket : public QIODevice
{
public:
    explicit ArrivingSocket(const QByteArray& arrived) : m_arrived(arrived) { open(QIODevice::ReadOnly); }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        const QByteArray part = m_arrived.left(static_cast<int>(size));
        m_arrived.remove(0, part.size());
        std::copy(part.begin(), part.end(), data);
        return part.size();
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray m_arrived;
};

} // namespace

TEST_F(WholeDocumentsPage, ReadsWhatHasArrived)
{
    const QByteArray form = document.GetBinaryRepresentationAsQByteArray();
    ArrivingSocket socket(form + form + form.left(6));
    int handled = 0;
    const auto handle = [&handled](const PelLu300RouterInterfaceXml&) { ++handled; };
    //! [reading without waiting]
    MODELKIT::Limits limits;
    limits.waitingTime = 0;
    const MODELKIT::LimitsInScope inScope(limits);
    QDataStream stream(&socket);
    while (document.SetBinaryRepresentation(stream))
        handle(document);
    if (MODELKIT::IMKObject::GetLastFailure().kind != MODELKIT::Failure::NotWholeYet)
        socket.close();
    //! [reading without waiting]
    EXPECT_EQ(handled, 2);
    EXPECT_TRUE(socket.isOpen());
}

TEST_F(WholeDocumentsPage, TellsWhyItFails)
{
    write("\n\n\n<PelLu300RouterInterfaceXml><PelLu300RouterMessage></Type>");
    //! [asking why it failed]
    if (!document.LoadXml(path))
        qWarning().noquote() << MODELKIT::IMKObject::GetLastFailure().GetSentence();
    //! [asking why it failed]
    ASSERT_EQ(said.texts().size(), 1);
    EXPECT_TRUE(said.texts().first().startsWith(path + ":4:"));
    EXPECT_TRUE(said.texts().first().endsWith("(in /PelLu300RouterInterfaceXml/PelLu300RouterMessage)"));
}

TEST_F(WholeDocumentsPage, TellsThePathOfWhatIsThrown)
{
    document.GetPelLu300RouterMessage();
    document.SetValidate(true);
    //! [catching what checking throws]
    try {
        document.SaveXml(path);
    } catch (const MKException& exception) {
        qWarning().noquote() << exception.GetText() << exception.GetPlace().path;
    }
    //! [catching what checking throws]
    EXPECT_EQ(said.texts(), QStringList(QStringLiteral("PelLu300RouterMessage: Please set Type properly. "
                                                       "/PelLu300RouterInterfaceXml/PelLu300RouterMessage")));
}

TEST_F(WholeDocumentsPage, ReportsWhatIsAcceptedSilently)
{
    write("<PelLu300RouterInterfaceXml>\n<PelLu300RouterMessage>\n"
          "<Type>Reply</Type><Type>Event</Type></PelLu300RouterMessage></PelLu300RouterInterfaceXml>");
    //! [keeping a report]
    MODELKIT::ReadingReport report;
    document.LoadXml(path);
    for (const auto& entry : report.GetEntries())
        qWarning().noquote() << entry.place.ToString() << entry.text << entry.place.path;
    //! [keeping a report]
    EXPECT_EQ(said.texts(), QStringList(path
                                        + ":3:19 Type came before; the last one counts. "
                                          "/PelLu300RouterInterfaceXml/PelLu300RouterMessage/Type[2]"));
}
