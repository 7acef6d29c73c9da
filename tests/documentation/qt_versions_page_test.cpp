// SPDX-License-Identifier: MIT
// The sample of docs/qt-versions.md, which must compile with both versions.

#include "PageSamples.h"
#include "Said.h"

#include <utility>

using namespace testing_support;

TEST(QtVersionsPage, CodeThatCompilesWithBothVersions)
{
    const Said said;
    PelLu300RouterInterfaceXml document = sample();
    //! [code for both versions]
    const QVector<Fragment>& fragments = std::as_const(document).GetPelLu300RouterMessage().GetFragment();
    const auto count = fragments.size();
    for (const Fragment& fragment : fragments)
        qInfo() << fragment.ChoiceFragmentToName(fragment.GetChoiceFragment()) << "is one of" << count;
    //! [code for both versions]
    EXPECT_EQ(Said::texts(), QStringList(QStringLiteral("\"OstraInterfacePort\" is one of 1")));
}
