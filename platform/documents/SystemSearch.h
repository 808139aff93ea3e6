#pragma once

#include "platform/base/URL.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

/// A document or folder that a search of the whole system has found.
struct FoundDocument {
    std::string identifier; ///< of the index; means nothing after the index was made anew
    URL url;
};

/// The index of the drive that the desktop's search asks. Safe from any thread.
class SystemSearch {
public:
    using Answer = std::function<void(std::vector<std::string> identifiers)>;

    virtual ~SystemSearch() = default;

    /// Looks for items whose names and tags, or texts, have words that begin with each of these, without case and
    /// accents; those that have them in their texts only come last.
    /// @param answer called once, on a thread of the search's own, with at most 100 identifiers
    virtual void find(std::vector<std::string> words, Answer answer) = 0;
    /// What the identifiers stand for; those that mean nothing any more are left out. Blocks for some milliseconds.
    [[nodiscard]] virtual std::vector<FoundDocument> documents(const std::vector<std::string>& identifiers) const = 0;
};

} // namespace tessel
