#include "tests/faults/Calls.h"

#include <QCryptographicHash>
#include <QEventLoop>
#include <QTimer>

#include <KeloCommunicationLib/KeloCommunicationLib.h>

namespace test
{

namespace
{

// No measure of time, but what counts as never.
constexpr std::chrono::seconds guard{60};

QString const installation = FaultedService::installation;

QByteArray const uploadedBytes = QByteArray("a tooth in triangles ").repeated(10'000);

QString md5(QByteArray const& bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
}

OrderRequest order(QString const& note)
{
    OrderFileInfo file;
    file.setName(QStringLiteral("tooth.stl"));
    file.setSize(static_cast<int>(uploadedBytes.size()));
    file.setChunckSize(static_cast<int>(uploadedBytes.size()));
    file.setCheckSum(md5(uploadedBytes));
    OrderItemInfo item;
    item.setArticleNumber(QStringLiteral("ART-10010"));
    item.setQuantity(1);
    item.setToothNumberStart(21);
    item.setToothNumberEnd(21);
    item.setFiles({file});
    OrderRequest request;
    request.setInstallationReference(installation);
    request.setAddressIdentifier(QStringLiteral("ADR-501"));
    request.setProductionNote(note);
    request.setOrderItems({item});
    return request;
}

/// The reply's outcome; its content is asked for only if it is a success. Whether that is the right content, the matrix
/// finds out.
template <class Reply, class Content>
Result resultOf(threading::Future<Reply> const& future, Content content)
{
    if (!future.waitFor(guard) || future.isCanceled())
    {
        return {};
    }
    Reply const reply = future.get();
    if (reply.status.kind == 1)
    {
        // Without a reason nobody can tell the user anything.
        return {reply.status.message.isEmpty() ? Outcome::Hung : Outcome::Lost};
    }
    return reply.status.kind == 0 ? Result{Outcome::Ok, content(reply)} : Result{Outcome::Refused};
}

Result readAddresses(TessalyConnection& connection, Target const&)
{
    return resultOf(
        connection.getShippingAddresses(installation),
        [](auto const& reply)
        {
            QString text;
            for (auto const& address : reply.value.addresses)
            {
                text += address.identifier + address.city + address.street + ';';
            }
            return text;
        });
}

Result listUsers(TessalyConnection& connection, Target const&)
{
    return resultOf(
        connection.getUsersForLicense(installation),
        [](auto const& reply)
        {
            QString text;
            for (auto const& user : reply.value)
            {
                text += user.getReference() + user.getUserName() + ';';
            }
            return text;
        });
}

Result createOrder(TessalyConnection& connection, Target const&)
{
    return resultOf(
        connection.createOrder(order(QStringLiteral("of the matrix"))),
        [](auto const& reply)
        {
            auto text = reply.value.getOrderReference();
            for (auto const& item : reply.value.getFiles())
            {
                for (auto const& file : item.getFiles())
                {
                    text += file.getName() + file.getReference();
                }
            }
            return text;
        });
}

Result upload(TessalyConnection& connection, Target const& target)
{
    return resultOf(
        connection.uploadOrderFile(target.uploadReference, uploadedBytes), [](auto const&) { return QString(); });
}

Result download(TessalyConnection& connection, Target const&)
{
    auto const future = connection.getTempShellFile(QStringLiteral("SHELL-ORD-000001-1"));
    if (!future.waitFor(guard) || future.isCanceled())
    {
        return {};
    }
    auto const bytes = future.get();
    return bytes.isEmpty() ? Result{Outcome::Failed} : Result{Outcome::Ok, md5(bytes)};
}

Result blockForKeys(TessalyConnection& connection, Target const&)
{
    auto const [code, keys] = connection.getThirdPartyAuthenticationKeys(installation);
    QString text;
    for (auto const& key : keys)
    {
        text += key + ';';
    }
    return code == KeloErrorCode::Success ? Result{Outcome::Ok, text} : Result{Outcome::Lost};
}

Result sweep(TessalyConnection& connection, Target const& target)
{
    RequestDetailsRetriever retriever(connection);
    QEventLoop loop;
    auto emitted = 0;
    QObject::connect(
        &retriever, &RequestDetailsRetriever::finished, &loop,
        [&]
        {
            ++emitted;
            loop.quit();
        });
    QTimer::singleShot(guard, &loop, &QEventLoop::quit);
    retriever.setOnlyActiveRequests(false);
    retriever.setRequestIds(target.requests);
    retriever.execute();
    loop.exec();
    if (emitted != 1)
    {
        return {};
    }
    QStringList found;
    for (auto const& details : retriever.getAllRequestDetails())
    {
        found +=
            QString::number(static_cast<int>(details.requestType)) + details.requestDetails.id + details.partnerName;
    }
    found.sort(); // the order of arrival is not promised
    return retriever.isSuccess() ? Result{Outcome::Ok, found.join(';')} : Result{Outcome::Failed};
}

Result accountSettings(TessalyConnection& connection, Target const&)
{
    AccountSettingsRetriever retriever;
    if (!retriever.retrieveAccountSettings(connection))
    {
        return {Outcome::Failed};
    }
    QStringList found;
    for (auto const& map : {retriever.getAccountSettings(), retriever.getUpdateReferences()})
    {
        for (auto const& key : map.keys())
        {
            found += key + map[key].toString();
        }
    }
    found.sort();
    return {Outcome::Ok, found.join(';')};
}

Result partnersWithLogos(TessalyConnection& connection, Target const&)
{
    return resultOf(
        connection.getPartners(installation, true),
        [](auto const& reply)
        {
            QString text;
            for (auto const& partner : reply.value)
            {
                text += partner.getName() + (partner.getLogo() ? "+" : "-");
            }
            return text;
        });
}

} // namespace

Target Target::prepare(FaultedService const& service)
{
    auto const created = service.direct().createOrder(order(QStringLiteral("to upload to"))).get().value;
    return {
        .uploadReference = created.getFiles().value(0).getFiles().value(0).getReference(),
        .requests = service.direct().getRequests(installation, false).get().value};
}

std::span<Call const> callsOfTheMatrix()
{
    using enum Outcome;
    static constexpr Call calls[] = {
        {"read", readAddresses, Refused, Lost},
        {"write", createOrder, Refused, Lost},
        {"list", listUsers, Refused, Lost},
        {"upload", upload, Refused, Lost, false},
        {"download", download, Failed, Failed, false},
        // Any answer counts as one for the keys, without them.
        {"blocking", blockForKeys, Other, Lost, false},
        {"sweep", sweep, Failed, Failed},
        {"account", accountSettings, Failed, Failed},
        {"logos", partnersWithLogos, Refused, Lost},
    };
    return calls;
}

std::pair<Result, Result> twoReads(TessalyConnection& connection)
{
    return {readAddresses(connection, {}), listUsers(connection, {})};
}

} // namespace test
