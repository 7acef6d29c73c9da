// SPDX-License-Identifier: MIT
#include "documents/ReadingFailures.h"

#include "documents/DocumentError.h"
#include "documents/Sentences.h"
#include "documents/TextUnits.h"
#include "documents/UnknownForm.h"

#include "modelkit/XmlPlaces.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <algorithm>

namespace ROUTERDOCUMENTS {

using MODELKIT::Failure;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

QStringList recordNames()
{
    QStringList names;
    for (const RecordInfo* info : RecordInfo::All())
        names += info->GetName();
    return names;
}

// The sentence about the first control character, if reading has ended there. Others are not known to be
// the reason.
QString controlCharacterAt(const MODELKIT::Place& place, const QByteArray& xml)
{
    const auto found = std::find_if_not(xml.begin(), xml.end(), isTextByte);
    if (found == xml.end())
        return QString();
    const QByteArray before = xml.left(static_cast<int>(found - xml.begin()));
    const auto lineBegin = std::max(before.lastIndexOf('\n'), before.lastIndexOf('\r')) + 1;
    const auto column = QString::fromUtf8(before.mid(lineBegin)).size() + 1;
    if (before.count('\n') + 1 != place.line || column != place.column)
        return QString();
    return QStringLiteral("The control character U+%1 is not allowed in XML.")
        .arg(static_cast<unsigned char>(*found), 4, 16, QLatin1Char('0'));
}

} // namespace

void requireForm(const QByteArray& bytes, Form similar)
{
    const QString reason = WhyNoForm(bytes);
    if (reason.isEmpty())
        return;
    throw DocumentError(
        Failure{IsBinary(similar) ? Failure::NotABinaryForm : Failure::NotWellFormed, reason, {}});
}

Failure explainedForXml(Failure failure, const QByteArray& xml)
{
    if (failure.kind == Failure::WrongRoot)
        failure.text += DidYouMean(MODELKIT::RootNameOfXml(xml), recordNames());
    if (failure.kind == Failure::NotWellFormed) {
        const QString sentence = controlCharacterAt(failure.place, xml);
        if (!sentence.isEmpty())
            failure.text = sentence;
    }
    return failure;
}

} // namespace ROUTERDOCUMENTS
