#pragma once

#include "simulator/resources/Account.h"
#include "simulator/resources/Cases.h"
#include "simulator/resources/Catalog.h"
#include "simulator/resources/Collaboration.h"
#include "simulator/resources/Documents.h"
#include "simulator/resources/Orders.h"
#include "simulator/resources/Partners.h"
#include "simulator/resources/Statistics.h"
#include "simulator/resources/Users.h"

#include <QDateTime>
#include <QMap>
#include <QString>

#include <random>
#include <vector>

namespace simulator
{

struct Route;

/// Everything the service knows. A plain value: a reset puts a freshly seeded one in its place.
struct State
{
    std::mt19937 random;
    QDateTime now; // the service's own clock: it only moves when something changes, so runs repeat exactly
    QMap<QString, int> lastNumbers;       // of the ids given out, by their prefix
    QMap<QString, QString> installations; // id and name of the practice

    Collaboration collaboration;
    Cases cases;
    Orders orders;
    Partners partners;
    Statistics statistics;
    Accounts accounts;
    Documents documents;
    Users users;
    std::vector<Catalog> catalogs;

    /// A new id such as "REQ-000017", different from all others of this state.
    QString newId(QString const& prefix);

    /// Moves the clock one minute on and returns the new time.
    QDateTime tick();
};

/// "REQ-000017"
QString idOf(QString const& prefix, int number);

/// Gives the id back; throws a Refusal when the state has no such installation.
QString knownInstallation(State const& state, QString const& id);

/// A family of resources: its routes, and what it puts into a fresh state (none: nothing).
struct Family
{
    std::vector<Route> (*routes)() = nullptr;
    void (*seed)(State& state) = nullptr;
};

/// All families of the service, in the order in which they are seeded. A new family is a new row here and files of its
/// own below resources/.
std::vector<Family> const& families();

/// The state the service starts with. The same seed gives the same state; another one gives other patients and
/// materials.
State seededState(unsigned seed);

} // namespace simulator
