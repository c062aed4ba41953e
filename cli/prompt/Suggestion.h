#pragma once

#include <QString>
#include <QStringList>

namespace cli
{

/// ": did you mean ...?" with those of the known words, three at most, that are nearest to one that is not known; empty
/// when none is near.
QString didYouMean(QString const& word, QStringList const& known);

} // namespace cli
