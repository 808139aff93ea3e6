#pragma once

#include "platform/base/Error.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>

namespace tessel {

/// The answers of several presenters that an access waits for. Safe from any thread.
class Answers {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// One answer that is owed. Destroying it is an answer, too.
    class Owed {
    public:
        explicit Owed(std::shared_ptr<Answers>);
        ~Owed();
        Owed(const Owed&) = delete;
        Owed& operator=(const Owed&) = delete;

        /// @param refusal the error with which the presenter refuses the access
        void give(const std::optional<Error>& refusal);

    private:
        std::shared_ptr<Answers> answers_; ///< none once it is given
    };

    [[nodiscard]] static std::shared_ptr<Owed> owe(const std::shared_ptr<Answers>& answers)
    {
        return std::make_shared<Owed>(answers);
    }

    /// @returns the first refusal, if there was one in time
    [[nodiscard]] std::optional<Error> wait(Time deadline);

private:
    std::mutex mutex_;
    std::condition_variable given_;
    int owed_ = 0;
    std::optional<Error> refusal_;
};

} // namespace tessel
