#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

/// Remembers in which state files and folders were read, to tell whether that is still true.
class FileStamps {
public:
    /// Call before the file, or folder, is read; one that is not there is remembered as missing.
    void add(std::string path);
    void clear() { stamps_.clear(); }

    /// Whether nothing changed. A file that had been changed just before it was added is not trusted: another change
    /// may have got the same time.
    [[nodiscard]] bool areCurrent() const;

private:
    struct State {
        std::uint64_t device = 0;
        std::uint64_t node = 0;
        std::int64_t changed = 0; ///< nanoseconds, of content or attributes
        bool operator==(const State&) const = default;
    };
    struct Stamp {
        std::string path;
        std::optional<State> state;
    };

    static std::optional<State> stateOf(const std::string& path);

    std::vector<Stamp> stamps_;
    bool trusted_ = false; ///< since anything was added
};

} // namespace tessel
