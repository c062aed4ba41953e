// Every fault against every kind of call, as a table. Ends with 1 if a cell breaks a promise.
//
//   kelo_fault_matrix [FAULT...]     only the faults whose text begins so
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>
#include <set>

#include <QCoreApplication>

#include "tests/faults/Calls.h"
#include "tests/faults/Faults.h"
#include <testkit/Waiting.h>
#include <tests/support/OpenSockets.h>

namespace
{

using namespace test;
using namespace std::chrono_literals;

char const* nameOf(Outcome outcome)
{
    constexpr std::array names = {"ok", "other", "refused", "lost", "failed", "HUNG"};
    return names.at(static_cast<std::size_t>(outcome));
}

std::string nameOf(Fault const& fault)
{
    std::string name;
    for (auto const& text : fault.texts)
    {
        // Where the redirect leads to differs from run to run.
        name += (name.empty() ? "" : " + ") + text.substr(0, text.find(",location="));
    }
    return name;
}

std::set<Outcome> allowedOutcomes(Fault const& fault, Call const& call)
{
    switch (fault.effect)
    {
    case Effect::Harmless:
        return {Outcome::Ok};
    case Effect::Spoilt:
        // An interface that does not tell failures apart tells no empty success from one either.
        return call.showsSpoiling ? std::set{Outcome::Other} : std::set{Outcome::Ok, Outcome::Other, call.whenRefused};
    case Effect::Refused:
        return {call.whenRefused};
    case Effect::Lost:
        return {call.whenLost};
    case Effect::ByChance:
        return {Outcome::Ok, Outcome::Other, call.whenLost};
    }
    return {};
}

/// Runs cells, and collects what is wrong with them.
class Matrix
{
public:
    Matrix();

    std::vector<Fault> faults() const;
    /// The outcome, with a "!" when the cell broke a promise.
    std::string runCell(Fault const& fault, Call const& call);
    /// What concerns all cells; call it last.
    void checkTheWhole();

    std::vector<std::string> const& violations() const { return violations_; }
    int cells() const { return cells_; }
    int fired() const { return fired_; }

private:
    static constexpr qint64 replySizeLimit = 4 << 20;
    // Idle connections are kept for the next call, six to an origin: a socket at either end, two in the proxy.
    static constexpr int keptSockets = 6 * 4;

    std::unique_ptr<TessalyConnection> connect(std::chrono::milliseconds timeout);
    std::string failures() const;
    Result evaluate(Call const& call, Result result) const;
    void check(bool isGood, std::string const& what);
    void checkWrites();
    void checkNextCalls(TessalyConnection& connection);

    FaultedService service_;
    simulator::faults::FaultProxy elsewhere_;
    std::map<std::string, QString> rightContent_;
    std::pair<Result, Result> rightReads_;
    std::vector<std::string> violations_;
    mutable std::mutex failuresMutex_;
    std::string failures_; ///< of the present connection's exchanges, for the explanation of a violation
    std::string cell_;
    std::map<std::string, int> firedByChance_;
    int mostSockets_ = 0;
    int cells_ = 0;
    int fired_ = 0;
};

Matrix::Matrix() : elsewhere_(QUrl(service_.directUrl()).port())
{
    for (Call const& call : callsOfTheMatrix())
    {
        service_.reset();
        auto const target = Target::prepare(service_);
        auto const result = call.run(*connect(60s), target);
        cell_ = call.name;
        check(result.outcome == Outcome::Ok, "does not even work without a fault");
        rightContent_[call.name] = result.content;
    }
    rightReads_ = twoReads(*connect(60s));
    mostSockets_ = test::openSockets() + keptSockets;
}

std::vector<Fault> Matrix::faults() const
{
    return faultsOfTheMatrix("http://127.0.0.1:" + std::to_string(elsewhere_.port()));
}

std::unique_ptr<TessalyConnection> Matrix::connect(std::chrono::milliseconds timeout)
{
    auto connection = service_.connect(timeout);
    connection->setReplySizeLimit(replySizeLimit);
    failures_.clear();
    connection->setTraceCallback(
        [this](rest::TraceData const& exchange)
        {
            if (exchange.httpStatus == 0)
            {
                std::lock_guard const lock(failuresMutex_);
                failures_ += "; " + exchange.url.path().toStdString() + ": " + exchange.error.toStdString();
            }
        });
    return connection;
}

std::string Matrix::failures() const
{
    std::lock_guard const lock(failuresMutex_);
    return failures_;
}

Result Matrix::evaluate(Call const& call, Result result) const
{
    if (result.outcome == Outcome::Ok && result.content != rightContent_.at(call.name))
    {
        result.outcome = Outcome::Other;
    }
    return result;
}

void Matrix::check(bool isGood, std::string const& what)
{
    if (!isGood)
    {
        violations_.push_back(cell_ + ": " + what);
    }
}

void Matrix::checkWrites()
{
    std::map<std::string, int> counts;
    for (auto const& entry : service_.simulator().journal()["Requests"].toArray())
    {
        auto const request = entry.toObject();
        auto const method = request["Method"].toString();
        if (method != QLatin1String("GET"))
        {
            auto const target = method + ' ' + request["Target"].toString();
            ++counts[(target + ' ' + request["Body"].toString().left(2000)).toStdString()];
        }
    }
    for (auto const& [request, count] : counts)
    {
        check(count == 1, "sent " + std::to_string(count) + " times: " + request);
    }
}

void Matrix::checkNextCalls(TessalyConnection& connection)
{
    auto const [first, second] = twoReads(connection);
    check(
        first.outcome == Outcome::Ok && second.outcome == Outcome::Ok,
        "the next call on the connection fails" + failures());
    check(
        first.content == rightReads_.first.content && second.content == rightReads_.second.content,
        "the next call on the connection gets an answer that is not its own");
}

std::string Matrix::runCell(Fault const& fault, Call const& call)
{
    auto const broken = violations_.size();
    cell_ = nameOf(fault) + ", " + call.name;
    service_.reset();
    auto const target = Target::prepare(service_);
    auto connection = connect(fault.hangs ? 300ms : 60s);
    for (auto const& text : fault.texts)
    {
        service_.addFault(text);
    }
    auto const result = evaluate(call, call.run(*connection, target));
    check(
        allowedOutcomes(fault, call).contains(result.outcome),
        std::string("ends as ") + nameOf(result.outcome) + failures());
    check(
        fault.effect == Effect::ByChance || testkit::comesTrue([this] { return service_.firedCount() > 0; }),
        "the fault has not fired");
    fired_ += service_.firedCount();
    firedByChance_[nameOf(fault)] += service_.firedCount();
    service_.clearFaults();

    connection->setDefaultTimeout(60s);
    checkNextCalls(*connection);
    connection.reset();
    check(
        testkit::comesTrue([this] { return test::openSockets() <= mostSockets_; }),
        "sockets are left open: " + std::to_string(test::openSockets()) + ", never needed more than "
            + std::to_string(mostSockets_));
    checkWrites();
    ++cells_;
    return nameOf(result.outcome) + std::string(violations_.size() > broken ? "!" : "");
}

void Matrix::checkTheWhole()
{
    cell_ = "all cells";
    check(elsewhere_.acceptedCount() == 0, "a redirect was followed to another origin");
    for (auto const& [fault, count] : firedByChance_)
    {
        check(count > 0, fault + " has never fired");
    }
}

bool isWanted(Fault const& fault, std::vector<std::string> const& wanted)
{
    return wanted.empty()
           || std::any_of(
               wanted.begin(), wanted.end(),
               [&](std::string const& begin) { return nameOf(fault).starts_with(begin); });
}

int printMatrix(std::vector<std::string> const& wanted)
{
    constexpr int nameWidth = 74;
    Matrix matrix;
    std::printf("%-*s", nameWidth, "fault");
    for (Call const& call : callsOfTheMatrix())
    {
        std::printf(" %-9s", call.name);
    }
    std::printf("\n");
    for (Fault const& fault : matrix.faults())
    {
        if (!isWanted(fault, wanted))
        {
            continue;
        }
        std::printf("%-*s", nameWidth, nameOf(fault).c_str());
        for (Call const& call : callsOfTheMatrix())
        {
            std::printf(" %-9s", matrix.runCell(fault, call).c_str());
            std::fflush(stdout);
        }
        std::printf("\n");
    }
    matrix.checkTheWhole();
    std::printf("\n%d cells, faults fired %d times\n", matrix.cells(), matrix.fired());
    for (auto const& violation : matrix.violations())
    {
        std::printf("BROKEN  %s\n", violation.c_str());
    }
    return matrix.cells() > 0 && matrix.violations().empty() ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication const application(argc, argv);
    // The failures are in the table; what the library says about them would only tear it apart.
    qInstallMessageHandler([](QtMsgType, QMessageLogContext const&, QString const&) {});
    try
    {
        return printMatrix(std::vector<std::string>(argv + 1, argv + argc));
    }
    catch (std::exception const& error)
    {
        std::fprintf(stderr, "kelo_fault_matrix: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
