#pragma once

#include "simulator/IdList.h"

#include <QByteArray>
#include <QDateTime>
#include <QMap>
#include <QString>

#include <vector>

namespace simulator
{

struct Route;
struct State;

/// A platform that receives cases, as an installation sees it.
struct PartnerPlatform
{
    QString id = {};
    QString installation = {};
    QString name = {};
    bool shouldCreateConnection = false;
    bool shouldAnonymize = false;
    QByteArray logo = {}; // a PNG in base64 text; empty: it has none
};

/// An installation's account with a platform, the "partner connection" of the wire.
struct PartnerAccount
{
    QString id = {};
    QString installation = {};
    QString partnerId = {};
    QString userName = {};
    QString givenName = {};
    bool isConnected = false;
};

/// A portal case that was sent to a partner. The case keeps its id there; sent to two partners, it stands here twice.
struct PartnerCase
{
    QString caseId = {};
    QString accountId = {};
    QString installation = {};
    QString patientId = {};
    QString status = {};
    QDateTime createdAt = {};
    bool allowsUpdates = false;
    QString platformCaseId = {};
};

struct Partners
{
    std::vector<PartnerPlatform> platforms = {};
    QMap<QString, QByteArray> collaboratorLogos = {}; // by the partner's id, as those of the platforms
    IdList<PartnerAccount> accounts = {};
    std::vector<PartnerCase> cases = {};
};

/// Partner platforms with their logos, the accounts with them, and the cases sent to them.
std::vector<Route> partnerRoutes();

/// Needs the portal's cases in the state.
void seedPartners(State& state);

/// Sends the case on its way, in its first status, and tells the portal with whom it is shared now.
PartnerCase& sendToPartner(State& state, QString const& caseId, PartnerAccount const& account);

} // namespace simulator
