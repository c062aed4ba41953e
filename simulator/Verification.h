#pragma once

#include "simulator/Journal.h"
#include "simulator/Schema.h"

namespace simulator
{

/// What the journal is asked to confirm.
extern Schema const expectationsMembers;

/// Throws a Refusal whose sentence tells each difference if the journal does not hold what is expected, in the form of
/// `expectationsMembers`, or cannot tell because entries are gone.
void verify(Journal const& journal, QJsonObject const& expected, QStringList const& operations);

} // namespace simulator
