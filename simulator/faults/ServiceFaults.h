#pragma once

#include "simulator/Http.h"

#include <chrono>
#include <optional>
#include <vector>

namespace simulator
{

/// What a kind of fault does: stand in for the operation, which then is not carried out, or spoil its answer. Both get
/// the rule as it was given. The delay of a rule comes before either.
struct FaultKind
{
    char const* name = "";
    Answer (*replacement)(QJsonObject const& settings) = nullptr;
    void (*distort)(Answer& answer, QJsonObject const& settings) = nullptr;
    bool writesRaw = false; ///< writes past the HTTP server, hence not over TLS
};

/// A rule that spoils the next calls of one operation, or of all ("*").
struct FaultRule
{
    QString operation = {};
    FaultKind const* kind = nullptr;
    int timesLeft = 1; // below 0: for ever
    int fired = 0;
    std::chrono::milliseconds delay{0};
    QJsonObject settings = {};

    std::optional<Answer> replacement() const;
    void distort(Answer& answer) const;
};

/// The rules in force. The oldest one that fits a call fires.
class ServiceFaults
{
public:
    void add(FaultKind const& kind, QJsonObject const& json);
    /// The rule that fires for this call, counted as fired.
    std::optional<FaultRule> fire(QString const& operation);
    void clear();
    QJsonArray toJson() const;

private:
    std::vector<FaultRule> rules_ = {};
};

} // namespace simulator
