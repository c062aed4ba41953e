#pragma once

#include "simulator/Schema.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <chrono>
#include <memory>

namespace simulator::faults
{

/// One direction of one proxied connection, as a toxic sees it. Everything may be called from that direction's thread
/// only.
class Flow
{
public:
    Flow() = default;
    Flow(Flow const&) = delete;
    Flow& operator=(Flow const&) = delete;
    virtual ~Flow() = default;

    /// Hands bytes on towards the receiver; false once the connection has ended.
    virtual bool forward(QByteArray const& bytes) = 0;
    /// Lets time pass; false when the connection ended or the toxic was taken away meanwhile.
    virtual bool pause(std::chrono::microseconds time) = 0;
    /// Nothing more, until the connection ends or the toxic is taken away.
    virtual void hang() = 0;
    /// Ends the connection in both directions, in order or by a TCP reset.
    virtual void close() = 0;
    virtual void reset() = 0;
    /// Counts that the toxic has had its effect once more.
    virtual void countFired() = 0;
    /// A number from `low` to `high`, drawn from the proxy's seeded source.
    virtual qint64 random(qint64 low, qint64 high) = 0;
};

/// A fault at work on one direction of one connection.
class Toxic
{
public:
    Toxic() = default;
    Toxic(Toxic const&) = delete;
    Toxic& operator=(Toxic const&) = delete;
    virtual ~Toxic() = default;

    /// Takes bytes on their way and hands on what the fault lets through. False ends the connection.
    virtual bool pass(QByteArray const& bytes, Flow& flow) { return flow.forward(bytes); }

    /// The sender has closed; the receiver learns of it when this returns.
    virtual void atEnd(Flow&) {}
};

using Attributes = QHash<QString, qint64>;

/// A kind of fault: its name, its attributes, and how one is set to work.
struct ToxicKind
{
    char const* name = "";
    char const* meaning = "";                                               ///< for people
    Schema attributes = {};                                                 ///< integers
    std::unique_ptr<Toxic> (*make)(Attributes const& attributes) = nullptr; ///< null: the proxy itself is the fault
};

} // namespace simulator::faults
