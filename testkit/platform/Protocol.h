#pragma once

/// What the process of a row writes to its standard output: lines of the mark, one of these words and a text. All else
/// there is the platform's.
namespace platformcheck::protocol
{

inline constexpr char mark = '\1';
inline constexpr auto doing = "doing";
inline constexpr auto failed = "failed";
inline constexpr auto notOffered = "notOffered";
inline constexpr auto passed = "passed";

} // namespace platformcheck::protocol
