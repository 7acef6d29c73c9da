// SPDX-License-Identifier: MIT
// The command `get`: the values of a member.

#include "Commands.h"
#include "FittingMessages.h"
#include "Session.h"
#include "SharedOptions.h"
#include "documents/FoundMembers.h"

#include <QtCore/QJsonObject>

#include <algorithm>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

void write(const FoundMember& found, const QString& name, Session& session)
{
    if (session.format() == Format::Json)
        session.writeJsonLine({{QStringLiteral("file"), name},
                               {QStringLiteral("path"), found.path.ToText()},
                               {QStringLiteral("value"), found.ToJson()}});
    else
        session.out().writeLine(found.ToText());
}

Status get(const Arguments& arguments, Session& session)
{
    const PathPattern pattern = pathOf(arguments, "PATH");
    FittingMessages messages(arguments, session);
    bool isFound = false;
    const Status worst = messages.forEach([&](const InputMessage& message, const Document& document) {
        FindMembers(*document.record, pattern, [&](const FoundMember& found) {
            write(found, message.name, session);
            isFound = true;
            return true;
        });
    });
    return isFound ? worst : std::max(worst, Found);
}

} // namespace

Command getCommand()
{
    CommandTable table;
    table.name = "get";
    table.summary = "Write the values of a member, one on each line.";
    table.arguments = {required(takingPath(argument("PATH", "PATH", "The path of the member."))),
                       inputsArgument()};
    table.options = {messageOption(), whereOption()};
    table.readsMessages = true;
    table.examples = {
        {"%1 get MessageID request.xml", "The number of a message."},
        {"%1 get DF_Params/Frequency week.rec --where Type=Reply", "All frequencies in the replies."},
        {"%1 get MasterClientID recordings --format json", "With file and path, for a program."}};
    return {table, get};
}

} // namespace routermsg
