#include "cli/Commands.h"

#include <algorithm>
#include <array>
#include <vector>

#include <QJsonArray>

#include <unistd.h>

#include "cli/doctor/Checks.h"

namespace cli
{

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr std::chrono::seconds usualStep{5};

struct Check
{
    char const* name = nullptr;
    MakeCheck* make = nullptr;
    std::array<char const*, 2> needs = {}; ///< those of which none may have failed
};

// In the order in which they are made.
constexpr std::array<Check, 12> checks = {{
    {"address", checkAddress},
    {"settings", checkSettings, {"address"}},
    {"proxy", checkProxy, {"address"}},
    {"name look-up", checkName, {"proxy"}},
    {"connection", checkConnection, {"name look-up"}},
    {"TLS", checkTls, {"connection", "settings"}},
    {"HTTP", checkHttp, {"TLS"}},
    {"credentials", checkCredentials, {"HTTP"}},
    {"installation", checkInstallation, {"credentials"}},
    {"clock", checkClock, {"HTTP"}},
    {"round trips", checkRoundTrips, {"credentials"}},
    {"versions", checkVersions},
}};

/// In the order of the enumeration.
constexpr std::array<char const*, 4> verdicts = {"ok", "warning", "failed", "not tried"};

QString nameOf(Verdict verdict)
{
    return QString::fromLatin1(verdicts.at(static_cast<std::size_t>(verdict)));
}

struct Result
{
    QString name;
    Finding finding;
    QString obstacle = {}; ///< the check that has failed: this one or one that it needs
};

/// The failed check for whose sake this one cannot be made; empty if there is none.
QString obstacleOf(Check const& check, std::vector<Result> const& results)
{
    for (auto const* const need : check.needs)
    {
        auto const made = std::find_if(
            results.begin(), results.end(),
            [need](Result const& result) { return result.name == QLatin1String(need); });
        if (made != results.end() && !made->obstacle.isEmpty())
        {
            return made->obstacle;
        }
    }
    return {};
}

std::vector<Result> allResults(Examination& examination)
{
    bool const isWatched = ::isatty(STDERR_FILENO) == 1;
    std::vector<Result> results;
    for (Check const& check : checks)
    {
        QString const name = QString::fromLatin1(check.name);
        drawStatusLine(isWatched ? u"Checking: %1"_s.arg(name) : QString());
        QString const obstacle = obstacleOf(check, results);
        bool const isLate = check.needs[0] != nullptr && examination.patience.isOver();
        Finding const finding = !obstacle.isEmpty() ? Finding::notTried(u"%1 failed"_s.arg(obstacle))
                                : isLate            ? Finding::notTried(u"the checks before it took too long"_s)
                                                    : check.make(examination);
        results.push_back({name, finding, finding.verdict == Verdict::Failed ? name : obstacle});
    }
    drawStatusLine({});
    return results;
}

/// The first of that verdict; null if there is none.
Result const* firstOf(std::vector<Result> const& results, Verdict verdict)
{
    auto const found = std::find_if(
        results.begin(), results.end(), [verdict](Result const& result) { return result.finding.verdict == verdict; });
    return found == results.end() ? nullptr : &*found;
}

QString textOf(std::vector<Result> const& results, QString const& summary)
{
    QString text;
    for (auto const& [name, finding, obstacle] : results)
    {
        text += nameOf(finding.verdict).leftJustified(11) + name + u": "_s + printable(finding.found) + u'\n';
        text += finding.advice.isEmpty() ? QString() : QString(11, u' ') + u"-> "_s + printable(finding.advice) + u'\n';
    }
    return text + u'\n' + printable(summary) + u'\n';
}

QJsonArray jsonOf(std::vector<Result> const& results)
{
    QJsonArray list;
    for (auto const& [name, finding, obstacle] : results)
    {
        list.append(QJsonObject{
            {u"Name"_s, name},
            {u"Result"_s, nameOf(finding.verdict)},
            {u"Found"_s, finding.found},
            {u"Advice"_s, finding.advice},
            {u"Details"_s, finding.details}});
    }
    return list;
}

} // namespace

Action doctor(Arguments& /*arguments*/)
{
    return [](Context const& context)
    {
        Examination examination(context.options(), usualStep);
        auto const results = allResults(examination);
        auto const* const failed = firstOf(results, Verdict::Failed);
        auto const* const first = failed != nullptr ? failed : firstOf(results, Verdict::Warning);
        QString const summary =
            first == nullptr ? u"All is well."_s
                             : u"%1 (%2). To do first: %3"_s.arg(
                                 failed != nullptr ? u"The service cannot be used"_s : u"The service can be used"_s,
                                 first->name + u' ' + nameOf(first->finding.verdict), first->finding.advice);
        QJsonObject const json{
            {u"Checks"_s, jsonOf(results)},
            {u"Result"_s, nameOf(first == nullptr ? Verdict::Ok : first->finding.verdict)},
            {u"First"_s, first == nullptr ? QString() : first->name},
            {u"Summary"_s, summary}};
        context.output().show(json, textOf(results, summary));
        if (examination.context)
        {
            examination.context->traceWriter()();
        }
        if (failed != nullptr)
        {
            throw Failure(failed->finding.code, {});
        }
    };
}

} // namespace cli
