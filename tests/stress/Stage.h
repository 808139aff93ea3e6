#pragma once

#include "platform/base/URL.h"
#include "platform/linux/LinuxPlatform.h"

#include <array>
#include <cstddef>
#include <memory>
#include <string>

namespace tessel {

/// The home that all processes of a run share, with a drive of three containers, in temporary folders: the default one,
/// a library beside it, and a library that lies on another file system where there is one. Removed at the end.
class Stage {
public:
    Stage();
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    [[nodiscard]] URL home() const { return folder_.appending("home"); }
    [[nodiscard]] URL store() const { return home().appending("cloud"); }
    [[nodiscard]] URL unfinished() const { return home().appending("unfinished"); }
    /// Outside the drive and the home.
    [[nodiscard]] const URL& folder() const { return folder_; }

    /// Where documents lie: the documents of the containers, then the trash.
    static constexpr std::size_t kContainers = 3;
    static constexpr std::size_t kFarContainer = 2;
    static constexpr std::size_t kTrash = 3;
    /// The titles of the libraries.
    static constexpr const char* kNearLibrary = "orvane.Lookbook";
    static constexpr const char* kFarLibrary = "orvane.Songbook";
    [[nodiscard]] const std::array<URL, 4>& places() const { return places_; }
    [[nodiscard]] bool hasOtherFileSystem() const { return hasOtherFileSystem_; }

    /// Starts the program's platform, which clears up after those that were killed. Throws when it cannot be.
    [[nodiscard]] std::unique_ptr<LinuxPlatform> startPlatform() const;

    /// Leaves the folders for somebody to look at.
    void keep() { isKept_ = true; }

private:
    const URL folder_;
    const URL far_;
    const bool hasOtherFileSystem_;
    const std::array<URL, 4> places_;
    bool isKept_ = false;
};

} // namespace tessel
