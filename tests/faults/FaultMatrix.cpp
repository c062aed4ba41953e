// Every fault against every kind of call, as a table. Ends with 1 if a cell breaks a promise.
//
//   kelo_fault_matrix [FAULT...]     only the faults whose text begins so
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>
#include <set>

#include <QCoreApplication>

#include "tests/support/FaultedService.h"
#include "tests/traffic/Calls.h"
#include "tests/traffic/Faults.h"
#include <testkit/Waiting.h>
#include <tests/support/OpenSockets.h>

namespace
{

using namespace test;
using namespace std::chrono_literals;

// No measure of time, but what counts as never.
constexpr auto guard = 60s;

char const* nameOf(Outcome outcome)
{
    return outcomeNames[static_cast<std::size_t>(outcome)];
}

std::string nameOf(Fault const& fault)
{
    // Where the redirect leads to differs from run to run.
    auto const text = fault.text.substr(0, fault.text.find("location="));
    return text.substr(0, text.find_last_not_of(":,") + 1) + (fault.other.empty() ? "" : " + ") + fault.other;
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

/// As the service is to be told, for as long as the cell lasts.
std::vector<std::string> textsOf(Fault const& fault)
{
    std::string const lasting = "times=-1";
    std::vector<std::string> texts = {fault.source == Source::Service ? extended(fault.text, lasting) : fault.text};
    if (!fault.other.empty())
    {
        texts.push_back(extended(fault.other, lasting));
    }
    return texts;
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

    Connection connect(std::chrono::milliseconds timeout);
    std::string failures() const;
    Subject prepare(Call const& call);
    Ending endOf(Call const& call, Running const& running) const;
    void check(bool isGood, std::string const& what);
    void checkWrites();
    void checkNextCalls(Connection const& connection);

    FaultedService service_;
    simulator::faults::FaultProxy elsewhere_;
    std::vector<collaboration::RequestInfo> const requests_;
    std::map<std::string, QByteArray> rightContent_;
    std::vector<std::string> violations_;
    mutable std::mutex failuresMutex_;
    std::string failures_; ///< of the present connection's exchanges, for the explanation of a violation
    std::string cell_;
    std::map<std::string, int> firedByChance_;
    int mostSockets_ = 0;
    int cells_ = 0;
    int fired_ = 0;
};

Matrix::Matrix()
    : elsewhere_(QUrl(service_.directUrl()).port()),
      requests_(service_.direct()->getRequests(FaultedService::installation, false).get().value)
{
    for (Call const& call : calls())
    {
        service_.reset();
        auto const subject = prepare(call);
        auto const ending = call.start(connect(guard), subject).ending.get();
        cell_ = call.name;
        check(
            ending.outcome == Outcome::Ok && (call.right == nullptr || call.right(subject) == ending.content),
            "does not even work without a fault");
        rightContent_[call.name] = ending.content;
    }
    mostSockets_ = test::openSockets() + keptSockets;
}

std::vector<Fault> Matrix::faults() const
{
    auto all = allFaults("http://127.0.0.1:" + std::to_string(elsewhere_.port()));
    std::erase_if(all, [](Fault const& fault) { return fault.isSlow; });
    return all;
}

Connection Matrix::connect(std::chrono::milliseconds timeout)
{
    Connection connection = service_.connect(timeout);
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

/// What the call is about; the service is told past the faults.
Subject Matrix::prepare(Call const& call)
{
    auto const start = [this](char const* name, Subject const& subject)
    { return callNamed(name).start(service_.direct(), subject).ending.get(); };
    auto const made = start(
        "order",
        {.marker = QStringLiteral("to upload to"), .file = {.marker = QStringLiteral("a tooth"), .lines = 20'000}});
    Subject subject{
        .marker = QStringLiteral("of the matrix"),
        .shell = QStringLiteral("SHELL-ORD-000001-1"),
        .order = QStringLiteral("ORD-000001"),
        .file = made.slot,
        .requests = requests_};
    if (std::string(call.name).starts_with("finish"))
    {
        start("upload", subject);
        subject.marker = made.order;
    }
    return subject;
}

/// What has not ended by now counts as cancelled, as no call may end here.
Ending Matrix::endOf(Call const& call, Running const& running) const
{
    auto ending = running.ending.waitFor(guard) ? running.ending.get() : Ending();
    if (ending.outcome == Outcome::Ok && ending.content != rightContent_.at(call.name))
    {
        ending.outcome = Outcome::Other;
    }
    return ending;
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

void Matrix::checkNextCalls(Connection const& connection)
{
    // Two different reads at the same time are told apart by what they bring.
    Call const* const reads[] = {&callNamed("addresses"), &callNamed("users")};
    Running const running[] = {reads[0]->start(connection, {}), reads[1]->start(connection, {})};
    for (int which : {0, 1})
    {
        auto const outcome = endOf(*reads[which], running[which]).outcome;
        check(outcome != Outcome::Other, "the next call on the connection gets an answer that is not its own");
        check(
            outcome == Outcome::Ok || outcome == Outcome::Other, "the next call on the connection fails" + failures());
    }
}

std::string Matrix::runCell(Fault const& fault, Call const& call)
{
    auto const broken = violations_.size();
    cell_ = nameOf(fault) + ", " + call.name;
    service_.reset();
    auto const subject = prepare(call);
    auto connection = connect(fault.hangs ? 300ms : guard);
    for (auto const& text : textsOf(fault))
    {
        service_.addFault(text);
    }
    auto const outcome = endOf(call, call.start(connection, subject)).outcome;
    check(allowedOutcomes(fault, call).contains(outcome), std::string("ends as ") + nameOf(outcome) + failures());
    check(
        fault.effect == Effect::ByChance || testkit::comesTrue([this] { return service_.firedCount() > 0; }),
        "the fault has not fired");
    fired_ += service_.firedCount();
    firedByChance_[nameOf(fault)] += service_.firedCount();
    service_.clearFaults();

    connection->setDefaultTimeout(guard);
    checkNextCalls(connection);
    connection.reset();
    check(
        testkit::comesTrue([this] { return test::openSockets() <= mostSockets_; }),
        "sockets are left open: " + std::to_string(test::openSockets()) + ", never needed more than "
            + std::to_string(mostSockets_));
    checkWrites();
    ++cells_;
    return nameOf(outcome) + std::string(violations_.size() > broken ? "!" : "");
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
    constexpr int nameWidth = 66;
    Matrix matrix;
    std::printf("%-*s", nameWidth, "fault");
    for (Call const& call : calls())
    {
        std::printf(" %-11s", call.name);
    }
    std::printf("\n");
    for (Fault const& fault : matrix.faults())
    {
        if (!isWanted(fault, wanted))
        {
            continue;
        }
        std::printf("%-*s", nameWidth, nameOf(fault).c_str());
        for (Call const& call : calls())
        {
            std::printf(" %-11s", matrix.runCell(fault, call).c_str());
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
