// SPDX-License-Identifier: MIT
#include "wire/Completion.h"

#include "commands/NewWords.h"
#include "wire/Outgoing.h"

#include "routerinterface/RecordInfo.h"

#include <algorithm>

namespace routermsg {

using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

// The end of a line that has not been typed yet.
struct LineEnd
{
    QString word;
    // The name before the dot in front of the word; empty if there is no dot.
    QString owner;
    bool isInQuotes = false;
};

LineEnd endOf(const QString& line)
{
    LineEnd end;
    QString name;
    bool isEscaped = false;
    for (const QChar character : line) {
        const bool isInValue = end.word.contains(QLatin1Char('='));
        const bool isDot = !isInValue && character == QLatin1Char('.');
        const bool wasEscaped = isEscaped;
        isEscaped = end.isInQuotes && !wasEscaped && character == QLatin1Char('\\');
        if (isInValue && !wasEscaped && character == QLatin1Char('"'))
            end.isInQuotes = !end.isInQuotes;
        if (end.isInQuotes || !(isDot || character.isSpace())) {
            end.word += character;
            continue;
        }
        // There may be blanks before the dot.
        if (!end.word.isEmpty())
            name = end.word;
        end.owner = isDot ? name : QString();
        end.word.clear();
    }
    return end;
}

QStringList thoseThatBegin(const QStringList& words, const QString& begin)
{
    QStringList found;
    std::copy_if(words.begin(), words.end(), std::back_inserter(found),
                 [&](const QString& word) { return word.startsWith(begin, Qt::CaseInsensitive); });
    return found;
}

} // namespace

Completion completionOf(const QString& line)
{
    const QString request =
        line.trimmed().startsWith(QLatin1Char('?')) ? line.mid(line.indexOf(QLatin1Char('?')) + 1) : line;
    const LineEnd end = endOf(request);
    if (end.isInQuotes)
        return {end.word, {}};
    if (const RecordInfo* owner = RecordInfo::Find(end.owner)) {
        const QStringList words = thoseThatBegin(offeredWordsOf(*owner), end.word);
        if (!words.isEmpty())
            return {end.word, words};
    }
    return {end.word, thoseThatBegin(offeredRequests(), end.word)};
}

QString sharedBeginning(const Completion& completion)
{
    QString shared = completion.words.value(0);
    for (const QString& word : completion.words) {
        const auto* const differs =
            std::mismatch(shared.cbegin(), shared.cend(), word.cbegin(), word.cend()).first;
        shared.truncate(static_cast<int>(differs - shared.cbegin()));
    }
    // Words that differ in capital letters only share less.
    return shared.size() < completion.begin.size() ? completion.begin : shared;
}

} // namespace routermsg
