#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <functional>
#include <optional>

namespace tessel {

class OperationQueue;

/// Somebody who shows an item, or holds something of it, and wants to know what others do with it: through a
/// FileCoordinator of this program or of another one, or without.
///
/// All operations but the first two run on the presenter's own queue, one access at a time. They run while the access
/// waits for their answer, so they never wait for the main queue. An answer that does not come within two seconds is
/// not waited for.
class FilePresenter {
public:
    using Done = std::function<void()>;
    /// Takes the error with which a presenter refuses, or none.
    using Completion = std::function<void(const std::optional<Error>&)>;

    virtual ~FilePresenter() = default;

    /// The item, asked for once, when the presenter is added; moves that it was told of are followed. Without one it is
    /// told nothing.
    [[nodiscard]] virtual std::optional<URL> presentedItemURL() const = 0;
    /// Never the main queue; ends after the presenter was removed.
    [[nodiscard]] virtual OperationQueue& presentedItemOperationQueue() = 0;

    /// Somebody is about to read the item, or to write it: what is unsaved is to be saved now.
    virtual void relinquishPresentedItemToReader(const Done& done) { done(); }
    virtual void relinquishPresentedItemToWriter(const Done& done) { done(); }

    /// The item's content or attributes are others, or something in it is.
    virtual void presentedItemDidChange() {}
    /// The item, or a folder above it, was moved or renamed.
    virtual void presentedItemDidMoveToURL(const URL&) {}
    /// The item is about to be deleted, or has been by a program that asked nobody.
    virtual void accommodatePresentedItemDeletionWithCompletionHandler(const Completion& completion)
    {
        completion(std::nullopt);
    }
    /// The same of an item in the presented one, at any depth.
    virtual void accommodatePresentedSubitemDeletionAtURL(const URL&, const Completion& completion)
    {
        completion(std::nullopt);
    }
};

} // namespace tessel
