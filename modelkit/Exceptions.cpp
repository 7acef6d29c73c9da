// SPDX-License-Identifier: MIT
#include "modelkit/Exceptions.h"

// The special members are defined here and not in the header, so that the type information of each class is
// in this library. Only then can one module catch an exception that another one throws.

ModelKitException::ModelKitException(const QString& text) : m_text(text), m_utf8(text.toUtf8()) {}
ModelKitException::ModelKitException(const ModelKitException&) noexcept = default;
ModelKitException& ModelKitException::operator=(const ModelKitException&) noexcept = default;
ModelKitException::~ModelKitException() = default;

const QString& ModelKitException::GetText() const noexcept { return m_text; }
const char* ModelKitException::what() const noexcept { return m_utf8.constData(); }
const MODELKIT::Place& ModelKitException::GetPlace() const noexcept { return m_place; }
void ModelKitException::SetPlace(const MODELKIT::Place& place) { m_place = place; }

#define MODELKIT_DEFINE_EXCEPTION(Class, Base)                \
    Class::Class(const QString& text) : Base(text) {}         \
    Class::Class(const Class&) noexcept = default;            \
    Class& Class::operator=(const Class&) noexcept = default; \
    Class::~Class() = default;

MODELKIT_DEFINE_EXCEPTION(MKException, ModelKitException)
MODELKIT_DEFINE_EXCEPTION(OutOfRangeException, MKException)
MODELKIT_DEFINE_EXCEPTION(IncompleteDefinitionException, MKException)
MODELKIT_DEFINE_EXCEPTION(InvalidXmlException, MKException)
MODELKIT_DEFINE_EXCEPTION(BinaryParsingException, MKException)

OutOfRangeException::OutOfRangeException(const QString& text, const QString& offendingValue,
                                         const QString& closest)
    : MKException(text), m_offendingValue(offendingValue), m_closest(closest)
{}
const QString& OutOfRangeException::GetOffendingValue() const noexcept { return m_offendingValue; }
const QString& OutOfRangeException::GetClosest() const noexcept { return m_closest; }

#undef MODELKIT_DEFINE_EXCEPTION
