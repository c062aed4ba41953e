#pragma once

#include <vector>

#include <QDate>
#include <QString>

#include <KeloCommunicationLib/collaboration/ExtendedRequestDetails.h>

namespace board
{

/// What the window shows of a request.
struct RequestRow
{
    QString id;
    QString key;
    QString kind;
    QString partnerId;
    QString partner;
    QString patient;
    int status = -1; ///< the service's number
    QDate due;
    std::vector<collaboration::FileInfo> files;
    std::vector<collaboration::NoteInfo> notes;
};

RequestRow rowOf(collaboration::ExtendedRequestDetails const& request);

} // namespace board
