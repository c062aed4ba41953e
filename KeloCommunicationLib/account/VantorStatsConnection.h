#pragma once

#include <KeloCommunicationLib/Export.h>
#include <KeloCommunicationLib/account/VantorStats.h>
#include <KeloCommunicationLib/connection/TessalyConnectionBase.h>

/// A session with the statistics service, at the host's address and with the host's credentials. Serves one caller at a
/// time.
class KELO_EXPORT VantorStatsConnection : public TessalyConnectionBase
{
    Q_OBJECT

public:
    /// The outcome of an upload.
    struct Result
    {
        bool succeeded = false; ///< the service answered, whatever it answered
        int code = 0;           ///< 0 on success, the answer's HTTP status, or the transport's error number
    };

    VantorStatsConnection();
    ~VantorStatsConnection() override;

    /// Uploads one file's content. Blocks until it is answered; the request is on the wire at most once. A failure to
    /// reach the service is logged; nothing is kept for another attempt. POST to the statistics address itself.
    Result uploadVantorStats(VantorStats const& stats) const;
};
