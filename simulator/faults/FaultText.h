#pragma once

#include <QJsonObject>
#include <QString>

namespace simulator::faults
{

/// A fault as it is written at a shell prompt: "latency:latency=200,stream=upstream" or
/// "status:operation=getRequests,status=503,times=2".
class FaultText
{
public:
    explicit FaultText(QString const& text);

    QString const& name() const { return name_; }
    /// As the control resources take it.
    QJsonObject toToxic() const;
    QJsonObject toServiceFault() const;

private:
    QString name_;
    QJsonObject values_;
};

} // namespace simulator::faults
