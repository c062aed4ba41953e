// What the examples of the documentation take for granted: the host that they are written for. scripts/check-examples
// compiles each of them with this.
#pragma once

#include <chrono>
#include <memory>
#include <vector>

#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <KeloCommunicationLib/KeloCommunicationLib.h>

/// The host's window.
struct Window : QObject
{
    void showUsers(std::vector<TessalyUser> const& users);
    void show(OrderShippingAddressList const& addresses);
    void showProgress(qint64 done, qint64 total);
    void showError(QString const& text);
    void showOffline(QString const& reason);
    void askForPassword();
};

/// An example is put into the body of this function.
#define KELO_EXAMPLE                                                                                                   \
    void example(                                                                                                      \
        Window* window, std::shared_ptr<TessalyConnection> connection, QStringList& log, QString const& user,          \
        QString const& password, QString const& installation, QString const& reference, QString const& path,           \
        QUrl const& url)
