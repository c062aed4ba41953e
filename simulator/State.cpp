#include "simulator/State.h"

#include "simulator/Routing.h"
#include "simulator/resources/Prices.h"
#include "simulator/resources/Shells.h"

namespace simulator
{

QString State::newId(QString const& prefix)
{
    return idOf(prefix, ++lastNumbers[prefix]);
}

QString idOf(QString const& prefix, int number)
{
    return QStringLiteral("%1-%2").arg(prefix).arg(number, 6, 10, QLatin1Char('0'));
}

QDateTime State::tick()
{
    now = now.addSecs(60);
    return now;
}

QString knownInstallation(State const& state, QString const& id)
{
    if (!state.installations.contains(id))
    {
        throw Refusal(Reason::UnknownId, id);
    }
    return id;
}

std::vector<Family> const& families()
{
    static std::vector<Family> const rows = {
        {collaborationRoutes, seedCollaboration},
        {caseRoutes, seedCases},
        {partnerRoutes, seedPartners},
        {accountRoutes, seedAccounts},
        {documentRoutes, seedDocuments},
        {userRoutes, seedUsers},
        {statisticsRoutes},
        {orderRoutes, seedOrders},
        {priceRoutes},
        {shellRoutes},
        {catalogRoutes, seedCatalogs},
    };
    return rows;
}

State seededState(unsigned seed)
{
    State state;
    state.random.seed(seed);
    state.now = QDateTime(QDate(2025, 3, 3), QTime(8, 15), Qt::UTC);
    state.installations = {
        {"INST-1001", "Harbour Street Dental Practice"}, {"INST-2002", "Dr. Lindqvist Dental Surgery"}};
    for (auto const& family : families())
    {
        if (family.seed != nullptr)
        {
            family.seed(state);
        }
    }
    return state;
}

} // namespace simulator
