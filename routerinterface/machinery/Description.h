// SPDX-License-Identifier: MIT
// The description of a record class, made from its member table.
#pragma once

#include "routerinterface/RecordInfo.h"
#include "routerinterface/machinery/Items.h"
#include "routerinterface/machinery/Variants.h"
#include "routerinterface/machinery/WholeRecord.h"

#include <memory>
#include <optional>
#include <typeinfo>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

constexpr MemberInfo::Kind kindOf(const Value<unsigned int>*) { return MemberInfo::UnsignedInteger; }
constexpr MemberInfo::Kind kindOf(const Value<double>*) { return MemberInfo::Decimal; }
constexpr MemberInfo::Kind kindOf(const Value<bool>*) { return MemberInfo::Boolean; }
template <class T>
constexpr MemberInfo::Kind kindOf(const Text<T>*)
{
    return MemberInfo::Text;
}
template <class E>
constexpr MemberInfo::Kind kindOf(const Enumerated<E>*)
{
    return MemberInfo::Enumeration;
}
template <class R>
constexpr MemberInfo::Kind kindOf(const Nested<R>*)
{
    return MemberInfo::Record;
}
template <class R>
constexpr MemberInfo::Kind kindOf(const List<R>*)
{
    return MemberInfo::List;
}

// The names of an enumerated member, the class of a nested one.
template <class E>
QStringList namesIn(const Enumerated<E>*)
{
    return NamesOf(E());
}
inline QStringList namesIn(const void*) { return QStringList(); }

template <class R>
const RecordInfo* classIn(const Nested<R>*)
{
    return &Walks<R>::info();
}
template <class R>
const RecordInfo* classIn(const List<R>*)
{
    return &Walks<R>::info();
}
inline const RecordInfo* classIn(const void*) { return nullptr; }

// The value for a slot in a QVariant; none if the QVariant holds no such value.
inline auto valueIn(const QVariant& variant, const Value<unsigned int>*) { return unsignedIn(variant); }
inline auto valueIn(const QVariant& variant, const Value<double>*) { return decimalIn(variant); }
inline auto valueIn(const QVariant& variant, const Value<bool>*) { return booleanIn(variant); }
template <class T>
auto valueIn(const QVariant& variant, const Text<T>*)
{
    return textIn(variant);
}
template <class E>
std::optional<E> valueIn(const QVariant& variant, const Enumerated<E>*)
{
    const auto number = enumeratorIn(variant, NamesOf(E()));
    return number ? std::make_optional(static_cast<E>(*number)) : std::nullopt;
}

template <class T>
QVariant variantOf(const T& value)
{
    if constexpr (std::is_enum_v<T>)
        return static_cast<int>(value);
    else
        return value;
}

template <class R, class Member>
class MemberDescription final : public MemberInfo
{
    using Slot = typename Member::Slot;
    static constexpr const Slot* slot = nullptr;

public:
    MemberDescription()
        : MemberInfo(Member::nameText(), kindOf(slot), Member::binaryTag, machinery::IsMandatory<Slot>::value,
                     namesIn(slot), classIn(slot))
    {}

    bool IsSet(const MODELKIT::IMKObject& object) const override
    {
        const auto* data = existingData(record(object));
        if (!data)
            return false;
        if constexpr (IsList<Slot>::value)
            if (!Member::slot(*data).value.isEmpty())
                return true;
        return data->set.test(Member::index) && isCurrent(*data, Member{});
    }

    void Reset(MODELKIT::IMKObject& object) const override { resetMember<Member>(record(object)); }

    bool IsDefaultSet(const MODELKIT::IMKObject& object) const override
    {
        const auto* data = existingData(record(object));
        return data && data->defaultSet.test(Member::index);
    }

    QVariant GetValue(const MODELKIT::IMKObject& object) const override
    {
        if constexpr (isScalar)
            return variantOf(viewMember<Member>(record(object)));
        else
            return MemberInfo::GetValue(object);
    }

    void SetValue(MODELKIT::IMKObject& object, const QVariant& value) const override
    {
        if constexpr (isScalar)
            setMember<Member>(record(object), valueFor(record(object), value));
        else
            MemberInfo::SetValue(object, value);
    }

    bool IsValid(const QVariant& value) const override
    {
        if constexpr (isScalar) {
            const auto held = valueIn(value, slot);
            if constexpr (IsEnumerated<Slot>::value)
                return held && isEnumerator(*held);
            else
                return held && Slot::isValid(*held);
        } else {
            return MemberInfo::IsValid(value);
        }
    }

    QVariant GetDefault(const MODELKIT::IMKObject& object) const override
    {
        if constexpr (isScalar)
            return variantOf(defaultOf<Member>(record(object)));
        else
            return MemberInfo::GetDefault(object);
    }

    void SetDefault(MODELKIT::IMKObject& object, const QVariant& value) const override
    {
        if constexpr (isScalar)
            setDefault<Member>(record(object), valueFor(record(object), value));
        else
            MemberInfo::SetDefault(object, value);
    }

    const MODELKIT::IMKObject& GetRecord(const MODELKIT::IMKObject& object) const override
    {
        if constexpr (IsNested<Slot>::value)
            return viewMember<Member>(record(object));
        else
            return MemberInfo::GetRecord(object);
    }

    MODELKIT::IMKObject& EditRecord(MODELKIT::IMKObject& object) const override
    {
        if constexpr (IsNested<Slot>::value)
            return editMember<Member>(record(object));
        else
            return MemberInfo::EditRecord(object);
    }

    void SetRecord(MODELKIT::IMKObject& object, const MODELKIT::IMKObject& value) const override
    {
        if constexpr (IsNested<Slot>::value)
            setMember<Member>(record(object), owned(value));
        else
            MemberInfo::SetRecord(object, value);
    }

    void Select(MODELKIT::IMKObject& object) const override
    {
        if constexpr (isChoice<DataOf<R>>)
            editMember<Member>(record(object));
        else
            MemberInfo::Select(object);
    }

    const MODELKIT::IMKObject& GetDefaultRecord(const MODELKIT::IMKObject& object) const override
    {
        if constexpr (!isScalar)
            return defaultOf<Member>(record(object));
        else
            return MemberInfo::GetDefaultRecord(object);
    }

    void SetDefaultRecord(MODELKIT::IMKObject& object, const MODELKIT::IMKObject& value) const override
    {
        if constexpr (!isScalar)
            setDefault<Member>(record(object), owned(value));
        else
            MemberInfo::SetDefaultRecord(object, value);
    }

    int CountItems(const MODELKIT::IMKObject& object) const override
    {
        if constexpr (IsList<Slot>::value)
            return static_cast<int>(viewMember<Member>(record(object)).size());
        else
            return MemberInfo::CountItems(object);
    }

    const MODELKIT::IMKObject& GetItem(const MODELKIT::IMKObject& object, int index) const override
    {
        if constexpr (IsList<Slot>::value)
            return viewItem<Member>(record(object), index);
        else
            return MemberInfo::GetItem(object, index);
    }

    MODELKIT::IMKObject& EditItem(MODELKIT::IMKObject& object, int index) const override
    {
        if constexpr (IsList<Slot>::value)
            return editItem<Member>(record(object), index);
        else
            return MemberInfo::EditItem(object, index);
    }

    void AppendItem(MODELKIT::IMKObject& object, const MODELKIT::IMKObject& item) const override
    {
        if constexpr (IsList<Slot>::value)
            append<Member>(record(object), owned(item));
        else
            MemberInfo::AppendItem(object, item);
    }

    void InsertItem(MODELKIT::IMKObject& object, int index, const MODELKIT::IMKObject& item) const override
    {
        if constexpr (IsList<Slot>::value)
            insert<Member>(record(object), index, owned(item));
        else
            MemberInfo::InsertItem(object, index, item);
    }

    void RemoveItem(MODELKIT::IMKObject& object, int index) const override
    {
        if constexpr (IsList<Slot>::value)
            removeItem<Member>(record(object), index);
        else
            MemberInfo::RemoveItem(object, index);
    }

    void MoveItem(MODELKIT::IMKObject& object, int from, int to) const override
    {
        if constexpr (IsList<Slot>::value)
            moveItem<Member>(record(object), from, to);
        else
            MemberInfo::MoveItem(object, from, to);
    }

private:
    static constexpr bool isScalar = !IsNested<Slot>::value && !IsList<Slot>::value;

    static const R& record(const MODELKIT::IMKObject& object) { return dynamic_cast<const R&>(object); }
    static R& record(MODELKIT::IMKObject& object) { return dynamic_cast<R&>(object); }

    // A record that is passed as the value of the member.
    static const auto& owned(const MODELKIT::IMKObject& object)
    {
        return dynamic_cast<const RecordIn<Slot>&>(object);
    }

    auto valueFor(const R& record, const QVariant& variant) const
    {
        const auto held = valueIn(variant, slot);
        if (!held)
            refuseVariant(record.GetObjectName(), *this, variant);
        return *held;
    }
};

struct Description
{
    template <class R>
    static const RecordInfo& of()
    {
        static const std::unique_ptr<const RecordInfo> info(make<R>());
        return *info;
    }

private:
    template <class R>
    static std::unique_ptr<const RecordInfo> make()
    {
        std::unique_ptr<RecordInfo> info(new RecordInfo);
        info->m_name = DataOf<R>::nameText();
        info->m_id = R::id;
        if constexpr (isChoice<DataOf<R>>) {
            info->m_selected = [](const MODELKIT::IMKObject& object) {
                const auto* data = existingData(dynamic_cast<const R&>(object));
                return data && data->choice != data->invalidChoice ? static_cast<int>(data->choice) : -1;
            };
            info->m_clearSelection = [](MODELKIT::IMKObject& object) {
                clearChoice(dynamic_cast<R&>(object));
            };
        }
        info->m_hash = [](const MODELKIT::IMKObject& object, RecordInfo::HashValue seed) {
            return Walks<R>::hash(dynamic_cast<const R&>(object), seed);
        };
        info->m_create = [] { return std::unique_ptr<MODELKIT::IMKObject>(new R); };
        info->m_assign = [](MODELKIT::IMKObject& target, const MODELKIT::IMKObject& source) {
            dynamic_cast<R&>(target) = dynamic_cast<const R&>(source);
        };
        info->m_describes = [](const MODELKIT::IMKObject& object) {
            return dynamic_cast<const R*>(&object) != nullptr;
        };
        DataOf<R>::Members::forEach(
            [&info](auto member) { info->m_members.append(new MemberDescription<R, decltype(member)>); });
        return info;
    }
};

template <class R>
QLatin1String Walks<R>::className()
{
    return DataOf<R>::name();
}

template <class R>
const RecordInfo& Walks<R>::info()
{
    return Description::of<R>();
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
