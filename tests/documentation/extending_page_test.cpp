// SPDX-License-Identifier: MIT
// The sample of docs/extending.md.

#include "PageSamples.h"
#include "Said.h"
#include "ShownOnPage.h"

using namespace testing_support;

namespace {

//! [a derived record]
class TuningRequest : public PelLu300RouterInterfaceXml
{
public:
    void Check(bool flag) const override
    {
        PelLu300RouterInterfaceXml::Check(flag);
        for (const Fragment& fragment : GetPelLu300RouterMessage().GetFragment())
            if (fragment.GetChoiceFragment() == Fragment::DF_Params
                && fragment.GetDF_Params().IsFrequencySet())
                return;
        throw IncompleteDefinitionException(QStringLiteral("A tuning request needs a frequency."));
    }

    void Check() const override { Check(false); }
};
//! [a derived record]

} // namespace

TEST(ExtendingPage, ADerivedRecordHasARuleOfItsOwn)
{
    const Said said;
    TuningRequest request;
    request.SetValidate(true);
    PelLu300RouterMessage& message = request.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Request);
    try {
        request.GetXmlString();
    } catch (const MKException& exception) {
        qWarning().noquote() << exception.GetText();
    }
    EXPECT_EQ(Said::texts().join(QLatin1Char('\n')),
              shownOn("docs/extending.md", QStringLiteral("A tuning")));
    message.AddFragment().GetDF_Params().SetFrequency(98.5e6);
    EXPECT_TRUE(request.GetXmlString().contains(QStringLiteral("98500000.00")));
}
