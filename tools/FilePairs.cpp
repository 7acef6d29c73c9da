// SPDX-License-Identifier: MIT
#include "FilePairs.h"

#include "InputList.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QMap>
#include <QtCore/QStringList>

#include <algorithm>

namespace routermsg {

namespace {

// The paths of the files by their names in the folder.
QMap<QString, QString> byNames(const QStringList& paths, const QString& folder)
{
    const QDir dir(QFileInfo(folder).absoluteFilePath());
    QMap<QString, QString> files;
    for (const QString& path : paths)
        files[dir.relativeFilePath(QFileInfo(path).absoluteFilePath())] = path;
    return files;
}

QString withoutEnding(const QString& name) { return name.left(name.lastIndexOf(QLatin1Char('.'))); }

// Removes the files that have the same name but for the ending, if there is only one in each folder.
QVector<FilePair> takePairsWithOtherEndings(QMap<QString, QString>& first, QMap<QString, QString>& second)
{
    QMap<QString, QStringList> candidates;
    for (auto i = second.cbegin(); i != second.cend(); ++i)
        candidates[withoutEnding(i.key())] += i.key();
    QMap<QString, int> counts;
    for (auto i = first.cbegin(); i != first.cend(); ++i)
        ++counts[withoutEnding(i.key())];

    QVector<FilePair> pairs;
    const QStringList names = first.keys();
    for (const QString& name : names) {
        const QString stem = withoutEnding(name);
        const QStringList others = candidates.value(stem);
        if (others.size() == 1 && counts.value(stem) == 1)
            pairs += {stem, first.take(name), second.take(others.constFirst())};
    }
    return pairs;
}

PairList pairsOfFolders(const QString& firstFolder, const QString& secondFolder)
{
    const InputList inFirst = inputsIn(firstFolder);
    const InputList inSecond = inputsIn(secondFolder);
    auto first = byNames(inFirst.files, firstFolder);
    auto second = byNames(inSecond.files, secondFolder);
    QVector<FilePair> pairs;
    const QStringList names = first.keys();
    for (const QString& name : names)
        if (second.contains(name))
            pairs += {name, first.take(name), second.take(name)};
    pairs += takePairsWithOtherEndings(first, second);
    for (auto i = first.cbegin(); i != first.cend(); ++i)
        pairs += {i.key(), i.value(), QString()};
    for (auto i = second.cbegin(); i != second.cend(); ++i)
        pairs += {i.key(), QString(), i.value()};
    std::sort(pairs.begin(), pairs.end(),
              [](const FilePair& a, const FilePair& b) { return a.name < b.name; });
    return {pairs, inFirst.problems + inSecond.problems, inFirst.problems.isEmpty(),
            inSecond.problems.isEmpty()};
}

QString sameNameIn(const QString& folder, const QString& file)
{
    return QDir(folder).filePath(QFileInfo(file).fileName());
}

} // namespace

PairList pairsOf(const QString& first, const QString& second)
{
    const bool isFirstFolder = QFileInfo(first).isDir();
    const bool isSecondFolder = QFileInfo(second).isDir();
    if (isFirstFolder && isSecondFolder)
        return pairsOfFolders(first, second);
    PairList list;
    list.pairs += {QString(), isFirstFolder ? sameNameIn(first, second) : first,
                   isSecondFolder ? sameNameIn(second, first) : second};
    return list;
}

} // namespace routermsg
