#pragma once

#include "simulator/Http.h"

#include <chrono>
#include <optional>
#include <vector>

namespace simulator
{

struct FaultKind;

/// A rule that spoils the next calls of one operation, or of all ("*").
struct FaultRule
{
    QString operation = {};
    FaultKind const* kind = nullptr;
    int timesLeft = 1; // below 0: for ever
    int fired = 0;
    int status = 0; // 0: what is usual for the kind
    std::optional<QByteArray> body = {};
    std::chrono::milliseconds delay{0};

    /// The answer that stands in for the operation, which then is not carried out.
    std::optional<Answer> replacement() const;
    /// Spoils the answer of an operation that was carried out.
    void distort(Answer& answer) const;
};

/// The rules in force. The oldest one that fits a call fires.
class ServiceFaults
{
public:
    /// Reads a rule from its JSON form; throws a Refusal for an unknown kind.
    void add(QJsonObject const& json);
    /// The rule that fires for this call, counted as fired.
    std::optional<FaultRule> fire(QString const& operation);
    void clear();
    QJsonArray toJson() const;

private:
    std::vector<FaultRule> rules_ = {};
};

} // namespace simulator
