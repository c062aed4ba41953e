#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <QByteArray>
#include <QString>

#include <KeloCommunicationLib/connection/internal/RequestPipeline.h>
#include <KeloCommunicationLib/partners/PartnerRecords.h>
#include <platform/rest/RestReply.h>
#include <platform/threading/Future.h>
#include <platform/utility/Optional.h>

/// How the records of a list reply get their partners' logos.
namespace KeloCommunicationLib::internal::logos
{

/// The partner whose logo a record shows.
struct Partner
{
    QString id;
    QString name;
};

Partner partnerOf(PartnerInfo const& partner);
Partner partnerOf(PartnerCaseInfo const& partnerCase);

/// The image in `body`, the service's Base64 text. Empty when there is none: silently for an empty body, which stands
/// for a failed request, with a warning that names the partner for one that cannot be decoded or has more than 4096 x
/// 4096 pixels. Such an image is not even decoded if it tells its size beforehand. One that was cut short is a logo as
/// far as its decoder takes it: PNG not at all, JPEG and BMP with the rest blank.
utility::Optional<QImage> decode(QByteArray const& body, Partner const& partner);

/// Starts the request for a partner's logo.
using Source = std::function<threading::Future<QByteArray>(QString const& partnerId)>;

template <class Record>
using ListReply = rest::RestReply<std::vector<Record>>;

/// Requests the logos of all records at once. The returned future finishes with the reply once the last of them is
/// finished, whatever became of it; cancelling it cancels the requests. Must not be called for a failed reply.
template <class Record>
void fetchAll(ListReply<Record> list, Source const& source, threading::Promise<ListReply<Record>> promise)
{
    auto const reply = std::make_shared<ListReply<Record>>(std::move(list));
    std::vector<threading::Future<QByteArray>> requests;
    std::vector<threading::Future<void>> stored;
    for (std::size_t index = 0; index < reply->value.size(); ++index)
    {
        Partner const partner = partnerOf(reply->value[index]);
        requests.push_back(source(partner.id));
        // Each completion touches its own element only, so that they may run on several threads.
        stored.push_back(requests.back().then(
            [reply, index, partner](QByteArray const& body)
            {
                if (auto const logo = decode(body, partner))
                {
                    reply->value[index].setLogo(*logo);
                }
            }));
    }
    // Runs at once if the consumer gave up while the requests were being started.
    promise.onCancel(
        [requests = std::move(requests)]
        {
            for (auto const& request : requests)
            {
                request.cancel();
            }
        });
    using Stored = std::vector<threading::Future<void>>;
    threading::whenAll(std::move(stored))
        .then([reply, promise = std::move(promise)](Stored const&) mutable
              { std::move(promise).setValue(std::move(*reply)); });
}

/// Sends the request for a list and gives its records their logos; a reply without success stays as it is. Cancelling
/// the returned future cancels the list request and the logo requests.
template <class Record>
threading::Future<ListReply<Record>> addTo(
    rest::Connection const& connection, rest::HttpRequestData request, Source source)
{
    return sendFor<std::vector<Record>, ListReply<Record>>(
        connection, std::move(request),
        [source = std::move(source)](ListReply<Record>&& list, threading::Promise<ListReply<Record>> promise)
        {
            if (list.status.kind != 0)
            {
                std::move(promise).setValue(std::move(list));
            }
            else
            {
                fetchAll(std::move(list), source, std::move(promise));
            }
        });
}

} // namespace KeloCommunicationLib::internal::logos
