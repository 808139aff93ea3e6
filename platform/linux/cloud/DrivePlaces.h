#pragma once

#include "platform/cloud/CloudContainer.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

class FileManager;

/// The folders that make up the drive, one a container; the default container's is the first. Fixed once added. Paths
/// "in the root" are relative to the folder that holds all containers: "orvane~Quillbox/Documents/Plan.txt".
class DrivePlaces {
public:
    struct Place {
        std::shared_ptr<const CloudContainer> container;
        URL realDocumentsURL;   ///< links resolved
        std::string pathInRoot; ///< of the documents
    };

    /// @param files outlives this
    explicit DrivePlaces(const FileManager& files) : files_(files) {}

    /// @param pathInRoot where its documents lie, or would lie, below the folder that holds all containers
    void add(CloudContainer, std::string pathInRoot);

    [[nodiscard]] const std::vector<Place>& all() const { return places_; }

    /// The place that holds a URL whose links are resolved; null outside the drive.
    [[nodiscard]] const Place* holding(const URL& resolved) const;
    /// Where the item itself lies: a link is not followed, but those on the way to it are.
    [[nodiscard]] URL withFolderResolved(const URL&) const;

    /// None outside the drive. A link is not followed, but those on the way to it are.
    [[nodiscard]] std::optional<std::string> pathInRoot(const URL&) const;
    /// The URL that the drive's own lists would have for a path, whether something is there or not. None for a path
    /// into no container, and for one that is not plain: absolute, with "..", or with a NUL.
    [[nodiscard]] std::optional<URL> urlAt(std::string_view pathInRoot) const;

private:
    const FileManager& files_;
    std::vector<Place> places_;
};

} // namespace tessel
