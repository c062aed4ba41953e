#pragma once

#include "simulator/State.h"

#include <QJsonObject>

namespace simulator
{

/// The whole state. What is read back is equal to what was written.
QJsonObject toJson(State const& state);

/// Members may be left out and then have their usual values. Throws a Refusal that names the place of what does not
/// fit: an unknown member, a value of the wrong kind, an id that is there twice, a reference to something that is not.
State stateFromText(QByteArray const& text);

} // namespace simulator
