#pragma once

#include "platform/linux/coordination/AccessWish.h"
#include "platform/run/Clock.h"

#include <condition_variable>
#include <list>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace tessel {

/// Gives the threads of this process their turns at items, in the order in which they asked. Safe from any thread.
class AccessTable {
    struct Request {
        std::vector<AccessWish> wishes;
        std::thread::id thread;
        bool isHeld = false;
    };
    using Requests = std::list<Request>;

public:
    /// Holds what was wished until it is destroyed, on any thread.
    class Turn {
    public:
        Turn(Turn&& other) noexcept : table_(other.table_), request_(other.request_) { other.table_ = nullptr; }
        Turn& operator=(Turn&&) = delete;
        ~Turn();

    private:
        friend class AccessTable;
        Turn(AccessTable& table, Requests::iterator request) : table_(&table), request_(request) {}

        AccessTable* table_;
        Requests::iterator request_;
    };

    explicit AccessTable(const Clock& clock) : clock_(clock) {}

    /// Waits behind every earlier request that is in the way. A thread that holds something already goes ahead of those
    /// that wait, who may be waiting for it.
    /// @returns none once the clock's uptime has reached `deadline`, and at once when this very thread is in the way
    [[nodiscard]] std::optional<Turn> enter(std::vector<AccessWish>, Clock::Ticks deadline);

    /// Whether the calling thread holds anything.
    [[nodiscard]] bool isHeldByThisThread() const;

private:
    [[nodiscard]] bool holds(std::thread::id) const;
    [[nodiscard]] const Request* obstacleOf(const Request&, bool mayOvertake) const;
    void leave(Requests::iterator);

    const Clock& clock_;
    mutable std::mutex mutex_;
    std::condition_variable left_;
    Requests requests_; ///< in the order of asking
};

} // namespace tessel
