#pragma once

#include <type_traits>

#include <KeloCommunicationLib/collaboration/ExtendedRequestDetails.h>
#include <KeloCommunicationLib/collaboration/RequestRecords.h>

/// How an entry of a details reply becomes an `ExtendedRequestDetails`.
namespace collaboration::details
{

/// The part of an entry that requests of every kind have.
template <class Entry>
RequestDetails const& common(Entry const& entry)
{
    if constexpr (std::is_same_v<Entry, RequestDetails>)
    {
        return entry;
    }
    else
    {
        return entry.requestDetails;
    }
}

/// Whether a file of the request comes from the partner.
bool hasFileOfPartner(RequestDetails const& request);

/// One for each kind of entry; `type` tells those requests apart that share one.
ExtendedRequestDetails build(Partner const& partner, RequestDetails const& entry, RequestType type);
ExtendedRequestDetails build(Partner const& partner, TemplateRequestDetailInfo const& entry, RequestType type);
ExtendedRequestDetails build(Partner const& partner, RestorationRequest const& entry, RequestType type);
ExtendedRequestDetails build(Partner const& partner, UploadFilesRequestDetailInfo const& entry, RequestType type);

} // namespace collaboration::details
