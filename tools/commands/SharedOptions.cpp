// SPDX-License-Identifier: MIT
#include "SharedOptions.h"

#include "InputFiles.h"

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

OptionTable inputsArgument()
{
    return required(repeatable(
        argument("FILE", fileValue(), "Documents, folders of documents, or - for standard input.")));
}

QStringList inputsOf(const Arguments& arguments) { return filesAmong(arguments.texts("FILE")); }

} // namespace routermsg
