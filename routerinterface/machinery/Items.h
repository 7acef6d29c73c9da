// SPDX-License-Identifier: MIT
// Changing a list item by item. Every change makes the list the record's own, so that no item loses its
// settings, and marks it as set.
#pragma once

#include "routerinterface/machinery/Members.h"

#include <functional>
#include <stdexcept>
#include <string>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

template <class Member, class R>
[[noreturn]] void refuseItem(const R& record)
{
    throw IncompleteDefinitionException(incompleteItemText(record, Member::name()));
}

// Appends a new item that fill() fills. If that throws, the list stays as it was. Items: the record's own.
template <class Member, class Data, class Items, class Fill>
void appendFilled(Data& data, Items& items, const Fill& fill)
{
    struct Removal
    {
        Items& list;
        bool isDue;
        ~Removal()
        {
            if (isDue)
                list.removeLast();
        }
    };
    const auto place = items.size();
    items.resize(place + 1);
    Removal removal{items, true};
    fill(items.data()[place]);
    removal.isDue = false;
    data.set.set(Member::index);
}

// Appends a new item that read() fills, unless that throws or the item lacks data. Like every new item, it
// gets the logger with the next operation.
template <class Member, class R, class Read>
void appendRead(R& record, const Read& read)
{
    using Item = RecordIn<typename Member::Slot>;
    const bool validate = record.GetValidate();
    auto& data = initData(record);
    appendFilled<Member>(data, Member::slot(data).ownItems(), [&](Item& item) {
        Access::applySettings(item, validate, Access::logger(item));
        read(item);
        if (validate && !item.Item::HasData())
            refuseItem<Member>(record);
    });
}

template <class Member, class R, class Item>
void append(R& record, const Item& item)
{
    orStayEmpty(record, [&] {
        auto& data = initData(record);
        if (record.GetValidate() && !item.HasData())
            refuseItem<Member>(record);
        auto& items = Member::slot(data).ownItems();
        // The item may be one of this list, which moves when it grows.
        const Item* const first = items.constData();
        const std::less<const Item*> isBefore;
        const bool isOwn = !isBefore(&item, first) && isBefore(&item, first + items.size());
        const auto index = isOwn ? static_cast<QtVersion::Size>(&item - first) : 0;
        appendFilled<Member>(data, items, [&](Item& appended) {
            Walks<Item>::takeCopy(appended, isOwn ? items.at(index) : item);
        });
    });
}

// Appends an empty item with the settings of the record.
template <class Member, class R>
auto& add(R& record)
{
    return orStayEmpty(
        record, [&record]() -> auto& {
            auto& data = initData(record);
            auto& items = Member::slot(data).ownItems();
            const auto place = items.size();
            items.resize(place + 1);
            auto& added = items.data()[place];
            Access::applySettings(added, record.GetValidate(), Access::logger(record));
            data.set.set(Member::index);
            return added;
        });
}

// Throws for an index that is negative or not below the limit.
template <class Member>
void requireIndex(int index, QtVersion::Size limit)
{
    if (index < 0 || index >= limit)
        throw std::out_of_range(Member::nameText().toStdString() + " has no place " + std::to_string(index));
}

template <class Member, class R>
auto& editItems(R& record)
{
    editMember<Member>(record);
    return Member::slot(initData(record)).ownItems();
}

template <class Member, class R>
const auto& viewItem(const R& record, int index)
{
    const auto& items = viewMember<Member>(record);
    requireIndex<Member>(index, items.size());
    return items.at(index);
}

template <class Member, class R>
auto& editItem(R& record, int index)
{
    viewItem<Member>(record, index);
    return editItems<Member>(record)[index];
}

template <class Member, class R>
void removeItem(R& record, int index)
{
    viewItem<Member>(record, index);
    editItems<Member>(record).removeAt(index);
}

// To: the index of the item afterwards.
template <class Member, class R>
void moveItem(R& record, int from, int to)
{
    viewItem<Member>(record, from);
    viewItem<Member>(record, to);
    auto& items = editItems<Member>(record);
    // Assigning would carry the data of the item only, not its settings.
    RecordIn<typename Member::Slot> moved;
    duplicate(moved, items.at(from));
    items.removeAt(from);
    items.insert(to, RecordIn<typename Member::Slot>());
    duplicate(items[to], moved);
}

template <class Member, class R, class Item>
void insert(R& record, int index, const Item& item)
{
    orStayEmpty(record, [&] {
        const auto count = viewMember<Member>(record).size();
        requireIndex<Member>(index, count + 1);
        append<Member>(record, item);
        moveItem<Member>(record, static_cast<int>(count), index);
    });
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
