// SPDX-License-Identifier: MIT
#include "NewCommand.h"

#include "NewWords.h"
#include "Saving.h"
#include "UsageError.h"
#include "documents/DocumentError.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

#include "modelkit/IMKObject.h"
#include "routerinterface/RecordInfo.h"

#include <memory>

namespace routermsg {

using namespace ROUTERDOCUMENTS;
using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

const RecordInfo& rootOf(const QString& name)
{
    if (name.isEmpty())
        return RecordInfo::Document();
    if (const RecordInfo* info = RecordInfo::Find(name))
        return *info;
    const QStringList names = recordNames();
    throw UsageError(QStringLiteral("There is no record %1.%2 Possible are %3.")
                         .arg(Quoted(name), DidYouMean(name, names), Enumerated(names)));
}

} // namespace

Status makeNew(const NewOptions& options, Session& session)
{
    const Target target(options.output, options.to);
    std::unique_ptr<IMKObject> record;
    try {
        record = build(rootOf(options.root), options.words);
        record->Check();
    } catch (const ModelKitException& exception) {
        throw Refusal(Finding::of(DocumentError(exception), QString()));
    }
    const FileSummary copy = save(*record, target, session);
    reportSaving(copy.toText(), {{QStringLiteral("output"), copy.toJson()}}, target, session);
    return Fine;
}

} // namespace routermsg
