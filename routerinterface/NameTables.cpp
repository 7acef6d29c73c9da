// SPDX-License-Identifier: MIT
#include "routerinterface/NameTables.h"

namespace PELLU300ROUTERINTERFACEXML {

// Each table stands inside its function, so that it is there also for a static object of a program
// that is constructed before those of this file. The names of a choice come from the record's members
// (machinery/DefineRecord.h).

const QStringList& NamesOf(PelLu300RouterMessage::Type)
{
    static const QStringList names{QStringLiteral("Request"), QStringLiteral("Reply"),
                                   QStringLiteral("Event")};
    return names;
}

const QStringList& NamesOf(MastershipState::State)
{
    static const QStringList names{QStringLiteral("NoMasterPresent"), QStringLiteral("MasterPresent"),
                                   QStringLiteral("RouterIsMaster")};
    return names;
}

const QStringList& LevelNames()
{
    static const QStringList names = MODELKIT::Logger::GetLevelNames();
    return names;
}

namespace {

// Builds all tables when the library is loaded.
[[maybe_unused]] const QStringList* const builtAtLoad[] = {
    &NamesOf(PelLu300RouterMessage::Type()), &NamesOf(MastershipState::State()),
    &NamesOf(Fragment::ChoiceFragment()), &LevelNames()};

} // namespace

} // namespace PELLU300ROUTERINTERFACEXML
