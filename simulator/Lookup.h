#pragma once

#include "simulator/Http.h"

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
