#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <vector>

namespace simulator
{

struct Answer;
struct Call;
struct Route;

/// A usage statistics file as it was uploaded, decoded.
struct StatisticsUpload
{
    QString type = {};
    QByteArray data = {};
    QDateTime receivedAt = {};
};

using Statistics = std::vector<StatisticsUpload>;

/// The statistics service. It is a service of its own and stands here below "/stats": that is its base URL.
std::vector<Route> statisticsRoutes();

/// Control: all uploads, `[{"SelectedType","Data","Size","ReceivedAt"}]`, oldest first.
Answer storedStatistics(Call const& call);

} // namespace simulator
