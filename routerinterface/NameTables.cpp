// SPDX-License-Identifier: MIT
#include "routerinterface/NameTables.h"

namespace PELLU300ROUTERINTERFACEXML {

#define SCOPE PelLu300RouterMessage
#define ENUMERATION Type
#define ENUMERATORS(ROW) ROW(Request) ROW(Reply) ROW(Event)
#include "routerinterface/machinery/DefineNames.h"

#define SCOPE MastershipState
#define ENUMERATION State
#define ENUMERATORS(ROW) ROW(NoMasterPresent) ROW(MasterPresent) ROW(RouterIsMaster)
#include "routerinterface/machinery/DefineNames.h"

// The names of a choice come from the record's members (machinery/DefineRecord.h).

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
