#include "platform/linux/search/DriveSearch.h"

#include "platform/linux/search/DriveIndexer.h"
#include "platform/log/UnifiedLog.h"
#include "platform/run/CurrentThread.h"
#include "platform/run/StartThread.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <sys/syscall.h>

namespace tessel {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr double kSecondsBeforeFirstLook = 3;
constexpr auto kBetweenLooks = 60s;
constexpr int kMostFound = 100;

int milliseconds(std::chrono::milliseconds time)
{
    return static_cast<int>(time.count());
}

ino_t inodeOf(const URL& file)
{
    struct stat status = {};
    return ::stat(file.path().c_str(), &status) == 0 ? status.st_ino : 0;
}

/// For work that nobody waits for: the disk is used when nobody else does.
void giveWay()
{
    constexpr int kWhoIsThread = 1;
    constexpr int kIdle = 3 << 13;
    applyQualityOfService(QualityOfService::Background, "indexing");
    ::syscall(SYS_ioprio_set, kWhoIsThread, 0, kIdle);
}

} // namespace

DriveSearch::DriveSearch(URL indexFile, std::vector<URL> roots, const Services& services)
    : file_(std::move(indexFile)), roots_(std::move(roots)), services_(services),
      wake_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
{
    beginning_ =
        services_.mainQueue.after(kSecondsBeforeFirstLook, [this] { indexing_ = startThread([this] { keep(); }); });
}

DriveSearch::~DriveSearch()
{
    ends_ = true;
    beginning_.cancel();
    ::eventfd_write(wake_.get(), 1);
    if (indexing_.joinable())
        indexing_.join();
}

std::unique_ptr<SearchIndex> DriveSearch::open() const
{
    const std::lock_guard lock(opening_); // of several that find it damaged, one begins it again
    auto index = SearchIndex::open(file_, services_.log);
    if (index)
        return std::make_unique<SearchIndex>(std::move(index.value()));
    services_.log.write(LogLevel::Error, "Cannot use the search's index: %@", index.error());
    return nullptr;
}

template <typename Question>
void DriveSearch::ask(Reader& reader, const Question& question) const
{
    const std::lock_guard lock(reader.mutex);
    if (!reader.index || reader.index->hasFailed() || inodeOf(file_) != reader.inode) {
        reader.index.reset();
        reader.index = open();
        reader.inode = inodeOf(file_);
    }
    if (!reader.index)
        return;
    question(*reader.index);
    if (!reader.index->isDamaged())
        return;
    setAside(reader.inode);
    ::eventfd_write(wake_.get(), 1); // who keeps it begins again
}

void DriveSearch::find(std::vector<std::string> words, Answer answer)
{
    answering_.addOperation([this, words = std::move(words), answer = std::move(answer)] {
        std::vector<std::string> found;
        ask(finding_, [&](const SearchIndex& index) { found = index.find(words, kMostFound); });
        answer(std::move(found));
    });
}

std::vector<FoundDocument> DriveSearch::documents(const std::vector<std::string>& identifiers) const
{
    std::vector<FoundDocument> found;
    ask(describing_, [&](const SearchIndex& index) {
        for (const auto& identifier : identifiers)
            if (auto document = index.document(identifier))
                found.push_back(std::move(*document));
    });
    return found;
}

void DriveSearch::refresh()
{
    if (!follow(Until::Quiet))
        (void)follow(Until::Quiet);
}

void DriveSearch::keep()
{
    giveWay();
    while (!ends_)
        if (!follow(Until::TheEnd))
            pause();
}

/// @returns false when the index could not be used and is to be tried again after a while
bool DriveSearch::follow(Until until)
{
    const auto index = open();
    if (!index)
        return false;
    const auto inode = inodeOf(file_);
    FolderWatches watches(services_.log);
    DriveIndexer indexer(*index, watches, roots_, {services_.log, services_.types, ends_});
    indexer.lookAtAll(DriveIndexer::Look::AtItems);
    auto looked = steady_clock::now();
    while (!ends_ && !indexer.hasFailed() && inodeOf(file_) == inode) {
        const bool hasMore = indexer.step();
        if (!hasMore && until == Until::Quiet)
            break;
        if (!hasMore && watches.isIncomplete() && steady_clock::now() - looked >= kBetweenLooks) {
            looked = steady_clock::now();
            indexer.lookAtAll(DriveIndexer::Look::AtChangedFolders);
        } else {
            // Nobody is waked while nothing happens, as long as every folder has a watch.
            watches.wait(wake_.get(), hasMore ? 0 : watches.isIncomplete() ? milliseconds(kBetweenLooks) : -1);
        }
        eventfd_t ignored = 0;
        ::eventfd_read(wake_.get(), &ignored);
        if (const auto news = watches.takeNews())
            indexer.take(*news);
    }
    if (index->isDamaged())
        setAside(inode);
    return !indexer.hasFailed();
}

/// One that is damaged, unless somebody did so already.
void DriveSearch::setAside(ino_t inode) const
{
    const std::lock_guard lock(opening_);
    if (inodeOf(file_) == inode)
        SearchIndex::setAside(file_, services_.log, "It is damaged");
}

/// A full disk or a damaged one is tried again, but not at once.
void DriveSearch::pause() const
{
    pollfd descriptor = {wake_.get(), POLLIN, 0};
    ::poll(&descriptor, 1, milliseconds(kBetweenLooks));
}

} // namespace tessel
