// SPDX-License-Identifier: MIT
// The samples of docs/errors.md, and what the page says about places and kinds.

#include "FailureKinds.h"
#include "Said.h"
#include "ShownOnPage.h"
#include "TestSupport.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>

using namespace testing_support;

namespace {

// The place of the exception that the statement throws: path, line and offset.
template <class Statement>
QString placeOf(Statement&& statement)
{
    try {
        statement();
    } catch (const MKException& exception) {
        const MODELKIT::Place& place = exception.GetPlace();
        return QStringLiteral("%1 line %2 offset %3").arg(place.path).arg(place.line).arg(place.offset);
    }
    return QStringLiteral("nothing was thrown");
}

} // namespace

TEST(ErrorsPage, ASlotCatchesWhatIsThrown)
{
    int argc = 1;
    char name[] = "test";
    char* argv[] = {name, nullptr};
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("document.xml"));
    const Said said;
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    document.GetPelLu300RouterMessage();
    QTimer timer;
    //! [a slot that catches]
    QObject::connect(&timer, &QTimer::timeout, &timer, [&document, path] {
        try {
            if (!document.SaveXml(path))
                qWarning().noquote() << MODELKIT::IMKObject::GetLastFailure().GetSentence();
        } catch (const std::exception& exception) {
            qWarning() << exception.what();
        }
    });
    //! [a slot that catches]
    QObject::connect(&timer, &QTimer::timeout, &timer, [] { QCoreApplication::exit(); });
    timer.start(0);
    QCoreApplication::exec();
    EXPECT_EQ(said.texts(), QStringList(QStringLiteral("PelLu300RouterMessage: Please set Type properly.")));
}

TEST(ErrorsPage, AnExceptionTellsTheLine)
{
    const Said said;
    const QString xml = QStringLiteral("<PelLu300RouterInterfaceXml>\n  <PelLu300RouterMessage>\n"
                                       "    <Type>Replay</Type>\n"
                                       "  </PelLu300RouterMessage>\n</PelLu300RouterInterfaceXml>\n");
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    //! [the place of an exception]
    try {
        document.SetXmlString(xml, true);
    } catch (const MKException& exception) {
        const MODELKIT::Place& place = exception.GetPlace();
        qWarning().noquote().nospace()
            << "line " << place.line << ", column " << place.column << ", in " << place.path;
    }
    //! [the place of an exception]
    EXPECT_EQ(Said::texts().join(QLatin1Char('\n')), shownOn("docs/errors.md", QStringLiteral("line 3")));
}

TEST(ErrorsPage, WhatIsThrownHasThePlaceThatIsKnown)
{
    const QString wrong = QStringLiteral("<MastershipState>\n<State>Big</State></MastershipState>");
    const QString none = QStringLiteral(" line 0 offset -1");
    const QString path = QStringLiteral("/MastershipState");
    const auto badState = static_cast<MastershipState::State>(9);
    MastershipState state;
    MastershipState bad;
    bad.SetState(badState);
    QByteArray form = bad.GetBinaryRepresentationAsQByteArray();
    const QByteArray cutFrame = bytes("1F980517 00000008 00000000");
    bad.SetValidate(true);
    state.SetValidate(true);

    EXPECT_EQ(placeOf([&] { state.SetXmlString(wrong, false); }), path + "/State line 2 offset -1");
    EXPECT_EQ(placeOf([&] { bad.Check(); }), path + none);
    EXPECT_EQ(placeOf([&] { xmlOf(bad); }), path + none);
    EXPECT_EQ(placeOf([&] { frameOf(bad); }), path + none);
    EXPECT_EQ(placeOf([&] { bad.GetXmlString(); }), path + none);
    EXPECT_EQ(placeOf([&] {
                  OstraInterfacePort cut;
                  QDataStream stream(cutFrame);
                  cut.SetBinary(stream, 12);
              }),
              QStringLiteral("/OstraInterfacePort line 0 offset 12"));
    EXPECT_EQ(placeOf([&] { state.SetState(badState); }), none);
    EXPECT_EQ(placeOf([&] { readXml(state, wrong); }), none);
    EXPECT_EQ(placeOf([&] { Fragment().InitChoice(static_cast<Fragment::ChoiceFragment>(-1)); }), none);
    PelLu300RouterMessage message;
    message.SetValidate(true);
    EXPECT_EQ(placeOf([&] { message.AppendFragment(Fragment()); }), none);
}

TEST(ErrorsPage, TheTableHasAllKinds)
{
    const QString page = pageText("docs/errors.md");
    const auto begin = page.indexOf(QStringLiteral("## Kinds of failures"));
    ASSERT_GE(begin, 0);
    const QString table = page.mid(begin, page.indexOf(QStringLiteral("\n## "), begin + 1) - begin);
    for (int kind = MODELKIT::Failure::None + 1; kind <= MODELKIT::Failure::NothingToWrite; ++kind) {
        const char* const name = nameOfKind(static_cast<MODELKIT::Failure::Kind>(kind));
        EXPECT_TRUE(table.contains(QStringLiteral("`%1`").arg(QLatin1String(name)))) << name << " is missing";
    }
}
