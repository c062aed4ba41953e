#pragma once

#include <QString>

#include <vector>

namespace simulator
{

struct Route;
struct State;

struct User
{
    QString installation = {};
    QString reference = {};
    QString firstName = {};
    QString lastName = {};
    QString userName = {};
    QString passwordHash = {};
    QString email = {};
    QString twoFactorKey = {}; // enciphered; empty: the user has none
};

struct ClinicalPartner
{
    QString participantId = {};
    QString name = {};
};

struct Study
{
    QString installation = {};
    QString id = {};
    QString name = {};
    std::vector<ClinicalPartner> partners = {};
};

/// Of an outside party.
struct AuthenticationKey
{
    QString installation = {};
    QString key = {};
};

struct Users
{
    std::vector<User> users = {};
    std::vector<Study> studies = {};
    std::vector<AuthenticationKey> keys = {};
};

/// The people and parties around an installation: its users, the studies it takes part in with their clinical partners,
/// and the keys of outside parties. Nothing of it changes by itself.
std::vector<Route> userRoutes();
void seedUsers(State& state);

} // namespace simulator
