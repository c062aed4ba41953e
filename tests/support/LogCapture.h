#pragma once

#include <gtest/gtest.h>

#include <testkit/LogCapture.h>

namespace test
{

/// The kit's, and a demand: lines of the library are in the default category, whose name hosts read in their message
/// handlers, and do not tell where in the sources they come from.
class LogCapture : public testkit::LogCapture
{
public:
    LogCapture() = default;
    LogCapture(LogCapture const&) = delete;
    LogCapture& operator=(LogCapture const&) = delete;

    ~LogCapture()
    {
        for (testkit::LogLine const& line : lines())
        {
            bool const isOurs = !line.category.starts_with("qt.");
            EXPECT_TRUE(!isOurs || (line.category == "default" && line.source.empty()))
                << line.category << ", " << line.source << ": " << line.text;
        }
    }
};

} // namespace test
