#pragma once

#include <vector>

#include <QStringList>

#include "cli/shell/Outcome.h"

namespace cli
{

/// Of several things that are to be done, one that fails keeps none of the others away.
class Failures
{
public:
    /// Whether the step was done; its Failure is kept.
    template <class Step>
    bool attempt(Step const& step)
    {
        try
        {
            step();
            return true;
        }
        catch (Failure const& failure)
        {
            failures_.push_back(failure);
            return false;
        }
    }

    /// Throws a Failure that tells of all that were kept, "2 of 5 shells were not stored: ...", if there are any.
    void raise(qsizetype attempts, QString const& what) const
    {
        if (failures_.empty())
        {
            return;
        }
        QStringList reasons;
        for (auto const& failure : failures_)
        {
            reasons << failure.message();
        }
        throw failures_.front().told(
            attempts == 1
                ? reasons.first()
                : QStringLiteral("%1 of %2 %3: %4")
                      .arg(QString::number(reasons.size()), QString::number(attempts), what, reasons.join(u' ')));
    }

private:
    std::vector<Failure> failures_;
};

} // namespace cli
