// SPDX-License-Identifier: MIT
#include "routerinterface/Fragment.h"

#include "routerinterface/machinery/RecordDefinition.h"

namespace PELLU300ROUTERINTERFACEXML {

#define RECORD Fragment
#define BLOCK machinery::ChoiceBlock<Fragment::ChoiceFragment>
#define CHOICE ChoiceFragment
// clang-format off
//        kind    type                      member              field                 binary tag
#define MEMBERS(ROW)                                                                            \
    ROW(Nested, class MastershipState,    MastershipState,    m_mastershipState,    0x111939B4) \
    ROW(Nested, class AcquireMastership,  AcquireMastership,  m_acquireMastership,  0x21BDA6E2) \
    ROW(Nested, class ReleaseMastership,  ReleaseMastership,  m_releaseMastership,  0xFC38AB7C) \
    ROW(Nested, class OstraInterfacePort, OstraInterfacePort, m_ostraInterfacePort, 0xF9E464D0) \
    ROW(Nested, class PelVtConnectServer, PelVtConnectServer, m_pelVtConnectServer, 0x0BBAB464) \
    ROW(Nested, class RouterVtServerPort, RouterVtServerPort, m_routerVtServerPort, 0x5D020EA0) \
    ROW(Nested, class DF_Params,          DF_Params,          m_dF_Params,          0xBE2DFF74)
// clang-format on
#include "routerinterface/machinery/DefineRecord.h"

const Fragment::ChoiceFragment& Fragment::GetChoiceFragment() const
{
    return machinery::initData(*this).choice;
}

void Fragment::InitChoice(const ChoiceFragment& choice)
{
    // The argument may be this record's own choice, which the reset changes.
    const ChoiceFragment chosen = choice;
    const auto withChosen = [chosen](const auto& action) {
        Data::Members::forEach([&](auto member) {
            if (member.index == chosen)
                action(member);
        });
    };
    // What the payload needs memory for comes first: when it is lacking the record stays as it was.
    withChosen([this](auto member) {
        using Member = decltype(member);
        machinery::orStayEmpty(*this, [this] {
            machinery::defaultOf<Member>(*this);
            machinery::initMember<Member>(*this);
        });
    });
    Reset();
    if (chosen == GetInvalidChoiceFragment() || (GetValidate() && !machinery::isEnumerator(chosen)))
        machinery::refuseEnumerator<ChoiceFragment>(machinery::invalidChoiceText(*this),
                                                    machinery::numberText(chosen));
    withChosen([this](auto member) {
        using Member = decltype(member);
        machinery::setMember<Member>(*this, machinery::defaultOf<Member>(*this));
    });
}

void Fragment::ResetChoiceFragment() { machinery::clearChoice(*this); }

QString Fragment::ChoiceFragmentToName(const ChoiceFragment& choice) const
{
    return IsValidChoiceFragment(choice) ? machinery::nameOf(choice) : QString();
}

Fragment::ChoiceFragment Fragment::NameToChoiceFragment(const QString& name) const
{
    return machinery::enumeratorOf(name, GetInvalidChoiceFragment());
}

QStringList Fragment::GetChoiceFragments() { return NamesOf(ChoiceFragment()); }
QStringList Fragment::GetGUIChoiceFragments() { return machinery::displayNames<ChoiceFragment>(); }

bool Fragment::IsValidChoiceFragment(const ChoiceFragment& choice) const
{
    return choice != GetInvalidChoiceFragment();
}

const Fragment::ChoiceFragment& Fragment::GetInvalidChoiceFragment() const
{
    machinery::initData(*this);
    return machinery::DataOf<Fragment>::invalidChoice;
}

} // namespace PELLU300ROUTERINTERFACEXML
