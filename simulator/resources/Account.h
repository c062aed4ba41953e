#pragma once

#include <QMap>
#include <QString>

#include <vector>

namespace simulator
{

struct Route;
struct State;

/// An installation's account with its site.
struct Account
{
    QString installation = {};
    QString accountId = {};
    QString accountName = {};
    QString email = {};
    QString token = {};
    QString siteId = {};
    bool twoFactorEnabled = false;
    int twoFactorRefreshTime = 0;
};

struct Accounts
{
    std::vector<Account> accounts = {};
    QMap<QString, QString> addresses = {}; // of the services around, by their member of the settings
};

/// The account and site of an installation, and the addresses of the services around it. Nothing of it changes by
/// itself.
std::vector<Route> accountRoutes();
void seedAccounts(State& state);

} // namespace simulator
