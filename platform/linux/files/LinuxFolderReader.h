#pragma once

#include "platform/files/FolderReader.h"

#include <cstddef>
#include <memory>

namespace tessel {

class CloudService;
class FileManager;
class FolderMonitor;
class MainQueue;
class OperationQueue;
class TextServices;
class TypeRegistry;
class UnifiedLog;

/// What folders are read with. The services outlive the reader.
struct FolderServices {
    MainQueue& mainQueue;
    UnifiedLog& log;
    const TextServices& text;
    const TypeRegistry& types;
    const FileManager& files;
    const CloudService& cloud;
};

/// Reads folders with the kernel's own calls on worker threads and watches them with inotify.
///
/// Made and destroyed on the main thread. Readings and searches end before their reader; its destructor waits for what
/// its threads are just doing: no more than one system call each, or the ordering of a folder's names, which is not
/// interrupted and takes a second or so for a million of them.
class LinuxFolderReader final : public FolderReader {
public:
    /// @param changedNamesLimit more changed names than this at once are not looked at one by one: the folder is read
    ///        anew
    explicit LinuxFolderReader(const FolderServices&, std::size_t changedNamesLimit = 8192);
    ~LinuxFolderReader() override;

    [[nodiscard]] std::unique_ptr<FolderReading> read(const URL& folder, FolderReadingClient) override;
    [[nodiscard]] std::unique_ptr<FolderSearch> search(std::vector<URL> folders, std::string query,
                                                       SearchClient) override;

private:
    const FolderServices services_;
    const std::unique_ptr<FolderMonitor> monitor_;
    const std::unique_ptr<OperationQueue> workers_; // ends before the monitor that its tasks use
};

} // namespace tessel
