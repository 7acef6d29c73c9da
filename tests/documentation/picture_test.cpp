// SPDX-License-Identifier: MIT
// The picture of a record in both forms, docs/images/frame.svg, shows what the library writes.
#include "TestSupport.h"

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>

using namespace testing_support;

namespace {

// The texts of the elements of that class in the picture.
QStringList textsOf(const QString& name)
{
    QFile file(projectPath("docs/images/frame.svg"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader reader(&file);
    QStringList texts;
    while (!reader.atEnd())
        if (reader.readNext() == QXmlStreamReader::StartElement
            && reader.attributes().value(QLatin1String("class")) == name)
            texts.append(reader.readElementText());
    EXPECT_FALSE(reader.hasError()) << qPrintable(reader.errorString());
    return texts;
}

OstraInterfacePort shownRecord()
{
    OstraInterfacePort record;
    record.SetPort(5000);
    return record;
}

} // namespace

TEST(Picture, ShowsTheXmlOfTheRecord)
{
    QString xml = shownRecord().GetCompactXmlString().trimmed();
    // Without the XML declaration.
    xml.remove(QRegularExpression("^<\\?.*?\\?>\\s*"));
    EXPECT_EQ(textsOf("xml"), QStringList{xml});
}

TEST(Picture, ShowsTheBytesOfTheRecord)
{
    const QByteArray bytes = shownRecord().GetBinaryRepresentationAsQByteArray();
    EXPECT_EQ(textsOf("byte").join(' '), QString::fromLatin1(bytes.toHex(' ').toUpper()));
}

TEST(Picture, TellsWhatTheBytesMean)
{
    EXPECT_EQ(textsOf("label"), (QStringList{"OstraInterfacePort", "16 bytes", "Port", "8 bytes", "5000"}));
}
