// SPDX-License-Identifier: MIT
#include "modelkit/IMKObject.h"

#include "modelkit/DocumentContext.h"
#include "modelkit/DocumentOperation.h"
#include "modelkit/QtVersion.h"
#include "modelkit/Version.h"
#include "modelkit/XmlWalk.h"

#include <QtCore/QDataStream>
#include <QtCore/QDateTime>
#include <QtCore/QXmlStreamReader>

#include <cmath>
#include <limits>
#include <utility>

namespace MODELKIT {

IMKObject::IMKObject() = default;

IMKObject::IMKObject(ObjectTypes type) : m_typeCode(static_cast<long long>(type)), m_objectType(type) {}

IMKObject::~IMKObject() = default;

bool IMKObject::IsValid(float value) const { return !std::isnan(value); }
bool IMKObject::IsValid(bool) const { return true; }
bool IMKObject::IsValid(unsigned int value) const
{
    return value != std::numeric_limits<unsigned int>::max();
}
bool IMKObject::IsValid(long long value) const { return value != std::numeric_limits<long long>::min(); }
bool IMKObject::IsValid(const QDateTime& value) const { return value.isValid(); }
bool IMKObject::IsValid(const QString& value) const { return !value.isNull(); }
bool IMKObject::IsValid(double value) const { return !std::isnan(value); }
bool IMKObject::IsValid(int value) const { return value != std::numeric_limits<int>::min(); }

void IMKObject::SetInvalid(float& value) const { value = std::numeric_limits<float>::quiet_NaN(); }
void IMKObject::SetInvalid(unsigned int& value) const { value = std::numeric_limits<unsigned int>::max(); }
void IMKObject::SetInvalid(long long& value) const { value = std::numeric_limits<long long>::min(); }
void IMKObject::SetInvalid(QString& value) const { value = QString(); }
void IMKObject::SetInvalid(double& value) const { value = std::numeric_limits<double>::quiet_NaN(); }
void IMKObject::SetInvalid(int& value) const { value = std::numeric_limits<int>::min(); }

const Failure& IMKObject::GetLastFailure() { return DocumentOperation::GetLastFailure(); }

ObjectTypes IMKObject::GetObjectType() { return m_objectType; }

void IMKObject::SetObjectType(ObjectTypes type)
{
    m_objectType = type;
    m_typeCode = static_cast<long long>(type);
}

const QString& IMKObject::GetObjectName() const { return m_objectName; }
void IMKObject::SetObjectName(const QString& name) { m_objectName = name; }

void IMKObject::SetValidate(bool validate) const { m_validate = validate; }
bool IMKObject::GetValidate() const { return m_validate; }

void IMKObject::SetLogger(std::shared_ptr<Logger> logger) const
{
    if (!m_logger.holds(logger))
        m_logger = HeldLogger(std::move(logger));
}
void IMKObject::ResetLogger() const { m_logger = HeldLogger(); }
std::shared_ptr<Logger> IMKObject::GetLogger() const { return m_logger.get(); }

const QString& IMKObject::GetVersion() const
{
    static const QString version = QStringLiteral(MODELKIT_VERSION);
    return version;
}

void IMKObject::ProcessXml(QXmlStreamReader& reader)
{
    walkElement(reader, DocumentContext::Current(), reader.name().toString(),
                [this, &reader] { ProcessXmlStartElement(reader); });
}

QString IMKObject::GetTextValue(QXmlStreamReader& reader)
{
    QString text = QLatin1String("");
    walkText(reader, DocumentContext::Current(), [&text](QtVersion::XmlView piece) { text += piece; });
    return text;
}

int IMKObject::skipCurrentElement(QDataStream& stream, int length, int) const
{
    // A device that cannot seek may deliver the payload in pieces.
    int skipped = 0;
    while (skipped < length) {
        const int more = stream.skipRawData(length - skipped);
        if (more <= 0)
            break;
        skipped += more;
    }
    return skipped;
}

} // namespace MODELKIT
