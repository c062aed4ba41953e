#pragma once

#include "simulator/Routing.h"
#include "simulator/resources/Orders.h"

/// What the bodies of orders must hold, and the checks of what stands in them; nothing here changes a state.
namespace simulator::orders
{

extern Schema const productionMembers;
extern Schema const labMembers;
extern Schema const caseDesignerMembers;
extern Schema const detailsMembers;

/// The checks throw a Refusal, as this one does unless it is right.
void require(bool isRight, Reason reason, QString const& detail);
/// A member that is left out or empty is none to check.
void checkVersion(QJsonObject const& body, char const* key);
void checkAddress(State const& state, QString const& installation, QString const& address);
/// The item of an order with the files that it announces, which have no references yet.
OrderItem checkedItem(State const& state, QString const& installation, QJsonObject const& item);

} // namespace simulator::orders
