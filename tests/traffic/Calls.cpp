#include "tests/traffic/Calls.h"

#include <algorithm>
#include <cstring>

#include <QBuffer>
#include <QCryptographicHash>
#include <QEventLoop>
#include <QTimer>

#include <KeloCommunicationLib/KeloCommunicationLib.h>

#include "tests/support/FaultedService.h"

namespace test
{

namespace
{

// No measure of time, but what counts as never.
constexpr std::chrono::seconds never{60};
// Of the installation, in the simulator's data.
constexpr int partnersWithLogo = 2;
QString const shellOrder = QStringLiteral("ORD-000001");

QString const installation = FaultedService::installation;
QString const article = QStringLiteral("ART-10010");

QByteArray md5(QByteArray const& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
}

// ---- what became of a call -----------------------------------------------------------------------------------------

/// Of a call whose reply has a status; `fill` takes over what a success holds.
template <class Reply, class Fill>
Ending endingOf(threading::Future<Reply> const& future, Fill const& fill)
{
    if (future.isCanceled())
    {
        return {};
    }
    Reply const reply = future.get();
    auto const& message = reply.status.message;
    if (reply.status.kind == 1)
    {
        // Without a reason nobody can tell the user anything.
        return {
            .outcome = message.isEmpty() ? Outcome::Broken : Outcome::Lost,
            .maybeProcessed = message.contains(QLatin1String("may have processed"))};
    }
    Ending ending{.outcome = reply.status.kind == 0 ? Outcome::Ok : Outcome::Refused, .content = message.toUtf8()};
    if (ending.outcome == Outcome::Ok)
    {
        fill(reply, ending);
    }
    return ending;
}

template <class Reply, class Fill>
Running follow(threading::Future<Reply> const& future, Fill fill)
{
    return {
        future.then([fill](threading::Future<Reply> const& finished) { return endingOf(finished, fill); }),
        [future] { future.cancel(); }};
}

/// Of a call that has ended.
Running ended(bool isGood, QByteArray const& content, Outcome otherwise = Outcome::Failed)
{
    return {threading::makeReadyFuture(Ending{isGood ? Outcome::Ok : otherwise, content})};
}

// ---- reads ---------------------------------------------------------------------------------------------------------

/// Takes over a text for each entry.
template <class Entries, class Text>
QByteArray joined(Entries const& entries, Text const& text)
{
    QString all;
    for (auto const& entry : entries)
    {
        all += text(entry) + ';';
    }
    return all.toUtf8();
}

void fillAddresses(rest::RestReply<OrderShippingAddressList> const& reply, Ending& ending)
{
    ending.content = joined(
        reply.value.addresses, [](auto const& address) { return address.identifier + address.city + address.street; });
}

void fillUsers(rest::RestReply<std::vector<TessalyUser>> const& reply, Ending& ending)
{
    ending.content = joined(reply.value, [](auto const& user) { return user.getReference() + user.getUserName(); });
}

Running addresses(Connection const& connection, Subject const&)
{
    return follow(connection->getShippingAddresses(installation), fillAddresses);
}

Running users(Connection const& connection, Subject const&)
{
    return follow(connection->getUsersForLicense(installation), fillUsers);
}

Running requests(Connection const& connection, Subject const&)
{
    return follow(
        connection->getRequests(installation, false),
        [](auto const& reply, Ending& ending)
        {
            ending.content =
                joined(reply.value, [](auto const& request) { return request.requestId + request.transactionId; });
        });
}

Running orderStatus(Connection const& connection, Subject const& subject)
{
    OrderDetailsRequest request;
    request.setOrderReferences({subject.order});
    return follow(
        connection->getOrderStatus(request), [](auto const& reply, Ending& ending)
        { ending.content = joined(reply.value, [](auto const& details) { return details.getReference(); }); });
}

Running download(Connection const& connection, Subject const& subject)
{
    auto const future = connection->getTempShellFile(subject.shell);
    auto const end = [](threading::Future<QByteArray> const& finished)
    {
        auto const bytes = finished.get();
        auto const outcome = bytes.isEmpty() ? Outcome::Failed : Outcome::Ok;
        return Ending{finished.isCanceled() ? Outcome::Cancelled : outcome, bytes};
    };
    return {future.then(end), [future] { future.cancel(); }};
}

QString logoText(PartnerInfo const& partner)
{
    QByteArray bytes;
    if (auto const& logo = partner.getLogo())
    {
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        logo->save(&buffer, "BMP");
    }
    return partner.getName() + QString::fromLatin1(md5(bytes));
}

Running logos(Connection const& connection, Subject const&)
{
    return follow(
        connection->getPartners(installation, true),
        [](auto const& reply, Ending& ending)
        {
            auto const hasLogo = [](PartnerInfo const& partner) { return bool(partner.getLogo()); };
            ending.content = joined(reply.value, logoText);
            ending.isPartial = std::count_if(reply.value.begin(), reply.value.end(), hasLogo) < partnersWithLogo;
        });
}

/// A continuation that waits for another call, on the thread that finishes the first one.
Running waitInside(Connection const& connection, Subject const&)
{
    auto const future = connection->getUsersForLicense(installation);
    auto const goOn =
        [weak = std::weak_ptr(connection)](TessalyConnection::Reply<std::vector<TessalyUser>> const& finished)
    {
        auto const first = endingOf(finished, fillUsers);
        auto const alive = first.outcome == Outcome::Ok ? weak.lock() : nullptr;
        if (!alive)
        {
            return first.outcome == Outcome::Ok ? Ending() : first;
        }
        auto const inner = alive->getShippingAddresses(installation);
        inner.wait();
        return endingOf(inner, fillAddresses);
    };
    return {future.then(goOn), [future] { future.cancel(); }};
}

// ---- calls that block ----------------------------------------------------------------------------------------------

Running keys(Connection const& connection, Subject const&)
{
    auto const [code, found] = connection->getThirdPartyAuthenticationKeys(installation);
    auto const content = joined(found, [](QString const& key) { return key; });
    return ended(code == KeloErrorCode::Success, content, Outcome::Lost);
}

Running shellList(Connection const& connection, Subject const&)
{
    auto const found = connection->getTempShellCalculationData(shellOrder).getTempShellFile();
    auto const content = joined(found, [](auto const& shell) { return shell.getFileId() + shell.getFileName(); });
    // An error is read as a list, too.
    return ended(!found.value(0).getFileId().isEmpty(), content);
}

Running runSweep(Connection const& connection, std::function<void(RequestDetailsRetriever&)> const& begin)
{
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
    QTimer::singleShot(never, &loop, &QEventLoop::quit);
    retriever.setOnlyActiveRequests(false);
    begin(retriever);
    loop.exec();
    QStringList found;
    for (auto const& details : retriever.getAllRequestDetails())
    {
        found +=
            QString::number(static_cast<int>(details.requestType)) + details.requestDetails.id + details.partnerName;
    }
    found.sort(); // the order of arrival is not promised
    bool const isGood = ends == 1 && retriever.isSuccess() && retriever.lastStatus().kind == 0;
    return ended(isGood, found.join(u';').toUtf8(), ends == 1 ? Outcome::Failed : Outcome::Broken);
}

Running sweep(Connection const& connection, Subject const& subject)
{
    return runSweep(
        connection,
        [&subject](RequestDetailsRetriever& retriever)
        {
            retriever.setRequestIds(subject.requests);
            retriever.execute();
        });
}

Running updates(Connection const& connection, Subject const&)
{
    return runSweep(
        connection,
        [](RequestDetailsRetriever& retriever)
        {
            std::vector<collaboration::RequestInfo> known;
            retriever.getUpdates(
                {collaboration::RequestType::Restoration, collaboration::RequestType::LabDesign}, known);
        });
}

Running accountSettings(Connection const& connection, Subject const&)
{
    AccountSettingsRetriever retriever;
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
    return ended(isGood, found.join(u';').toUtf8());
}

// ---- writes --------------------------------------------------------------------------------------------------------

QByteArray contentOf(Slot const& file)
{
    return ("solid " + file.marker.toUtf8() + '\n').repeated(file.lines);
}

OrderFileInfo announcementOf(Subject const& subject)
{
    auto const content = contentOf(subject.file);
    OrderFileInfo file;
    file.setName(subject.marker);
    file.setSize(static_cast<int>(content.size()));
    file.setChunckSize(static_cast<int>(content.size()));
    file.setCheckSum(QString::fromLatin1(md5(content)));
    return file;
}

/// The name of the order's file, and what is not as it should be.
void fillSlots(QList<CadItemInfo> const& items, Subject const& subject, Ending& ending)
{
    auto const text = [&](OrderFile const& file)
    {
        bool const isGood = file.getReference().startsWith(QLatin1String("UPLOAD-"));
        ending.slot = isGood ? Slot{file.getReference(), subject.file.marker, subject.file.lines} : Slot();
        return isGood ? file.getName() : QStringLiteral("no slot");
    };
    ending.content.clear();
    for (auto const& item : items)
    {
        ending.content += joined(item.getFiles(), text);
    }
}

Running order(Connection const& connection, Subject const& subject)
{
    OrderItemInfo item;
    item.setArticleNumber(article);
    item.setQuantity(1);
    item.setToothNumberStart(21);
    item.setToothNumberEnd(21);
    item.setFiles({announcementOf(subject)});
    OrderRequest request;
    request.setInstallationReference(installation);
    request.setAddressIdentifier(QStringLiteral("ADR-501"));
    request.setProductionNote(subject.marker);
    request.setOrderItems({item});
    return follow(
        connection->createOrder(request),
        [subject](auto const& reply, Ending& ending)
        {
            fillSlots(reply.value.getFiles(), subject, ending);
            auto const reference = reply.value.getOrderReference();
            ending.order = reference.startsWith(QLatin1String("ORD-")) ? reference : QString();
            ending.content += ending.order.isEmpty() ? "no order" : "";
        });
}

Running labOrder(Connection const& connection, Subject const& subject)
{
    ServiceOrderItemInfo item;
    item.articleNumber = article;
    item.quantity = 1;
    item.toothNumberStart = 11;
    item.toothNumberEnd = 11;
    item.files = {announcementOf(subject)};
    ServiceOrderRequest request;
    request.installationReference = installation;
    request.productionNote = subject.marker;
    request.orderItems = {item};
    return follow(
        connection->createServiceOrder(request),
        [subject](auto const& reply, Ending& ending) { fillSlots(reply.value.orderItems, subject, ending); });
}

Running upload(Connection const& connection, Subject const& subject)
{
    return follow(
        connection->uploadOrderFile(subject.file.reference, contentOf(subject.file)), [](auto const&, Ending&) {});
}

/// A write without a body. Of an order that there is not, the refusal tells whose it is.
Running finish(TessalyConnection::Reply<void> const& future, Subject const& subject)
{
    auto const end = [marker = subject.marker.toUtf8()](TessalyConnection::Reply<void> const& finished)
    {
        static QByteArray const unknown = "nothing with this id: ";
        auto ending = endingOf(
            finished, [&](auto const&, Ending& success)
            { success.content = marker.startsWith("ORD-") ? marker : QByteArray("no order, and finished"); });
        if (auto const at = ending.content.indexOf(unknown); ending.outcome == Outcome::Refused && at >= 0)
        {
            ending.outcome = Outcome::Ok;
            ending.content = ending.content.mid(at + unknown.size());
        }
        return ending;
    };
    return {future.then(end), [future] { future.cancel(); }};
}

Running finishByPost(Connection const& connection, Subject const& subject)
{
    return finish(connection->postFinishCadOrder(subject.marker), subject);
}

Running finishByPut(Connection const& connection, Subject const& subject)
{
    return finish(connection->putFinishCadOrder(subject.marker), subject);
}

} // namespace

std::span<Call const> calls()
{
    using enum Outcome;
    using Right = QByteArray (*)(Subject const&);
    constexpr Right slotName = [](Subject const& subject) { return subject.marker.toUtf8() + ';'; };
    constexpr Right orderName = [](Subject const& subject) { return subject.order.toUtf8() + ';'; };
    constexpr Right marker = [](Subject const& subject) { return subject.marker.toUtf8(); };
    constexpr Right nothing = [](Subject const&) { return QByteArray(); };
    static constexpr Call all[] = {
        {"addresses", 12, addresses},
        {"users", 10, users},
        {"requests", 6, requests},
        {"order state", 8, orderStatus, orderName},
        {"order", 6, order, slotName, true},
        {"lab order", 4, labOrder, slotName, true},
        {"upload", 6, upload, nothing, true, false},
        {"finish", 10, finishByPost, marker, true, false},
        {"finish put", 6, finishByPut, marker, true, false},
        {"download", 6, download, nullptr, false, false, Failed, Failed},
        // Any answer counts as one for the keys, without them.
        {"keys", 4, keys, nullptr, false, false, Other, Lost},
        {"shell list", 4, shellList, nullptr, false, false, Failed, Failed},
        {"sweep", 2, sweep, nullptr, false, true, Failed, Failed},
        {"updates", 2, updates, nullptr, false, true, Failed, Failed},
        {"account", 1, accountSettings, nullptr, false, true, Failed, Failed},
        {"logos", 2, logos},
        {"wait inside", 1, waitInside},
    };
    return all;
}

Call const& callNamed(char const* name)
{
    auto const all = calls();
    return *std::find_if(
        all.begin(), all.end(), [name](Call const& call) { return std::strcmp(call.name, name) == 0; });
}

} // namespace test
