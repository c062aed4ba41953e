#pragma once

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <random>
#include <string>
#include <vector>

#include "tests/soak/Ledger.h"
#include "tests/support/FaultedService.h"
#include "tests/traffic/Faults.h"

namespace soak
{

/// Tells threads to come to an end.
class Stop
{
public:
    void set();
    bool isSet() const;
    /// Lets time pass; true once it is set.
    bool waitFor(std::chrono::milliseconds time) const;

private:
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    bool isSet_ = false;
};

/// Faults that come and go at random.
class Storm
{
public:
    Storm(test::FaultedService& service, Ledger& ledger, quint64 seed);

    /// Blows until told to stop; no fault is in force afterwards.
    void blow(Stop const& stop);

    /// How often each kind has fired.
    std::map<std::string, quint64> const& fired() const { return fired_; }

private:
    int between(int low, int high) { return std::uniform_int_distribution(low, high)(random_); }
    /// The milliseconds for which the faults may last.
    int begin();
    void end();
    void count(QJsonArray const& faults, char const* nameKey);

    test::FaultedService& service_;
    Ledger& ledger_;
    std::vector<test::Fault> const faults_;
    std::mt19937_64 random_;
    bool isSpoiling_ = false;
    std::map<std::string, quint64> fired_;
};

} // namespace soak
