#pragma once

#include <memory>
#include <vector>

#include <KeloCommunicationLib/json/internal/Value.h>

namespace test
{

/// A type of value that stands on the wire, with its C++ type taken away.
struct WireType
{
    jsonSerializer::implementation::Type const* type;
    std::shared_ptr<void> (*make)();
};

template <class T>
WireType wireType()
{
    return {&jsonSerializer::implementation::typeOf<T>, [] { return std::shared_ptr<void>(std::make_shared<T>()); }};
}

/// Every record that has a table.
std::vector<WireType> const& allRecords();

/// A list of each, in the same order.
std::vector<WireType> const& listsOfAllRecords();

} // namespace test
