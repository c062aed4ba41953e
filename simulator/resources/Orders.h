#pragma once

#include "simulator/IdList.h"

#include <QDateTime>
#include <QJsonObject>
#include <QString>

#include <vector>

namespace simulator
{

struct Answer;
struct Call;
struct Route;
struct State;

/// How far an order has come; these numbers stand on the wire. Its items always stand where the order stands. An order
/// gets from AwaitingFiles to Received by the end of its upload, and from there on by the control action
/// "advanceOrder", one state a time.
enum class OrderState : int
{
    AwaitingFiles = 0,
    Received = 1,
    Checked = 2, // its temporary shells are ready from here on
    InProduction = 3,
    Shipped = 4,
    Completed = 5 // stays so
};

/// Who fulfils an order, which decides how its upload ends:
///
/// | kind         | the upload ends when                                                         |
/// |--------------|------------------------------------------------------------------------------|
/// | Production   | FinishUpload is called and all files are there                               |
/// | Lab          | the last file has arrived: the answer to its creation names no order, so that |
/// |              | its maker has nothing to call FinishUpload with                              |
/// | CaseDesigner | at once: it has no files                                                     |
enum class OrderKind : int
{
    Production,
    Lab,
    CaseDesigner
};

/// What an installation may order. An article that is not for teeth, such as a model, is ordered with the tooth numbers
/// 0 and 0.
struct Article
{
    QString id = {}; // the article number
    QString installation = {};
    int cents = 0; // the list price of one piece
    bool isForTeeth = true;
};

struct ShippingAddress
{
    QString id = {};
    QString installation = {};
    QString name = {};
    QString street = {};
    QString postalCode = {};
    QString city = {};
    QString region = {};
    QString country = {};
};

/// A file that was announced with an order, and what has arrived of it.
struct UploadSlot
{
    QString id = {};
    QString name = {};
    qint64 size = 0;
    QByteArray md5 = {};
    qint64 receivedBytes = 0;
    int uploads = 0; // accepted ones; none: the file is missing
};

struct OrderItem
{
    QString articleNumber = {};
    int quantity = 0;
    int firstTooth = 0;
    int lastTooth = 0;
    std::vector<UploadSlot> files = {};
};

struct Order
{
    QString id = {};
    QString productionIdentifier = {};
    OrderKind kind = OrderKind::Production;
    QString installation = {};
    OrderState state = OrderState::AwaitingFiles;
    std::vector<OrderItem> items = {};
    QJsonObject request = {}; // the body that created it
};

struct Orders
{
    std::vector<Article> articles = {};
    std::vector<ShippingAddress> addresses = {};
    IdList<Order> orders = {};
};

std::vector<Route> orderRoutes();

/// Gives both installations articles and addresses, and stores an order in every state; see the tables in
/// OrdersSeed.cpp.
void seedOrders(State& state);

/// Checks the body of an order and stores it with new references; the same body sent twice makes two orders. Throws a
/// Refusal for anything that cannot be ordered and then leaves the state as it is.
Order& placeOrder(State& state, OrderKind kind, QJsonObject const& body);

/// The article that an item of an order or price request names, when quantity and teeth suit it. Throws a Refusal.
Article const& checkedArticle(State const& state, QString const& installation, QJsonObject const& item);

/// Control: moves the order in "Reference" to its next state. Throws a Refusal while it awaits files.
Answer advanceOrder(Call const& call);

/// Control: every stored order with its items, uploads, the body that created it, and in "TimesCreated" how many orders
/// that same body has created.
Answer storedOrders(Call const& call);

} // namespace simulator
