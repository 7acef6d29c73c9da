// SPDX-License-Identifier: MIT
#include "SharedOptions.h"

#include "UsageError.h"
#include "documents/DocumentError.h"

#include <algorithm>
#include <utility>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

OptionTable formOption(const char* name, const QString& text)
{
    return choice({name}, "FORM", FormNames(), text);
}

std::optional<Form> formOf(const Arguments& arguments, const char* name)
{
    return arguments.choice<Form>(name);
}

OptionTable messageOption()
{
    return option({"--message"}, "N", "Only message N of each input, or N..M: messages N to M.");
}

namespace {

// Only digits; QString would also accept spaces and signs.
qint64 numberIn(const QString& text, bool& isNumber)
{
    const qint64 number = text.toLongLong(&isNumber);
    isNumber =
        isNumber && std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    return number;
}

} // namespace

MessageRange messagesOf(const Arguments& arguments)
{
    MessageRange range;
    if (!arguments.isGiven("--message"))
        return range;
    const QString text = arguments.text("--message");
    const QStringList ends = text.split(QStringLiteral(".."));
    bool isFirst = false;
    bool isLast = false;
    range.first = numberIn(ends.constFirst(), isFirst);
    range.last = numberIn(ends.constLast(), isLast);
    if (ends.size() > 2 || !isFirst || !isLast || range.first < 1 || range.last < range.first)
        arguments.refuse(
            QStringLiteral("\"%1\" is no value of --message. Write the number of a message, counted "
                           "from 1, or two numbers such as 2..5.")
                .arg(text));
    return range;
}

OptionTable takingPath(OptionTable row) { return suggesting(PathPattern::Examples(), std::move(row)); }

PathPattern pathOf(const Arguments& arguments, const char* name)
{
    try {
        return PathPattern(arguments.text(name));
    } catch (const InvalidMemberPath& error) {
        throw UsageError(error.GetText());
    }
}

OptionTable inputsArgument()
{
    return required(repeatable(
        argument("FILE", fileValue(), "Documents, folders of documents, or - for standard input.")));
}

InputList inputsOf(const Arguments& arguments) { return inputsAmong(arguments.texts("FILE")); }

} // namespace routermsg
