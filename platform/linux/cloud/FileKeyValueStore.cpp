#include "platform/linux/cloud/FileKeyValueStore.h"

#include "platform/base/NotificationCenter.h"

#include <fcntl.h>

#include <string>
#include <utility>

namespace tessel {

namespace {

// A file that is being written in place must not be taken for a damaged one.
constexpr double kQuiet = 0.2; // seconds
constexpr std::size_t kMaximumNames = 16;

} // namespace

URL keyValueFileIn(const URL& home)
{
    return home.appending("keyvalue.json");
}

class FileKeyValueStore::Listener final : public FolderMonitor::Listener,
                                          public std::enable_shared_from_this<Listener> {
public:
    explicit Listener(FileKeyValueStore& store) : store_(store), mainQueue_(store.mainQueue_) {}

    void folderChanged(FolderNews news) override
    {
        if (!news.names.contains(std::string(store_.stored_.file().lastPathComponent())) && !news.readAnew &&
            !news.mayHaveChanged)
            return;
        mainQueue_.async([self = weak_from_this()] {
            if (const auto listener = self.lock())
                listener->store_.reloadSoon();
        });
    }

private:
    FileKeyValueStore& store_; // ends the monitor's thread before it ends itself
    MainQueue& mainQueue_;
};

FileKeyValueStore::FileKeyValueStore(URL file, MainQueue& mainQueue, NotificationCenter& notifications, UnifiedLog& log)
    : mainQueue_(mainQueue), notifications_(notifications), log_(log), stored_(std::move(file), log)
{
}

FileKeyValueStore::~FileKeyValueStore()
{
    reloading_.cancel();
    if (monitor_)
        monitor_->finish();
}

Value FileKeyValueStore::value(std::string_view key) const
{
    if (!values_)
        const_cast<FileKeyValueStore*>(this)->begin(); // nobody can tell that it was not read before
    const auto found = values_->find(std::string(key));
    return found == values_->end() ? Value() : found->second;
}

/// Watches first, so that no change goes unseen.
void FileKeyValueStore::begin()
{
    const auto path = stored_.file().deletingLastPathComponent().path();
    const FileDescriptor folder(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (folder.isOpen()) {
        listener_ = std::make_shared<Listener>(*this);
        monitor_ = std::make_unique<FolderMonitor>(log_, kMaximumNames);
        monitor_->watch(folder.get(), path, listener_);
    }
    load();
}

void FileKeyValueStore::reloadSoon()
{
    reloading_.cancel();
    reloading_ = mainQueue_.after(kQuiet, [this] { reload(); });
}

void FileKeyValueStore::reload()
{
    const auto before = values_;
    load();
    if (values_ != before)
        notifications_.post(kKeyValueStoreChangedNotification);
}

// What cannot be read now keeps the values that it had.
void FileKeyValueStore::load()
{
    auto values = stored_.load();
    if (!values_ || stored_.isReadable())
        values_ = std::move(values).value_or(Value::Dictionary());
}

} // namespace tessel
