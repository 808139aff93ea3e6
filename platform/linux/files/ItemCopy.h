#pragma once

#include "platform/base/Error.h"
#include "platform/linux/files/ItemStamp.h"
#include "platform/linux/files/NewFile.h"
#include "platform/linux/files/UnfinishedWork.h"

#include <optional>
#include <string>
#include <vector>

namespace tessel {

/// A copy of an item that stays out of sight until it is published: of a file, a link, or a folder with all that is in
/// it; with dates, permissions and the user's attributes. Destroying it drops a copy that has not been published.
class ItemCopy {
public:
    /// @param named the item that errors name
    ItemCopy(const URL& from, const URL& to, const URL& named, const UnfinishedWork&);
    ItemCopy(const ItemCopy&) = delete;
    ItemCopy& operator=(const ItemCopy&) = delete;
    ~ItemCopy();

    /// Copies, brings the copy to disk, and compares it with the item. Called once, and first.
    [[nodiscard]] std::optional<Error> make();

    /// Of the item when its copying began, and of the copy; none when that cannot be described.
    [[nodiscard]] const ItemStamp& source() const { return copied_.front().stamp; }
    [[nodiscard]] const std::optional<ItemStamp>& stamp() const { return copied_.front().copy; }

    /// Whether an item, wherever it is now, is still the one that was copied, and unchanged with all that is in it.
    [[nodiscard]] bool isCopyOf(const URL& item) const;

    /// Gives it its place, unless something is there (EEXIST).
    /// @returns false with errno set when it has no place
    [[nodiscard]] bool publish();
    /// Gives the published copy what the source has been marked with since it was copied.
    /// @param source where it is now, out of everybody's reach
    void continueMarks(const URL& source) const;
    /// Removes what was published, but for what has been changed since: that is left where it is.
    void takeBack();

private:
    struct Copied {
        std::string path;                             ///< below the item; empty for itself
        ItemStamp stamp;                              ///< of the original
        std::optional<ItemStamp> copy = std::nullopt; ///< of the copy, once it is whole
    };

    [[nodiscard]] std::optional<Error> makeFile();
    [[nodiscard]] std::optional<Error> makeHidden();
    [[nodiscard]] bool copyEntry(const std::string& path);
    [[nodiscard]] bool copyFolderContent();
    [[nodiscard]] bool finishFolders();
    [[nodiscard]] URL copyAt(const std::string& path) const;
    void rememberCopies();
    void removeUnchanged(const URL& copy) const;

    const URL from_;
    const URL to_;
    const URL named_;
    const UnfinishedWork& unfinished_;
    std::optional<NewFile> file_; ///< of a regular file
    std::optional<URL> hidden_;   ///< of anything else, until it is published
    UnfinishedWork::Note note_;
    std::vector<Copied> copied_; ///< folders before what is in them
};

} // namespace tessel
