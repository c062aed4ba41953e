#include "cli/prompt/Suggestion.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr qsizetype mostSuggestions = 3;

/// How many characters are left out, too many, wrong, or swapped with their neighbour.
int distance(QString const& left, QString const& right)
{
    auto const width = static_cast<std::size_t>(right.size()) + 1;
    std::vector<int> beforeLast(width), last(width), current(width);
    std::iota(current.begin(), current.end(), 0);
    for (qsizetype row = 0; row < left.size(); ++row)
    {
        beforeLast.swap(last);
        last = current;
        current[0] = static_cast<int>(row) + 1;
        for (qsizetype column = 0; column < right.size(); ++column)
        {
            auto const at = static_cast<std::size_t>(column);
            int const change = left[row] == right[column] ? 0 : 1;
            current[at + 1] = std::min({last[at + 1] + 1, current[at] + 1, last[at] + change});
            if (row > 0 && column > 0 && left[row] == right[column - 1] && left[row - 1] == right[column])
            {
                current[at + 1] = std::min(current[at + 1], beforeLast[at - 1] + 1);
            }
        }
    }
    return current.back();
}

} // namespace

QString didYouMean(QString const& word, QStringList const& known)
{
    QString const asked = word.toLower();
    int nearest = std::max(1, static_cast<int>(asked.size()) / 3);
    QStringList suggested;
    for (QString const& each : known)
    {
        QString const candidate = each.toLower();
        bool const isBegun = asked.size() > 1 && candidate.startsWith(asked);
        int const steps = isBegun ? std::min(1, distance(asked, candidate)) : distance(asked, candidate);
        if (steps < nearest)
        {
            suggested.clear();
        }
        if (steps <= nearest)
        {
            nearest = steps;
            suggested << each;
        }
    }
    if (suggested.isEmpty())
    {
        return {};
    }
    return u": did you mean %1?"_s.arg(suggested.first(std::min(mostSuggestions, suggested.size())).join(" or "_L1));
}

} // namespace cli
