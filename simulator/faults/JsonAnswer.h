#pragma once

#include "simulator/Http.h"

#include <functional>

namespace simulator::faults
{

/// What a member is to become; undefined takes it out.
using MemberChange = std::function<QJsonValue(QJsonValue const& before)>;

/// Changes every member of the answer's JSON body, at any depth, that "Member" of the settings names; all without it.
void changeMembers(Answer& answer, QJsonObject const& settings, MemberChange const& change);

/// "Body" of the settings, text as it stands and JSON as JSON, else the usual one.
QByteArray bodyOr(QJsonObject const& settings, QByteArray const& usual);

/// The head of the answer as it goes over the wire, with the framing headers given, up to the empty line and with it.
QByteArray wireHead(Answer const& answer, QByteArray const& framing);

} // namespace simulator::faults
