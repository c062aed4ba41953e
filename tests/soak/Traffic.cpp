#include "tests/soak/Traffic.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QEventLoop>
#include <QTimer>

#include <KeloCommunicationLib/KeloCommunicationLib.h>

namespace soak
{

namespace
{

QString const installation = test::FaultedService::installation;

// ---- what became of a call -----------------------------------------------------------------------------------------

struct Ending
{
    Outcome outcome = Outcome::Pending;
    bool maybeProcessed = false;
};

/// Of a call whose reply has a status; `content` makes comparable text of a success.
template <class Reply, class Content>
Ending endingOf(
    Ledger& ledger, Ticket const& ticket, threading::Future<Reply> const& future, Content content,
    QByteArray const& right)
{
    if (future.isCanceled())
    {
        return {Outcome::Cancelled};
    }
    Reply const reply = future.get();
    if (reply.status.kind == 1)
    {
        if (reply.status.message.isEmpty())
        {
            ledger.violate(std::string(ticket.kind) + ": lost without a reason");
        }
        return {Outcome::Lost, reply.status.message.contains(QLatin1String("may have processed"))};
    }
    if (reply.status.kind != 0)
    {
        return {Outcome::Refused};
    }
    return {ledger.judge(ticket, content(reply), right)};
}

/// Closes the ticket when the future ends, on whatever thread that happens.
template <class Reply, class Content>
void follow(
    Caller& caller, Ticket const& ticket, threading::Future<Reply> const& future, Content content,
    QByteArray const& right)
{
    future.then(
        [&ledger = caller.ledger(), ticket, content, right](threading::Future<Reply> const& finished)
        {
            auto const ending = endingOf(ledger, ticket, finished, content, right);
            ledger.close(ticket, ending.outcome, ending.maybeProcessed);
        });
    caller.remember(future);
}

/// A success whose content must be the resource's, which never changes.
Outcome judgeResource(Ledger& ledger, Ticket const& ticket, QByteArray const& content)
{
    if (ledger.isLearning())
    {
        ledger.learn(ticket.kind, content);
    }
    return ledger.judge(ticket, content, ledger.rightContent(ticket.kind));
}

template <class Operation, class Content>
void followResource(Caller& caller, char const* kind, Operation operation, Content content)
{
    auto const ticket = caller.ledger().open(kind);
    auto const future = operation(*caller.pick());
    if (caller.ledger().isLearning())
    {
        caller.ledger().learn(kind, content(future.get()));
    }
    follow(caller, ticket, future, content, caller.ledger().rightContent(kind));
}

// ---- reads ---------------------------------------------------------------------------------------------------------

QByteArray textOf(rest::RestReply<OrderShippingAddressList> const& reply)
{
    QString text;
    for (auto const& address : reply.value.addresses)
    {
        text += address.identifier + address.city + address.street + ';';
    }
    return text.toUtf8();
}

QByteArray textOf(rest::RestReply<std::vector<TessalyUser>> const& reply)
{
    QString text;
    for (auto const& user : reply.value)
    {
        text += user.getReference() + user.getUserName() + ';';
    }
    return text.toUtf8();
}

QByteArray textOf(rest::RestReply<std::vector<collaboration::RequestInfo>> const& reply)
{
    QString text;
    for (auto const& request : reply.value)
    {
        text += request.requestId + request.transactionId + ';';
    }
    return text.toUtf8();
}

void addresses(Caller& caller, char const* kind)
{
    followResource(
        caller, kind, [](auto& connection) { return connection.getShippingAddresses(installation); },
        [](auto const& reply) { return textOf(reply); });
}

void users(Caller& caller, char const* kind)
{
    followResource(
        caller, kind, [](auto& connection) { return connection.getUsersForLicense(installation); },
        [](auto const& reply) { return textOf(reply); });
}

void requests(Caller& caller, char const* kind)
{
    followResource(
        caller, kind, [](auto& connection) { return connection.getRequests(installation, false); },
        [](auto const& reply) { return textOf(reply); });
}

void orderStatus(Caller& caller, char const* kind)
{
    auto const order = caller.stage().someOrder(caller.random());
    OrderDetailsRequest request;
    request.setOrderReferences({order});
    auto const ticket = caller.ledger().open(kind);
    follow(
        caller, ticket, caller.pick()->getOrderStatus(request),
        [](auto const& reply)
        {
            QString text;
            for (auto const& details : reply.value)
            {
                text += details.getReference();
            }
            return text.toUtf8();
        },
        order.toUtf8());
}

void download(Caller& caller, char const* kind)
{
    auto const& shells = caller.stage().shells();
    auto const shell = shells.at(caller.below(shells.size()));
    auto const ticket = caller.ledger().open(kind);
    auto const future = caller.pick()->getTempShellFile(shell);
    future.then(
        [&ledger = caller.ledger(), ticket,
         name = kind + (' ' + shell.toStdString())](threading::Future<QByteArray> const& finished)
        {
            auto const bytes = finished.get();
            ledger.close(
                ticket, finished.isCanceled() ? Outcome::Cancelled
                        : bytes.isEmpty()     ? Outcome::Failed
                                              : ledger.judge(ticket, bytes, ledger.rightContent(name)));
        });
    caller.remember(future);
}

/// A missing logo counts as the right one: its download may have failed.
QByteArray logoText(Ledger& ledger, PartnerInfo const& partner)
{
    auto const name = "logo of " + partner.getName().toStdString();
    QByteArray bytes;
    if (auto const& logo = partner.getLogo())
    {
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        logo->save(&buffer, "BMP");
        bytes = QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
    }
    if (ledger.isLearning())
    {
        ledger.learn(name, bytes);
    }
    return bytes.isEmpty() ? ledger.rightContent(name) : bytes;
}

void logos(Caller& caller, char const* kind)
{
    followResource(
        caller, kind, [](auto& connection) { return connection.getPartners(installation, true); },
        [&ledger = caller.ledger()](auto const& reply)
        {
            QByteArray text;
            for (auto const& partner : reply.value)
            {
                text += partner.getName().toUtf8() + logoText(ledger, partner) + ';';
            }
            return text;
        });
}

// ---- blocking calls ------------------------------------------------------------------------------------------------

void keys(Caller& caller, char const* kind)
{
    auto const ticket = caller.ledger().open(kind);
    auto const [code, found] = caller.pick()->getThirdPartyAuthenticationKeys(installation);
    QString text;
    for (auto const& key : found)
    {
        text += key + ';';
    }
    caller.ledger().close(
        ticket, code == KeloErrorCode::Success ? judgeResource(caller.ledger(), ticket, text.toUtf8()) : Outcome::Lost);
}

void shellList(Caller& caller, char const* kind)
{
    auto const ticket = caller.ledger().open(kind);
    auto const found = caller.pick()->getTempShellCalculationData(QStringLiteral("ORD-000001")).getTempShellFile();
    QString text;
    for (auto const& shell : found)
    {
        text += shell.getFileId() + shell.getFileName() + ';';
    }
    caller.ledger().close(
        ticket, found.isEmpty() ? Outcome::Failed : judgeResource(caller.ledger(), ticket, text.toUtf8()));
}

void sweep(Caller& caller, char const* kind)
{
    auto const ticket = caller.ledger().open(kind);
    auto const connection = caller.pick();
    RequestDetailsRetriever retriever(*connection);
    QEventLoop loop;
    int ends = 0;
    auto const end = [&]
    {
        ++ends;
        loop.quit();
    };
    QObject::connect(&retriever, &RequestDetailsRetriever::finished, &loop, end);
    QObject::connect(&retriever, &RequestDetailsRetriever::failed, &loop, end);
    QTimer::singleShot(patience, &loop, &QEventLoop::quit);
    std::vector<collaboration::RequestInfo> known;
    retriever.setOnlyActiveRequests(false);
    retriever.getUpdates({collaboration::RequestType::Restoration, collaboration::RequestType::LabDesign}, known);
    loop.exec();
    if (ends != 1)
    {
        caller.ledger().violate(std::string(kind) + ": it has ended " + std::to_string(ends) + " times");
    }
    QStringList found;
    for (auto const& details : retriever.getAllRequestDetails())
    {
        found +=
            QString::number(static_cast<int>(details.requestType)) + details.requestDetails.id + details.partnerName;
    }
    found.sort(); // the order of arrival is not promised
    auto const isGood = retriever.isSuccess() && !found.isEmpty();
    caller.ledger().close(
        ticket, isGood ? judgeResource(caller.ledger(), ticket, found.join(';').toUtf8()) : Outcome::Failed);
}

void accountSettings(Caller& caller, char const* kind)
{
    auto const ticket = caller.ledger().open(kind);
    AccountSettingsRetriever retriever;
    auto const connection = caller.pick();
    auto const isGood = retriever.retrieveAccountSettings(*connection);
    QStringList found;
    for (auto const& map : {retriever.getAccountSettings(), retriever.getUpdateReferences()})
    {
        for (auto const& key : map.keys())
        {
            found += key + map[key].toString();
        }
    }
    found.sort();
    caller.ledger().close(
        ticket, isGood ? judgeResource(caller.ledger(), ticket, found.join(';').toUtf8()) : Outcome::Failed);
}

/// A continuation that waits for another call, on the thread that finishes the first one.
void waitInside(Caller& caller, char const* kind)
{
    auto const connection = caller.pick();
    auto const ticket = caller.ledger().open(kind);
    auto const future = connection->getUsersForLicense(installation);
    future.then(
        [&ledger = caller.ledger(), ticket,
         weak = std::weak_ptr(connection)](TessalyConnection::Reply<std::vector<TessalyUser>> const& finished)
        {
            auto const alive = finished.isCanceled() ? nullptr : weak.lock();
            if (!alive)
            {
                ledger.close(ticket, Outcome::Cancelled);
                return;
            }
            auto const inner = alive->getShippingAddresses(installation);
            inner.wait();
            auto const ending = endingOf(
                ledger, ticket, inner, [](auto const& reply) { return textOf(reply); },
                ledger.rightContent("addresses"));
            ledger.close(ticket, ending.outcome);
        });
    caller.remember(future);
}

// ---- writes --------------------------------------------------------------------------------------------------------

/// Mostly small, now and then large, and never the same twice.
QByteArray fileContent(QString const& marker)
{
    auto const line = "solid " + marker.toUtf8() + '\n';
    auto const hash = qHash(marker, 0);
    return line.repeated(static_cast<qsizetype>(hash % 16 == 0 ? 2000 + hash % 8000 : 1 + hash % 200));
}

OrderFileInfo fileInfo(QString const& name, QByteArray const& content)
{
    OrderFileInfo file;
    file.setName(name);
    file.setSize(static_cast<int>(content.size()));
    file.setChunckSize(static_cast<int>(content.size()));
    file.setCheckSum(QString::fromLatin1(QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex()));
    return file;
}

/// The names of the files that the slots are for, which are those of the order.
QByteArray slotNames(QList<CadItemInfo> const& items)
{
    QString text;
    for (auto const& item : items)
    {
        for (auto const& file : item.getFiles())
        {
            text += file.getName();
        }
    }
    return text.toUtf8();
}

QString firstSlot(QList<CadItemInfo> const& items)
{
    return items.value(0).getFiles().value(0).getReference();
}

void order(Caller& caller, char const* kind)
{
    auto const marker = caller.newMarker();
    auto const markerOfFile = caller.newMarker();
    OrderItemInfo item;
    item.setArticleNumber(QStringLiteral("ART-10010"));
    item.setQuantity(1);
    item.setToothNumberStart(21);
    item.setToothNumberEnd(21);
    item.setFiles({fileInfo(marker, fileContent(markerOfFile))});
    OrderRequest request;
    request.setInstallationReference(installation);
    request.setAddressIdentifier(QStringLiteral("ADR-501"));
    request.setProductionNote(marker);
    request.setOrderItems({item});
    auto const ticket = caller.ledger().open(kind, marker);
    auto const future = caller.pick()->createOrder(request);
    follow(
        caller, ticket, future,
        [&stage = caller.stage(), marker, markerOfFile](auto const& reply)
        {
            auto const names = slotNames(reply.value.getFiles());
            auto const reference = names == marker.toUtf8() ? firstSlot(reply.value.getFiles()) : QString();
            // A spoilt answer is no basis for an upload.
            if (reference.startsWith(QLatin1String("UPLOAD-")))
            {
                stage.addOrder(reply.value.getOrderReference(), {reference, markerOfFile});
            }
            return names;
        },
        marker.toUtf8());
}

void labOrder(Caller& caller, char const* kind)
{
    auto const marker = caller.newMarker();
    ServiceOrderItemInfo item;
    item.articleNumber = QStringLiteral("ART-10010");
    item.quantity = 1;
    item.toothNumberStart = 11;
    item.toothNumberEnd = 11;
    item.files = {fileInfo(marker, fileContent(marker))};
    ServiceOrderRequest request;
    request.installationReference = installation;
    request.productionNote = marker;
    request.orderItems = {item};
    auto const ticket = caller.ledger().open(kind, marker);
    follow(
        caller, ticket, caller.pick()->createServiceOrder(request),
        [](auto const& reply) { return slotNames(reply.value.orderItems); }, marker.toUtf8());
}

void upload(Caller& caller, char const* kind)
{
    auto const slot = caller.stage().takeSlot();
    if (slot.reference.isEmpty())
    {
        return;
    }
    auto const content = fileContent(slot.marker);
    auto const ticket = caller.ledger().open(kind, slot.marker);
    follow(
        caller, ticket, caller.pick()->uploadOrderFile(slot.reference, content),
        [](auto const&) { return QByteArray(); }, {});
}

/// A write without a body, of an order that there is not: the refusal tells whose it is.
void finish(Caller& caller, char const* kind)
{
    auto const marker = caller.newMarker();
    auto const ticket = caller.ledger().open(kind, marker);
    auto const connection = caller.pick();
    auto const future =
        caller.below(2) == 0 ? connection->postFinishCadOrder(marker) : connection->putFinishCadOrder(marker);
    future.then(
        [&ledger = caller.ledger(), ticket](TessalyConnection::Reply<void> const& finished)
        {
            auto ending =
                endingOf(ledger, ticket, finished, [](auto const&) { return QByteArray("no such order"); }, {});
            auto const message = finished.get().status.message.toUtf8();
            if (ending.outcome == Outcome::Refused && message.contains("soak-"))
            {
                auto const right = ticket.marker.toUtf8();
                ending.outcome = ledger.judge(ticket, message.mid(message.indexOf("soak-")), right);
            }
            ledger.close(ticket, ending.outcome, ending.maybeProcessed);
        });
    caller.remember(future);
}

} // namespace

std::span<Traffic const> calls()
{
    static constexpr Traffic all[] = {
        {"addresses", 12, addresses},
        {"users", 10, users},
        {"requests", 6, requests},
        {"order status", 8, orderStatus},
        {"order", 6, order},
        {"lab order", 4, labOrder},
        {"upload", 6, upload},
        {"finish", 4, finish},
        {"download", 6, download},
        {"keys", 4, keys},
        {"shell list", 4, shellList},
        {"sweep", 2, sweep},
        {"account", 1, accountSettings},
        {"logos", 2, logos},
        {"wait inside", 1, waitInside},
    };
    return all;
}

std::span<Traffic const> disturbances()
{
    static constexpr Traffic all[] = {
        {"cancel", 8, [](Caller& caller, char const*) { caller.cancelOne(); }},
        {"renew own", 1, [](Caller& caller, char const*) { caller.renewOwn(); }},
        {"renew shared", 1, [](Caller& caller, char const*) { caller.renewShared(); }},
    };
    return all;
}

} // namespace soak
