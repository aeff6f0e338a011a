#pragma once

#include <chrono>
#include <cstdint>

#include "platform/fetch.h"

namespace velm {

/// Enforces the limits of a transfer from its periodic reports.
class CVelmTransferWatch {
public:
    using Clock = std::chrono::steady_clock;

    CVelmTransferWatch(const CVelmFetchLimits& limits, const CVelmFetchProgress& progress)
        : limits_(limits), progress_(progress), spanStart_(Clock::now()) {}

    /// False when the transfer must end; Status has the reason. `connected` is whether the server has been reached.
    bool Continues(bool connected, std::uint64_t bytes) {
        if (bytes > limits_.maxBytes || TimedOut(connected, bytes, Clock::now())) {
            status_ = FetchStatus::Failed;
            return false;
        }
        if (progress_ && !progress_(bytes)) {
            status_ = FetchStatus::Stopped;
            return false;
        }
        return true;
    }

    /// The status of an incomplete transfer.
    FetchStatus Status() const { return status_; }

private:
    bool TimedOut(bool connected, std::uint64_t bytes, Clock::time_point now) {
        if (connected != connected_ || bytes >= spanBytes_ + limits_.stallBytes) {
            connected_ = connected;
            spanBytes_ = bytes;
            spanStart_ = now;
        }
        return now - spanStart_ > (connected ? limits_.stall : limits_.connect);
    }

    CVelmFetchLimits limits_;
    const CVelmFetchProgress& progress_;
    Clock::time_point spanStart_;
    std::uint64_t spanBytes_ = 0;
    bool connected_ = false;
    FetchStatus status_ = FetchStatus::Failed;
};

}  // namespace velm
