// SPDX-License-Identifier: MIT
#include "link/MessageReader.h"

#include "link/Failures.h"
#include "link/Framing.h"
#include "link/WellFormedness.h"

#include "documents/ReadingFailures.h"

namespace ROUTERLINK {

using MODELKIT::Failure;
using MODELKIT::IMKObject;
using ROUTERDOCUMENTS::Form;

namespace {

// Replaces the content of the document.
Failure readXml(IMKObject& document, const QByteArray& bytes)
{
    if (document.SetXmlBytes(bytes, document.GetValidate()))
        return {};
    const Failure failure = IMKObject::GetLastFailure();
    // Another root is no mistake in writing.
    return failure.kind == Failure::WrongRoot ? failure : ROUTERDOCUMENTS::explainedForXml(failure, bytes);
}

Failure readBinary(IMKObject& document, const QByteArray& bytes)
{
    if (!document.SetBinaryRepresentation(bytes))
        return IMKObject::GetLastFailure();
    if (document.GetValidate())
        document.Check();
    return {};
}

// Whether reading has ended for a reason that leaves open whether the rest of the document is well-formed.
bool isAboutContent(Failure::Kind kind)
{
    switch (kind) {
    case Failure::Refused:
    case Failure::WrongRoot:
    case Failure::TooManyItems:
    case Failure::Interrupted:
        return true;
    default:
        return false;
    }
}

} // namespace

class MessageReader::Machine
{
public:
    explicit Machine(const MODELKIT::Limits& messageLimits) : limits(messageLimits), framing(limits) {}

    Outcome Next(IMKObject& document)
    {
        if (failure.kind != Failure::None)
            failure = Failure();
        switch (framing.Find()) {
        case Framing::NeedMore:
            return NeedMore;
        case Framing::Ended:
            return Ended;
        case Framing::Whole:
            break;
        case Framing::Broken:
            failure = framing.GetFailure();
            return Broken;
        }
        return Read(document);
    }

    const MODELKIT::Limits limits;
    Framing framing;
    Failure failure;
    Form form = Form::Xml;

private:
    Outcome Read(IMKObject& document)
    {
        const MODELKIT::LimitsInScope inScope(limits);
        const QByteArray bytes = framing.View();
        form = framing.GetForm();
        const bool isXml = form == Form::Xml;
        failure = guarded([&] { return isXml ? readXml(document, bytes) : readBinary(document, bytes); });
        if (failure.kind == Failure::None)
            return Ready;
        if (!isXml)
            return Refused;
        const Failure unsound =
            isAboutContent(failure.kind) ? guarded([&bytes] { return whyNotWellFormed(bytes); }) : failure;
        if (unsound.kind == Failure::None)
            return Refused;
        failure = unsound;
        framing.Break(failure);
        return Broken;
    }
};

MessageReader::MessageReader(const MODELKIT::Limits& limits) : m_machine(std::make_unique<Machine>(limits)) {}

MessageReader::~MessageReader() = default;

void MessageReader::AddData(const QByteArray& bytes) { AddData(bytes.constData(), bytes.size()); }

void MessageReader::AddData(const char* bytes, qint64 size)
{
    if (size <= 0)
        return;
    try {
        m_machine->framing.Add(bytes, size);
    } catch (...) {
        m_machine->framing.LeaveMessage();
        m_machine->framing.Break(failureOfException());
    }
}

void MessageReader::EndData() { m_machine->framing.End(); }

MessageReader::Outcome MessageReader::Next(IMKObject& document)
{
    try {
        return m_machine->Next(document);
    } catch (...) {
        m_machine->failure = failureOfException();
        m_machine->framing.Break(m_machine->failure);
        return Broken;
    }
}

const Failure& MessageReader::GetFailure() const { return m_machine->failure; }

Form MessageReader::GetForm() const { return m_machine->form; }

qint64 MessageReader::GetOffset() const { return m_machine->framing.GetOffset(); }

QByteArray MessageReader::GetBytes() const
{
    const QByteArray view = m_machine->framing.View();
    return QByteArray(view.constData(), view.size());
}

QByteArray MessageReader::GetUnreadBytes() const { return m_machine->framing.Rest(); }

qint64 MessageReader::GetExaminedBytes() const { return m_machine->framing.GetExaminedBytes(); }

} // namespace ROUTERLINK
