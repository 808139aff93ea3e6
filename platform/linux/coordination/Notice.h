#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessel {

/// What the presenters of an item, of those in it and of those around it are told.
struct Notice {
    enum class Kind {
        Reading,  ///< is about to be read
        Writing,  ///< is about to be written or moved
        Deleting, ///< is about to be deleted
        WillMove, ///< is about to be at `to`
        Moved,    ///< is at `to` now
        Changed,  ///< has been written, moved or deleted
    };

    Kind kind = Kind::Changed;
    std::string path; ///< absolute, links on the way resolved
    std::string to;

    /// Whether the access waits for the presenters.
    [[nodiscard]] bool wantsAnswers() const { return kind <= Kind::Deleting; }
};

/// As one process writes it for another, and back; none for what is no notice.
[[nodiscard]] std::string encoded(const Notice&);
[[nodiscard]] std::optional<Notice> decodedNotice(std::string_view);

} // namespace tessel
