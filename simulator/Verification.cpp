#include "simulator/Verification.h"

#include <QJsonDocument>

#include <algorithm>

namespace simulator
{

namespace
{

constexpr qint64 mostCalls = 1'000'000;

constexpr Member requestMembers[] = {
    {"Operation", Kind::Text, true, {}, "the name of the operation"},
    integer("Exactly", 0, mostCalls, nullptr, "how often; 0 means never"),
    integer("AtLeast", 0, mostCalls, nullptr, "how often, or more; 1 if nothing is said"),
    integer("AtMost", 0, mostCalls, nullptr, "how often, or less"),
    integer("Status", 0, 599, nullptr, "only those answered with this status"),
    optional("Body", Kind::Any, "only those whose JSON body has at least these members"),
};

constexpr Member expectationMembers[] = {
    {"Requests", Kind::Objects, false, requestMembers, "how often operations were called"},
    optional("InOrder", Kind::Texts, "operations that were called one after the other; others may come between"),
    integer("Since", 0, std::numeric_limits<qint64>::max(), "0", "only the entries with a greater number"),
};

/// Whether everything that is wanted is there; objects may hold more.
bool contains(QJsonValue const& given, QJsonValue const& wanted)
{
    if (!wanted.isObject())
    {
        return given == wanted;
    }
    auto const object = wanted.toObject();
    auto const keys = object.keys();
    return std::all_of(keys.begin(), keys.end(), [&](QString const& key) { return contains(given[key], object[key]); });
}

QString numbersOf(std::vector<Journal::Entry const*> const& entries)
{
    QStringList numbers;
    for (auto const* entry : entries)
    {
        numbers << QString::number(entry->number);
    }
    return numbers.isEmpty() ? "none"
                             : QStringLiteral("%1 (%2)").arg(numbers.size()).arg(numbers.mid(0, 20).join(", "));
}

/// "createOrder: 1 wanted, found 2 (3, 9)"; nothing if it is as expected.
QString countDifference(Journal const& journal, QJsonObject const& expected, quint64 since)
{
    Journal::Filter filter = {.operation = expected["Operation"].toString(), .since = since};
    if (expected.contains("Status"))
    {
        filter.status = expected["Status"].toInt();
    }
    auto found = journal.select(filter);
    std::erase_if(
        found,
        [&expected](Journal::Entry const* entry)
        {
            return expected.contains("Body")
                   && !contains(QJsonDocument::fromJson(entry->request.body).object(), expected["Body"]);
        });
    auto const isExact = expected.contains("Exactly");
    auto const usualLeast = expected.contains("AtMost") ? 0 : 1;
    auto const least = expected[isExact ? "Exactly" : "AtLeast"].toInteger(usualLeast);
    auto const greatest = expected[isExact ? "Exactly" : "AtMost"].toInteger(mostCalls);
    auto const count = static_cast<qint64>(found.size());
    if (count >= least && count <= greatest)
    {
        return {};
    }
    auto const wanted = least == greatest ? QString::number(least)
                        : count < least   ? QStringLiteral("at least %1").arg(least)
                                          : QStringLiteral("at most %1").arg(greatest);
    return QStringLiteral("%1: %2 wanted, found %3").arg(filter.operation, wanted, numbersOf(found));
}

QString orderDifference(Journal const& journal, QJsonArray const& wanted, quint64 since)
{
    auto last = since;
    QString before = "at all";
    for (auto const& value : wanted)
    {
        auto const operation = value.toString();
        auto const later = journal.select({.operation = operation, .since = last});
        if (later.empty())
        {
            return QStringLiteral("in order: no %1 %2").arg(operation, before);
        }
        last = later.front()->number;
        before = QStringLiteral("after %1 (%2)").arg(operation).arg(last);
    }
    return {};
}

void checkOperation(QString const& name, QStringList const& operations)
{
    if (!operations.contains(name))
    {
        throw Refusal(Reason::BadValue, "Operation: " + oneOf(name, operations));
    }
}

} // namespace

Schema const expectationsMembers = expectationMembers;

void verify(Journal const& journal, QJsonObject const& expected, QStringList const& operations)
{
    auto const since = static_cast<quint64>(expected["Since"].toInteger());
    if (since < journal.firstNumber() - 1 && journal.droppedCount() > 0)
    {
        throw Refusal(
            Reason::NotNow, QStringLiteral("%1 entries are gone from the journal").arg(journal.droppedCount()));
    }
    if (expected["Requests"].toArray().isEmpty() && expected["InOrder"].toArray().isEmpty())
    {
        throw Refusal(Reason::MissingMember, "nothing is expected in Requests or InOrder");
    }
    QStringList differences;
    for (auto const& value : expected["Requests"].toArray())
    {
        auto const request = value.toObject();
        checkOperation(request["Operation"].toString(), operations);
        differences << countDifference(journal, request, since);
    }
    auto const inOrder = expected["InOrder"].toArray();
    for (auto const& name : inOrder)
    {
        checkOperation(name.toString(), operations);
    }
    differences << orderDifference(journal, inOrder, since);
    differences.removeAll(QString());
    if (!differences.isEmpty())
    {
        throw Refusal(Reason::NotVerified, differences.join("; "));
    }
}

} // namespace simulator
