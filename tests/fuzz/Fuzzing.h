#pragma once

#include <cstddef>
#include <cstdint>

/// The functions that libFuzzer calls, and `Replay.cpp` in its place. Each target defines the first one.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace fuzz
{

/// Ends the process, which is a finding, if the code did not keep its promise.
void require(bool isKept, char const* promise);

} // namespace fuzz
