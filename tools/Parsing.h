// SPDX-License-Identifier: MIT
/// \file
/// What the parser of the command line takes and says, in the words of the program.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <CLI/CLI.hpp>

#include <string>

namespace routermsg {

std::string toStd(const QString& text);
QString fromStd(const std::string& text);

/// An argument as the parser leaves it alone, and back.
/// @{
std::string guarded(const std::string& argument);
QString unguarded(const std::string& argument);
/// @}

/// " Possible are a, b and c."
QString possible(const QStringList& words);
/// "-q" and "--quiet"; of an argument the name of its value.
QStringList namesOf(const CLI::Option& option);
/// The names of all options.
QStringList optionNames(const CLI::App& app);

/// \name Mistakes
/// They all throw UsageError, with advice to look at the help of the command; the functions that return found
/// no mistake.
/// @{
[[noreturn]] void refuse(const CLI::App& app, const QString& text);
/// What the command has not taken.
void refuseExtras(const CLI::App& app);
/// The parser says which option it is, in words that are not for users.
[[noreturn]] void refuseNumberOfValues(const CLI::App& app, const CLI::ArgumentMismatch& error);
/// The first required argument that is not there.
void refuseMissing(const CLI::App& app);
/// @}

} // namespace routermsg
