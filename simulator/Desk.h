#pragma once

#include "simulator/Journal.h"
#include "simulator/State.h"
#include "simulator/faults/FaultProxy.h"
#include "simulator/faults/ServiceFaults.h"
#include "simulator/replay/Replay.h"

namespace simulator
{

/// All that the service holds between requests. The service's one mutex guards it.
struct Desk
{
    State start; ///< what a reset goes back to
    State state;
    Journal journal;
    ServiceFaults faults;
    faults::FaultProxy* faultProxy = nullptr; ///< null: there is none in front
    bool speaksTls = false;
    /// Grows with whatever may have changed the members above; begins with the time, so that it differs after a
    /// restart.
    qint64 changes = QDateTime::currentMSecsSinceEpoch();
    std::optional<Replay> replay = {}; ///< answers in the place of the state, which then only names the installations

    /// As freshly started, without journal and faults.
    void reset()
    {
        state = start;
        journal.clear();
        faults.clear();
        if (replay)
        {
            replay->rewind();
        }
    }
};

} // namespace simulator
