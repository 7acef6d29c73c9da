// The samples of docs/whole-documents.md.

#include "Said.h"
#include "TestSupport.h"

#include "modelkit/ReadingReport.h"

#include <QtCore/QFile>
#include <QtCore/QSaveFile>
#include <QtCore/QTemporaryDir>

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

TEST_F(WholeDocumentsPage, SavesABinaryFile)
{
    document.GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Request);
    //! [saving a binary file]
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        QDataStream stream(&file);
        document.GetBinaryRepresentation(stream);
        if (MODELKIT::IMKObject::GetLastFailure().kind == MODELKIT::Failure::None && file.pos() > 0)
            file.commit();
    }
    //! [saving a binary file]
    QFile saved(path);
    PelLu300RouterInterfaceXml read;
    EXPECT_TRUE(read.LoadBinary(&saved));
    EXPECT_TRUE(read == document);
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

TEST_F(WholeDocumentsPage, ReportsWhatIsAcceptedInSilence)
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
