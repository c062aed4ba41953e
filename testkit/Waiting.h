#pragma once

#include <chrono>
#include <functional>

namespace testkit
{

/// Waits until the condition holds, while the calling thread's events are handled, with them the continuations that are
/// to run in it; false when that takes longer than `limit`.
bool comesTrue(std::function<bool()> const& condition, std::chrono::milliseconds limit = std::chrono::seconds(30));

} // namespace testkit
