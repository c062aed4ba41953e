#pragma once

#include <array>
#include <atomic>
#include <iterator>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include <QByteArray>
#include <QJsonArray>
#include <QRegularExpression>
#include <QString>

#include "tests/traffic/Calls.h"

namespace soak
{

using test::Outcome;

/// A call under way.
struct Ticket
{
    quint64 number = 0;
    char const* kind = "";
    QString marker = {};      ///< of a write: text that nothing else on the wire has
    unsigned spoilings = 0;   ///< how often spoiling had begun or ended when the call was made
    bool mustSucceed = false; ///< nothing was in its way
};

/// Keeps account of all calls and writes, and of every promise that was broken. May be used from any thread.
class Ledger
{
public:
    /// Text that a write carries, one of its own for each number.
    static QString marker(int round, int thread, int number);

    Ticket open(char const* kind, QString const& marker);
    /// Only a success with the content that is `right` for the call is one.
    void close(Ticket const& ticket, test::Ending const& ending, QByteArray const& right);
    void violate(std::string const& what);

    /// The contents of the resources that stay as they are, by name; learned while nothing else goes on.
    void learn(std::string const& name, QByteArray const& content);
    bool isLearning() const { return isLearning_; }
    void setLearning(bool isLearning) { isLearning_ = isLearning; }
    QByteArray rightContent(std::string const& name) const;

    /// From here to there answers of the service may be other than they should.
    void setSpoiling(bool isSpoiling);
    /// From here to there every call must succeed.
    void setCalm(bool isCalm) { isCalm_ = isCalm; }

    std::size_t openCount() const;
    /// What has not ended, for people.
    std::string openCalls() const;

    /// Compares the writes of this round and the last with what the service has seen since its last fresh start: its
    /// journal and its orders. Those of the last round are then forgotten.
    void checkWrites(QJsonArray const& journal, QJsonArray const& orders);

    void print() const;
    bool hasViolations() const;
    quint64 made() const;

private:
    struct Write
    {
        char const* kind = "";
        Outcome outcome = Outcome::Cancelled;
        bool maybeProcessed = false;
        bool isOld = false; ///< of the round before
        int seen = 0;       ///< complete requests in the journal
        int created = 0;    ///< orders that came of it
    };
    struct WriteCounts
    {
        quint64 once = 0;
        quint64 never = 0;
        quint64 twice = 0;
    };

    Outcome judge(Ticket const& ticket, test::Ending const& ending, QByteArray const& right);
    bool isExcused(Ticket const& ticket) const;
    bool isOfAnother(QByteArray const& content, QByteArray const& right) const;
    void violateLocked(std::string const& what);
    void countWrites(QJsonArray const& journal, QJsonArray const& orders);
    static char const* faultOf(Write const& write);

    mutable std::mutex mutex_;
    quint64 made_ = 0;
    quint64 ended_ = 0;
    std::map<quint64, Ticket> open_;
    std::map<std::string, std::array<quint64, std::size(test::outcomeNames)>> outcomes_;
    std::map<QString, Write> writes_;
    std::map<std::string, WriteCounts> writeCounts_;
    std::map<std::string, QByteArray> rightContents_; ///< only changed while learning
    std::vector<std::string> violations_;
    quint64 violationCount_ = 0;
    std::atomic<unsigned> spoilings_ = 0; ///< odd: spoiling is on
    std::atomic<bool> isLearning_ = false;
    std::atomic<bool> isCalm_ = false;
};

} // namespace soak
