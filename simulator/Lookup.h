#pragma once

#include "simulator/Http.h"
#include "simulator/IdList.h"

#include <algorithm>

namespace simulator
{

/// The element with this id; throws a Refusal when there is none.
template <typename List>
auto& byId(List& list, QString const& id)
{
    auto const found = std::find_if(list.begin(), list.end(), [&id](auto const& element) { return element.id == id; });
    if (found == list.end())
    {
        throw Refusal(Reason::UnknownId, id);
    }
    return *found;
}

template <typename Element>
Element const& byId(IdList<Element> const& list, QString const& id)
{
    auto const* const found = list.find(id);
    if (found == nullptr)
    {
        throw Refusal(Reason::UnknownId, id);
    }
    return *found;
}

template <typename Element>
Element& byId(IdList<Element>& list, QString const& id)
{
    return const_cast<Element&>(byId(std::as_const(list), id));
}

/// The element that belongs to the installation; throws a Refusal when there is none.
template <typename List>
auto const& ofInstallation(List const& list, QString const& installation)
{
    auto const found = std::find_if(
        list.begin(), list.end(),
        [&installation](auto const& element) { return element.installation == installation; });
    if (found == list.end())
    {
        throw Refusal(Reason::UnknownId, installation);
    }
    return *found;
}

/// Those of the elements that belong to the installation, each in its wire form.
template <typename List, typename ToJson>
QJsonArray jsonOfInstallation(List const& list, QString const& installation, ToJson toJson)
{
    QJsonArray array;
    for (auto const& element : list)
    {
        if (element.installation == installation)
        {
            array.append(toJson(element));
        }
    }
    return array;
}

} // namespace simulator
