#include "platform/linux/cloud/FileOffers.h"

#include "platform/base/NotificationCenter.h"
#include "platform/linux/files/AtomicFile.h"
#include "platform/log/UnifiedLog.h"

#include <nlohmann/json.hpp>

#include <fcntl.h>

#include <utility>

namespace tessel {

namespace {

using nlohmann::json;
using FoundOffer = Result<std::optional<StorageOffer>>;

// A file that is being written in place must not be taken for a damaged one.
constexpr double kQuiet = 0.2; // seconds
constexpr std::size_t kMaximumNames = 16;
constexpr std::size_t kMaximumSize = 64 * 1024; // bytes

/// Reads the fields of an object; one that is there must be sound.
class Fields {
public:
    explicit Fields(const json& object) : object_(object), isSound_(object.is_object()) {}

    Fields& text(const char* name, std::string& into) { return field(name, &json::is_string, into); }
    Fields& flag(const char* name, bool& into) { return field(name, &json::is_boolean, into); }
    Fields& number(const char* name, int& into)
    {
        auto wide = static_cast<std::int64_t>(into);
        field(name, &json::is_number_integer, wide);
        isSound_ = isSound_ && std::in_range<int>(wide);
        into = isSound_ ? static_cast<int>(wide) : into;
        return *this;
    }
    [[nodiscard]] bool areSound() const { return isSound_; }

private:
    template <typename T>
    Fields& field(const char* name, bool (json::*isOfType)() const noexcept, T& into)
    {
        if (!isSound_ || !object_.contains(name))
            return *this;
        const auto& value = object_.at(name);
        isSound_ = (value.*isOfType)();
        if (isSound_)
            into = value.template get<T>();
        return *this;
    }

    const json& object_;
    bool isSound_;
};

bool readLink(const json& object, OfferLink& link)
{
    return Fields(object).number("action", link.action).text("url", link.url).areSound();
}

std::optional<StorageOffer> parsedOffer(const json& object)
{
    StorageOffer offer;
    const bool isSound = Fields(object)
                             .number("level", offer.level)
                             .text("title", offer.title)
                             .text("message", offer.message)
                             .flag("showsButton", offer.showsButton)
                             .areSound();
    if (!isSound || (object.contains("link") && !readLink(object.at("link"), offer.link)))
        return std::nullopt;
    return offer;
}

FoundOffer readOffer(const URL& file)
{
    const auto content = readSmallFile(file, kMaximumSize);
    if (!content && content.error() == Error{Domain::General, ErrorCode::kNoSuchFile, {}, {}})
        return std::optional<StorageOffer>();
    if (!content)
        return content.error();
    const auto object = json::parse(*content, nullptr, false);
    if (object.is_object() && (!object.contains("currentOffer") || object.at("currentOffer").is_null()))
        return std::optional<StorageOffer>();
    if (object.is_object())
        if (auto offer = parsedOffer(object.at("currentOffer")))
            return offer;
    return Error{Domain::General, ErrorCode::kReadCorrupt, "The offer cannot be read.", "It is damaged"};
}

} // namespace

URL offersFileIn(const URL& home)
{
    return home.appending("offers.json");
}

class FileOffers::Listener final : public FolderMonitor::Listener, public std::enable_shared_from_this<Listener> {
public:
    explicit Listener(FileOffers& offers)
        : offers_(offers), mainQueue_(offers.mainQueue_), name_(offers.file_.lastPathComponent())
    {
    }

    void folderChanged(FolderNews news) override
    {
        if (!news.names.contains(name_) && !news.readAnew && !news.mayHaveChanged)
            return;
        mainQueue_.async([self = weak_from_this()] {
            if (const auto listener = self.lock())
                listener->offers_.fetchSoon();
        });
    }

    /// On a worker.
    void tell(const FoundOffer& found, const MainQueue::Expectation& expectation)
    {
        mainQueue_.async([self = weak_from_this(), found, expectation] {
            if (const auto listener = self.lock())
                listener->offers_.take(found);
        });
    }

private:
    FileOffers& offers_; // ends the monitor's thread and its own before it ends itself
    MainQueue& mainQueue_;
    const std::string name_;
};

FileOffers::FileOffers(URL file, MainQueue& mainQueue, NotificationCenter& notifications, UnifiedLog& log)
    : file_(std::move(file)), mainQueue_(mainQueue), notifications_(notifications), log_(log)
{
}

FileOffers::~FileOffers()
{
    fetching_.cancel();
    if (monitor_)
        monitor_->finish();
}

/// Watches first, so that no change goes unseen.
bool FileOffers::fetchOfferIfNeeded()
{
    if (listener_)
        return false;
    listener_ = std::make_shared<Listener>(*this);
    watch();
    fetch();
    return true;
}

void FileOffers::watch()
{
    const auto path = file_.deletingLastPathComponent().path();
    const FileDescriptor folder(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen())
        return;
    monitor_ = std::make_unique<FolderMonitor>(log_, kMaximumNames);
    monitor_->watch(folder.get(), path, listener_);
}

void FileOffers::fetchSoon()
{
    fetching_.cancel();
    fetching_ = mainQueue_.after(kQuiet, [this] { fetch(); });
}

void FileOffers::fetch()
{
    reading_.addOperation([file = file_, listener = std::weak_ptr(listener_), expectation = mainQueue_.expectation()] {
        const auto found = readOffer(file);
        if (const auto told = listener.lock())
            told->tell(found, expectation);
    });
}

void FileOffers::take(const FoundOffer& found)
{
    if (!found)
        return log_.write(LogLevel::Error, "Cannot read %@, keeping the offer that there was: %@", file_,
                          found.error());
    if (std::exchange(current_, *found) != *found)
        notifications_.post(kCurrentOfferChangedNotification);
}

} // namespace tessel
