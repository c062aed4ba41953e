#pragma once

#include "simulator/Http.h"
#include "simulator/Schema.h"

#include <chrono>
#include <optional>
#include <vector>

namespace simulator
{

/// What a kind of fault does: stand in for the operation, which then is not carried out, or spoil its answer. Both get
/// the rule as it was given, with the usual values of what it leaves out. The delay of a rule comes before either.
struct FaultKind
{
    char const* name = "";
    char const* meaning = ""; ///< for people
    Schema parameters = {};   ///< beside those of every fault
    Answer (*replacement)(QJsonObject const& settings) = nullptr;
    void (*distort)(Answer& answer, QJsonObject const& settings) = nullptr;
    bool writesRaw = false; ///< writes past the HTTP server, hence not over TLS
};

/// What every fault can be told: "Kind", "Operation", "Times" and "Milliseconds".
extern Schema const faultMembers;

/// A rule that spoils the next calls of one operation, or of all ("*").
struct FaultRule
{
    int id = 0;
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
    /// Takes a rule over after checking it; throws a Refusal. Returns its number.
    int add(QJsonObject const& json, QStringList const& operations);
    /// The rule that fires for this call, counted as fired.
    std::optional<FaultRule> fire(QString const& operation);
    /// False: there is none of that number.
    bool remove(int id);
    void clear();
    /// The settings of each rule with "Id", "TimesLeft", "Fired" and "IsUsedUp".
    QJsonArray toJson() const;

private:
    std::vector<FaultRule> rules_ = {};
    int lastId_ = 0;
};

} // namespace simulator
