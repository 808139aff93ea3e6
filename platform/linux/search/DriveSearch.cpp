#include "platform/linux/search/DriveSearch.h"

#include "platform/files/TypeRegistry.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/cloud/TagAttribute.h"
#include "platform/linux/search/SearchIndex.h"
#include "platform/log/UnifiedLog.h"

#include <sys/stat.h>

#include <chrono>
#include <filesystem>

namespace tessel {

namespace {

namespace fs = std::filesystem;

constexpr double kSecondsBeforeFirstLook = 3;
constexpr double kSecondsBetweenLooks = 60;
constexpr int kMostFound = 100;
constexpr std::int64_t kNanoseconds = 1'000'000'000;

/// When the folder was changed last, in nanoseconds since 1970; none for what is no folder.
std::optional<std::int64_t> changeTimeOf(const std::string& folder)
{
    struct stat status = {};
    if (::lstat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
        return std::nullopt;
    return status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec;
}

/// A change that is so young may have been followed by another in the same tick of the file system's clock.
bool isSettled(std::int64_t changeTime)
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count() - changeTime > 2 * kNanoseconds;
}

std::string tagsOf(const URL& url)
{
    std::string text;
    if (const auto tags = readTagNames(url))
        for (const auto& tag : *tags)
            text += (text.empty() ? "" : " ") + tag;
    return text;
}

} // namespace

/// Lets the timer's task run where folders are read.
class DriveSearch::Queue final : public DispatchQueue {
public:
    explicit Queue(OperationQueue& operations) : operations_(operations) {}
    void async(Task task) override { operations_.addOperation(std::move(task)); }

private:
    OperationQueue& operations_;
};

DriveSearch::DriveSearch(URL indexFile, std::vector<URL> roots, const Services& services)
    : file_(std::move(indexFile)), roots_(std::move(roots)), services_(services),
      queue_(std::make_unique<Queue>(reading_))
{
    beginning_ = services_.mainQueue.after(
        kSecondsBeforeFirstLook, [this] { timer_.emplace(*queue_, kSecondsBetweenLooks, [this] { refresh(); }); });
}

DriveSearch::~DriveSearch()
{
    ends_ = true;
    beginning_.cancel();
    timer_.reset();
}

const SearchIndex* DriveSearch::reader() const
{
    if (reader_)
        return reader_.get();
    auto index = SearchIndex::open(file_);
    if (index)
        reader_ = std::make_unique<SearchIndex>(std::move(index.value()));
    else
        services_.log.write(LogLevel::Error, "Cannot search: %@", index.error());
    return reader_.get();
}

void DriveSearch::find(std::vector<std::string> words, Answer answer)
{
    answering_.addOperation([this, words = std::move(words), answer = std::move(answer)] {
        std::vector<std::string> found;
        {
            const std::lock_guard lock(mutex_);
            if (const auto* index = reader())
                found = index->find(words, kMostFound);
        }
        answer(std::move(found));
    });
}

std::vector<FoundDocument> DriveSearch::documents(const std::vector<std::string>& identifiers) const
{
    std::vector<FoundDocument> found;
    const std::lock_guard lock(mutex_);
    const auto* index = reader();
    for (const auto& identifier : identifiers)
        if (auto document = index ? index->document(identifier) : std::nullopt)
            found.push_back(std::move(*document));
    return found;
}

void DriveSearch::refresh()
{
    auto index = SearchIndex::open(file_);
    if (!index) {
        services_.log.write(LogLevel::Error, "Cannot keep the search's index: %@", index.error());
        return;
    }
    std::vector<std::string> pending;
    for (const auto& root : roots_)
        pending.push_back(root.path());
    while (!pending.empty() && !ends_) {
        const auto folder = std::move(pending.back());
        pending.pop_back();
        lookAt(index.value(), folder, pending);
    }
}

void DriveSearch::lookAt(SearchIndex& index, const std::string& folder, std::vector<std::string>& pending)
{
    const auto changed = changeTimeOf(folder);
    if (!changed)
        return index.forget(folder);
    if (index.changeTime(folder) == changed) {
        const auto inside = index.foldersIn(folder);
        pending.insert(pending.end(), inside.begin(), inside.end());
        return;
    }
    SearchIndex::Items items;
    std::vector<std::string> folders;
    std::error_code failed;
    for (fs::directory_iterator entry(folder, failed); !failed && entry != fs::directory_iterator() && !ends_;
         entry.increment(failed)) {
        const auto name = entry->path().filename().string();
        const auto url = URL::file(entry->path().string());
        if (isPlaceholderName(name)) {
            if (const auto record = readPlaceholder(url))
                items[record->name] = tagsOf(url);
            continue;
        }
        if (name.starts_with('.'))
            continue;
        items[name] = tagsOf(url);
        std::error_code ignored;
        if (entry->is_directory(ignored) && !entry->is_symlink(ignored) && !services_.types.isPackageName(name))
            folders.push_back(url.path());
    }
    if (failed || ends_ || !index.begin())
        return;
    static_cast<void>(index.setItems(folder, isSettled(*changed) ? *changed : 0, items, folders));
    static_cast<void>(index.commit());
    pending.insert(pending.end(), folders.begin(), folders.end());
}

} // namespace tessel
