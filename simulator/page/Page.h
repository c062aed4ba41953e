#pragma once

#include "simulator/Http.h"

namespace simulator
{

/// A file of the page on the simulator, from the folder of this header. The page loads nothing from elsewhere and runs
/// no script but its own, whatever stands in the data it shows. Throws a Refusal for a name that is none of its files.
Answer pageFile(QString const& name);

} // namespace simulator
