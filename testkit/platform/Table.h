#pragma once

#include "testkit/platform/RowProcess.h"

namespace platformcheck
{

/// Shows the rows, each as soon as it has its result.
class Table
{
public:
    explicit Table(bool isJson) : isJson_(isJson) {}

    /// A row without a result.
    void list(NamedRow const& row) const;
    void add(NamedRow const& row, Outcome const& outcome);
    /// The table's end: how many rows have which result.
    void end() const;

    bool hasFailures() const { return counts_[static_cast<int>(Result::Failed)] > 0; }

private:
    bool isJson_;
    int counts_[3] = {};
};

} // namespace platformcheck
