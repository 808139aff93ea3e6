#include "platform/linux/coordination/Answers.h"

#include <utility>

namespace tessel {

Answers::Owed::Owed(std::shared_ptr<Answers> answers) : answers_(std::move(answers))
{
    const std::lock_guard lock(answers_->mutex_);
    ++answers_->owed_;
}

Answers::Owed::~Owed()
{
    give(std::nullopt);
}

void Answers::Owed::give(const std::optional<Error>& refusal)
{
    const auto answers = std::exchange(answers_, nullptr);
    if (!answers)
        return;
    const std::lock_guard lock(answers->mutex_);
    --answers->owed_;
    if (refusal && !answers->refusal_)
        answers->refusal_ = refusal;
    answers->given_.notify_all();
}

std::optional<Error> Answers::wait(Time deadline)
{
    std::unique_lock lock(mutex_);
    given_.wait_until(lock, deadline, [this] { return owed_ == 0; });
    return refusal_;
}

} // namespace tessel
