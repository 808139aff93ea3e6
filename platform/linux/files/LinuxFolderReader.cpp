#include "platform/linux/files/LinuxFolderReader.h"

#include "platform/linux/files/FolderSearchTask.h"
#include "platform/linux/files/OpenFolder.h"
#include "platform/run/OperationQueue.h"

#include <utility>

namespace tessel {

namespace {

// So many that one disk that hangs does not hold up the others; they are started as they are needed.
constexpr std::size_t kWorkers = 8;

class LinuxFolderReading final : public FolderReading {
public:
    explicit LinuxFolderReading(std::shared_ptr<OpenFolder> folder) : folder_(std::move(folder)) { folder_->begin(); }
    ~LinuxFolderReading() override { folder_->end(); }

    void fetchDetails(std::vector<URL> items) override { folder_->fetchDetails(std::move(items)); }
    [[nodiscard]] bool isFetchingDetails() const override { return folder_->isFetchingDetails(); }
    [[nodiscard]] bool isCatchingUp() const override { return folder_->isCatchingUp(); }

private:
    const std::shared_ptr<OpenFolder> folder_;
};

class LinuxFolderSearch final : public FolderSearch {
public:
    explicit LinuxFolderSearch(std::shared_ptr<FolderSearchTask> task) : task_(std::move(task)) {}
    ~LinuxFolderSearch() override { task_->end(); }

private:
    const std::shared_ptr<FolderSearchTask> task_;
};

} // namespace

LinuxFolderReader::LinuxFolderReader(const FolderServices& services, std::size_t changedNamesLimit)
    : services_(services), monitor_(std::make_unique<FolderMonitor>(services.log, changedNamesLimit)),
      workers_(std::make_unique<OperationQueue>("folders", QualityOfService::UserInitiated, kWorkers))
{
}

LinuxFolderReader::~LinuxFolderReader()
{
    monitor_->finish(); // its listeners use the workers
}

std::unique_ptr<FolderReading> LinuxFolderReader::read(const URL& folder, FolderReadingClient client)
{
    return std::make_unique<LinuxFolderReading>(
        std::make_shared<OpenFolder>(folder, std::move(client), services_, *monitor_, *workers_));
}

std::unique_ptr<FolderSearch> LinuxFolderReader::search(std::vector<URL> folders, std::string query,
                                                        SearchClient client)
{
    auto task = std::make_shared<FolderSearchTask>(folders, query, std::move(client), services_);
    workers_->addOperation([task] { task->run(); });
    return std::make_unique<LinuxFolderSearch>(std::move(task));
}

} // namespace tessel
