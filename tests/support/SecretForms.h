#pragma once

#include <algorithm>
#include <vector>

#include <QByteArray>

namespace test
{

/// The forms in which a run of letters and digits appears in a text: plain (percent-encoding leaves it alone), in hex,
/// and within Base64, whatever stands before and behind it.
inline std::vector<QByteArray> formsOf(QByteArray const& run)
{
    std::vector<QByteArray> forms = {run, run.toHex(), run.toHex().toUpper()};
    for (int before = 0; before < 3; ++before)
    {
        // Those characters of Base64 that no neighbour has a part in.
        qsizetype const first = (before * 8 + 5) / 6;
        qsizetype const last = (before + run.size()) * 8 / 6;
        forms.push_back((QByteArray(before, 'x') + run).toBase64().mid(first, last - first));
    }
    return forms;
}

/// Whether `text` contains `run` in any form.
inline bool tells(QByteArray const& text, QByteArray const& run)
{
    auto const forms = formsOf(run);
    return std::any_of(forms.begin(), forms.end(), [&text](QByteArray const& form) { return text.contains(form); });
}

} // namespace test
