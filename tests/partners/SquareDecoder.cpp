#include "tests/partners/SquareDecoder.h"

#include <QtPlugin>

Q_IMPORT_PLUGIN(SquareFormat)
