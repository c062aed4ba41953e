#pragma once

#include <QByteArray>
#include <QString>

#include <KeloCommunicationLib/Export.h>

/// The content of one usage statistics file. Body of the POST to the statistics service; the bytes travel as Base64.
class KELO_EXPORT VantorStats
{
public:
    VantorStats() = default;

    VantorStats(QString const& id, QByteArray const& data) : vantorStatsId_(id), data_(data) {}

    QString const& getVantorStatsId() const { return vantorStatsId_; }

    QByteArray const& getData() const { return data_; }

private:
    QString vantorStatsId_;
    QByteArray data_;
};
