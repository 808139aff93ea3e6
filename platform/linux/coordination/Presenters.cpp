#include "platform/linux/coordination/Presenters.h"

#include "platform/linux/coordination/AccessWish.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr std::size_t kChangedNames = 64; // which ones does not matter

using Owed = std::shared_ptr<Answers::Owed>;

FilePresenter::Done doneWith(const Owed& owed)
{
    return [owed] { owed->give(std::nullopt); };
}

FilePresenter::Completion completionOf(const Owed& owed)
{
    return [owed](const std::optional<Error>& refusal) { owed->give(refusal); };
}

void relinquish(PresentedItem& item, Notice::Kind kind, const Owed& owed)
{
    if (kind == Notice::Kind::Reading)
        item.ask(owed, [](FilePresenter& presenter, const Owed& answer) {
            presenter.relinquishPresentedItemToReader(doneWith(answer));
        });
    else
        item.ask(owed, [](FilePresenter& presenter, const Owed& answer) {
            presenter.relinquishPresentedItemToWriter(doneWith(answer));
        });
}

} // namespace

Presenters::Presenters(MainQueue& mainQueue, UnifiedLog& log) : mainQueue_(mainQueue), log_(log)
{
}

Presenters::~Presenters()
{
    for (const auto& item : items_)
        item->end();
    items_.clear();
    if (monitor_)
        monitor_->finish();
}

void Presenters::add(FilePresenter& presenter, std::string path)
{
    const std::lock_guard lock(mutex_);
    if (std::ranges::any_of(items_, [&](const auto& item) { return item->belongsTo(presenter); }))
        return;
    if (!monitor_)
        monitor_ = std::make_unique<FolderMonitor>(log_, kChangedNames);
    items_.push_back(std::make_shared<PresentedItem>(presenter, std::move(path), mainQueue_, *monitor_));
    items_.back()->follow();
}

void Presenters::remove(const FilePresenter& presenter)
{
    Items removed;
    {
        const std::lock_guard lock(mutex_);
        const auto first =
            std::partition(items_.begin(), items_.end(), [&](const auto& item) { return !item->belongsTo(presenter); });
        removed.assign(first, items_.end());
        items_.erase(first, items_.end());
    }
    for (const auto& item : removed)
        item->end();
}

bool Presenters::isEmpty() const
{
    const std::lock_guard lock(mutex_);
    return items_.empty();
}

Presenters::Items Presenters::items() const
{
    const std::lock_guard lock(mutex_);
    return items_;
}

std::shared_ptr<PresentedItem> Presenters::itemOf(const FilePresenter* presenter) const
{
    const std::lock_guard lock(mutex_);
    const auto found =
        std::ranges::find_if(items_, [&](const auto& item) { return presenter && item->belongsTo(*presenter); });
    return found == items_.end() ? nullptr : *found;
}

void Presenters::tell(const Notice& notice, const FilePresenter* asker, const std::shared_ptr<Answers>& answers)
{
    for (const auto& item : items()) {
        const bool isAsker = asker && item->belongsTo(*asker);
        if (isAsker && notice.wantsAnswers())
            continue;
        const auto path = item->path();
        if (isAtOrBelow(path, notice.path))
            tellOne(*item, notice, isAsker, answers);
        else if (isAtOrBelow(notice.path, path) && !isAsker)
            tellOneAround(*item, notice, answers);
    }
}

// Who presents the item itself, or something in it.
void Presenters::tellOne(PresentedItem& item, const Notice& notice, bool silently,
                         const std::shared_ptr<Answers>& answers)
{
    switch (notice.kind) {
    case Notice::Kind::Reading:
    case Notice::Kind::Writing:
        return relinquish(item, notice.kind, Answers::owe(answers));
    case Notice::Kind::Deleting:
        return item.ask(Answers::owe(answers), [](FilePresenter& presenter, const Owed& answer) {
            presenter.accommodatePresentedItemDeletionWithCompletionHandler(completionOf(answer));
        });
    case Notice::Kind::WillMove:
        return item.expectMove();
    case Notice::Kind::Moved:
        return item.takeMove(notice.to + item.path().substr(notice.path.size()), silently);
    case Notice::Kind::Changed:
        return item.takeChange(silently);
    }
}

// Who presents a folder that the item is in.
void Presenters::tellOneAround(PresentedItem& item, const Notice& notice, const std::shared_ptr<Answers>& answers)
{
    switch (notice.kind) {
    case Notice::Kind::Reading:
    case Notice::Kind::Writing:
        return relinquish(item, notice.kind, Answers::owe(answers));
    case Notice::Kind::Deleting:
        return item.ask(Answers::owe(answers),
                        [url = URL::file(notice.path)](FilePresenter& presenter, const Owed& answer) {
                            presenter.accommodatePresentedSubitemDeletionAtURL(url, completionOf(answer));
                        });
    case Notice::Kind::WillMove:
    case Notice::Kind::Moved:
        return;
    case Notice::Kind::Changed:
        return item.tell([](FilePresenter& presenter) { presenter.presentedItemDidChange(); });
    }
}

} // namespace tessel
