#pragma once

#include <optional>

namespace utility
{

/// A value or nothing.
template <class T>
using Optional = std::optional<T>;

} // namespace utility
