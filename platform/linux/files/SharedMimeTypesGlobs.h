#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tessel {

/// The file-name patterns of a MIME database (shared MIME-info, freedesktop: "globs2").
class SharedMimeTypesGlobs {
public:
    struct Match {
        std::string_view mimeType;
        int weight;
        std::size_t length; ///< Of the pattern, without its star.
    };

    /// Adds the patterns of one folder of the database; folders come in the order of their importance.
    /// @param globs outlives this object
    void add(std::string_view globs);

    /// The pattern of the greatest weight that fits, of these the longest, of these one that asks for the very case.
    [[nodiscard]] std::optional<Match> match(std::string_view name) const;

private:
    using Patterns = std::unordered_map<std::string_view, Match>;
    /// Patterns of one kind of comparison: letters as they are, or lower case.
    struct Table {
        Patterns names;    ///< Without any star.
        Patterns suffixes; ///< ".tar.gz" for "*.tar.gz".
        std::vector<std::pair<std::string, Match>> others;

        /// Of two types with the same pattern the heavier one stays, else a declared one, else the first.
        void add(std::string_view pattern, Match);
        /// Adds what a less important folder says of other patterns.
        void append(Table&& less);
        void match(const std::string& name, std::optional<Match>& best) const;
    };

    /// What one folder says.
    struct Folder {
        Table exact, lowered;
        std::unordered_set<std::string_view> closed;
    };

    void addLine(std::string_view line, Folder&) const;

    Table exact_, lowered_;
    std::unordered_set<std::string_view> closed_; ///< Types whose patterns in less important folders do not count.
};

} // namespace tessel
