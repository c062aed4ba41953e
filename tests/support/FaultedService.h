#pragma once

#include <chrono>
#include <memory>
#include <string>

#include <QJsonArray>
#include <QJsonObject>
#include <QUrl>

#include <KeloCommunicationLib/connection/TessalyConnection.h>
#include <platform/core/HostEnvironment.h>
#include <simulator/Simulator.h>
#include <simulator/faults/FaultProxy.h>

namespace test
{

/// A KELO service in this process with a fault proxy in front, and a way past it.
class FaultedService
{
public:
    static inline QString const installation = QStringLiteral("INST-1001");

    explicit FaultedService(quint64 faultSeed = 1) : simulator_(options(faultSeed)), url_(simulator_.start())
    {
        core::HostEnvironment environment;
        environment.apiUrl = QUrl(url_);
        environment.installationReference = [](QString const&) { return installation; };
        core::setHostEnvironment(std::move(environment));
        control_ = connectTo(simulator_.directUrl());
    }

    /// A connection whose calls pass the faults.
    std::unique_ptr<TessalyConnection> connect(std::chrono::milliseconds timeout) const
    {
        auto connection = connectTo(url_);
        connection->setDefaultTimeout(timeout);
        return connection;
    }
    /// The connection past the faults of the proxy, open as long as this object.
    std::shared_ptr<TessalyConnection> const& direct() const { return control_; }

    /// A fault of either kind, written as at the shell prompt of the simulator.
    void addFault(std::string const& text) { simulator_.addFault(QString::fromStdString(text)); }
    /// How often the faults in force have fired.
    int firedCount()
    {
        int count = 0;
        for (auto const& list : {proxy().toJson(), simulator_.control("GET", "faults").array()})
        {
            for (auto const& fault : list)
            {
                count += fault.toObject()["Fired"].toInt();
            }
        }
        return count;
    }
    void clearFaults() { simulator_.clearFaults(); }
    /// Ends all faults and starts the service afresh, with an empty journal.
    void reset()
    {
        clearFaults();
        simulator_.reset();
    }

    /// The address past the faults of the proxy.
    QString directUrl() const { return simulator_.directUrl(); }
    simulator::faults::FaultProxy& proxy() const { return *simulator_.faultProxy(); }
    simulator::Simulator& simulator() { return simulator_; }

private:
    static simulator::SimulatorOptions options(quint64 faultSeed)
    {
        simulator::SimulatorOptions options;
        options.faultSeed = faultSeed;
        return options;
    }

    static std::unique_ptr<TessalyConnection> connectTo(QString const& url)
    {
        return TessalyConnection::makeConnection(QUrl(url), QStringLiteral("kelo"), QStringLiteral("kelo"));
    }

    simulator::Simulator simulator_;
    QString const url_;
    std::shared_ptr<TessalyConnection> control_;
};

} // namespace test
