#pragma once

#include "platform/linux/search/FolderWatches.h"
#include "platform/linux/search/SearchIndex.h"

#include <atomic>
#include <chrono>
#include <deque>

namespace tessel {

class TypeRegistry;

/// Brings an index to what lies in the drive, step by step: folders first, then the texts of documents that are on the
/// device. It opens no document that is not. One thread.
class DriveIndexer {
public:
    struct Services {
        UnifiedLog& log;
        const TypeRegistry& types;
        const std::atomic<bool>& ends; ///< a step ends soon when it becomes true
    };

    /// The arguments outlive this.
    DriveIndexer(SearchIndex&, FolderWatches&, std::vector<URL> roots, const Services&);

    enum class Look {
        AtItems,         ///< every item is compared
        AtChangedFolders ///< folders whose time of change is the known one, and those that are watched, are passed over
    };
    /// Has all folders looked at.
    void lookAtAll(Look);
    /// Has what may have changed looked at.
    void take(const FolderWatches::News&);

    /// Does some of what is to be done.
    /// @returns false when nothing is left, and all is on disk
    [[nodiscard]] bool step();
    /// Whether the index takes no changes now. Then it is of no use to go on.
    [[nodiscard]] bool hasFailed() const { return hasFailed_ || index_.hasFailed(); }

private:
    struct Folder {
        std::string path;
        Look look;
    };
    struct OpenedFolder;

    void lookAt(const Folder&);
    void lookAtItems(const OpenedFolder&, Look);
    void lookAtNames(const std::string& path, const std::set<std::string>& names);
    void lookAtName(const OpenedFolder&, const std::string& name);
    /// What the index knows of an item.
    struct Known {
        std::int64_t changed = 0; ///< 0 to have it compared
        bool isFolder = false;
    };
    /// @returns whether there is something
    bool setItem(const OpenedFolder&, const std::string& name, const Known&);
    bool setPlaceholder(const OpenedFolder&, const std::string& file, const std::string& name);
    void removeItem(const OpenedFolder&, const std::string& name);
    void forget(const std::string& folder);
    [[nodiscard]] bool isText(const std::string& name) const;
    void finishLook();
    [[nodiscard]] bool readTexts();
    [[nodiscard]] bool isFullOfTexts();
    void begin();
    void commit();

    SearchIndex& index_;
    FolderWatches& watches_;
    const std::vector<URL> roots_;
    const Services services_;
    std::deque<Folder> pending_;
    bool isLookingAtAll_ = false;
    bool hasBegun_ = false; ///< changes that are not on disk
    bool hasFailed_ = false;
    bool wasFull_ = false;
    std::chrono::steady_clock::time_point begun_{};
};

} // namespace tessel
