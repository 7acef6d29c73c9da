// SPDX-License-Identifier: MIT
/// \file
/// Records from words.
///
/// The words are names of records, `Member=value` and names of enumerators. They are read in order. A value
/// belongs to the record that was named last, or to one that owns it:
///
///     Request MessageID=7 AcquireMastership DF_Params Frequency=98.5e6
#pragma once

#include "modelkit/IMKObject.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <memory>

namespace routermsg {

/// The record that the words describe, with validation switched on.
/// \throws UsageError when a word is not understood.
/// \throws MKException what the record's setters throw.
std::unique_ptr<MODELKIT::IMKObject> build(const PELLU300ROUTERINTERFACEXML::RecordInfo& root,
                                           const QStringList& words);

/// The names of all records.
QStringList recordNames();

/// All possible words. Those that need a value end with "=".
QStringList possibleWords();

/// The same, and the values that can be listed: "Success=", "Success=true", "Success=false".
QStringList offeredWords();

/// Those for the members of one record.
QStringList offeredWordsOf(const PELLU300ROUTERINTERFACEXML::RecordInfo& info);

/// The words that a record understands, for people.
struct RecordWords
{
    QString record;
    /// Whether only one of the words can be used.
    bool isChoice = false;
    QStringList words;
};

QVector<RecordWords> describeWords();

} // namespace routermsg
