#pragma once

#include "platform/base/Error.h"
#include "platform/linux/files/UnfinishedWork.h"

#include <optional>

namespace tessel {

/// An item that was taken out of sight, in one step, to be removed or put back. Destroying it puts it back.
class WithdrawnItem {
public:
    /// @param named the item that errors name
    /// @param should what the item should be, of the members of UnfinishedChange, for the case that this program is
    ///        killed; one that is not is put back by the next start, all others are removed
    /// @returns the error that kept the item where it is
    static Result<WithdrawnItem> withdraw(const URL&, const URL& named, const UnfinishedWork&,
                                          UnfinishedChange should = {});

    WithdrawnItem(WithdrawnItem&& other) noexcept
        : place_(other.place_), named_(other.named_), unfinished_(other.unfinished_),
          hidden_(std::exchange(other.hidden_, {})), note_(std::move(other.note_))
    {
    }
    WithdrawnItem& operator=(WithdrawnItem&&) = delete;
    ~WithdrawnItem();

    /// Where it is now.
    [[nodiscard]] const URL& location() const { return *hidden_; }

    /// Removes it with all that is in it.
    /// @returns the error that stopped that; what is left was put back then
    [[nodiscard]] std::optional<Error> remove();

private:
    WithdrawnItem(URL place, URL named, const UnfinishedWork& unfinished, URL hidden, UnfinishedWork::Note note)
        : place_(std::move(place)), named_(std::move(named)), unfinished_(unfinished), hidden_(std::move(hidden)),
          note_(std::move(note))
    {
    }
    void putBack();

    const URL place_;
    const URL named_;
    const UnfinishedWork& unfinished_;
    std::optional<URL> hidden_; ///< none once it is removed or back
    UnfinishedWork::Note note_;
};

} // namespace tessel
