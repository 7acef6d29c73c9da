// SPDX-License-Identifier: MIT
#include "HexHint.h"

#include <algorithm>
#include <cstring>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

// The word as a shell takes it.
QString shellWord(const QString& word)
{
    const bool isPlain = std::all_of(word.begin(), word.end(), [](QChar character) {
        return character.isLetterOrNumber()
               || (character.unicode() < 0x80 && std::strchr("/._-+,:@%", character.toLatin1()) != nullptr);
    });
    if (isPlain)
        return word;
    QString inside = word;
    inside.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QLatin1Char('\'') + inside + QLatin1Char('\'');
}

QString hexCommand() { return QStringLiteral("routermsg show --hex "); }

} // namespace

QString hexHint(const DocumentError& error, const MODELKIT::Place& place, const QString& path, qint64 message,
                const InputFormat& format)
{
    if (!error.IsAboutParts() || place.offset < 0)
        return QString();
    const bool isOption = path.startsWith(QLatin1Char('-')) && path.size() > 1;
    QString command = hexCommand();
    for (const QString& word : format.words() + limitWords())
        command += word + QLatin1Char(' ');
    if (message > 1)
        command += QStringLiteral("--message %1 ").arg(message);
    if (isOption)
        command += QStringLiteral("-- ");
    return command + shellWord(path) + QStringLiteral(" shows the parts around offset %1.").arg(place.offset);
}

bool isHexHint(const QString& hint) { return hint.startsWith(hexCommand()); }

} // namespace routermsg
