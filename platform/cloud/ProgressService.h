#pragma once

#include "platform/base/URL.h"
#include "platform/cloud/Progress.h"

#include <functional>
#include <memory>
#include <vector>

namespace tessel {

/// Brings together work on files, such as downloads, and those who want to see how far it is. Of work in this process.
///
/// Subscribers come, go and are called on the main thread; work publishes from any thread.
class ProgressService {
public:
    /// Called when the progress is withdrawn, or the subscription removed before that; may be empty.
    using WithdrawalHandler = std::function<void()>;
    using PublishingHandler = std::function<WithdrawalHandler(const std::shared_ptr<Progress>&)>;
    /// Stands for one subscription.
    struct Subscriber;

    /// Keeps a progress published; withdraws it at its end.
    class Publication {
    public:
        Publication(ProgressService&, URL, std::shared_ptr<Progress>);
        ~Publication();
        Publication(const Publication&) = delete;
        Publication& operator=(const Publication&) = delete;

        [[nodiscard]] Progress& progress() const { return *progress_; }

    private:
        ProgressService& service_;
        const URL url_;
        const std::shared_ptr<Progress> progress_;
    };

    explicit ProgressService(MainQueue& mainQueue) : mainQueue_(mainQueue) {}

    /// The handler is called for each progress that is published for the file, in tasks of their own: at once for those
    /// that are, and then as they come.
    /// @returns what the subscription is removed by
    [[nodiscard]] std::shared_ptr<Subscriber> addSubscriberForFileURL(const URL&, PublishingHandler);
    /// No handler is called any more but those of withdrawals, before this returns. Removing twice does nothing.
    void removeSubscriber(const std::shared_ptr<Subscriber>&);

    /// Makes a progress of the file kind known until the publication ends; the work is to be told to it.
    [[nodiscard]] Publication publishForFileURL(const URL&);

private:
    struct Published {
        URL url;
        std::shared_ptr<Progress> progress;
    };

    void add(const Published&);
    void withdraw(const std::shared_ptr<Progress>&);
    static void tell(Subscriber&, const std::shared_ptr<Progress>&);

    MainQueue& mainQueue_;
    std::vector<Published> published_;
    std::vector<std::shared_ptr<Subscriber>> subscribers_;
};

} // namespace tessel
