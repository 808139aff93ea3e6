#pragma once

#include "platform/documents/SystemSearch.h"
#include "platform/linux/cloud/Database.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace tessel {

/// The names and tags of the drive's items in a database with full-text search, folder by folder. It can be made anew
/// at any time. One thread at a time for each object; several objects may use one file.
class SearchIndex {
public:
    using Items = std::map<std::string, std::string>; ///< tags by name

    /// Made when it is missing; one that is damaged is removed and begun again.
    static Result<SearchIndex> open(const URL& file);

    /// Changes between these two are on disk together.
    [[nodiscard]] bool begin();
    [[nodiscard]] bool commit();

    /// When a folder was changed last, as it was known when its items were set; none for one that is not known.
    [[nodiscard]] std::optional<std::int64_t> changeTime(const std::string& folder) const;
    [[nodiscard]] std::vector<std::string> foldersIn(const std::string& folder) const;
    /// What a folder holds now.
    /// @param folders the paths of those in it that are to be known as well
    /// @returns how many items came or went; negative after a failure
    int setItems(const std::string& folder, std::int64_t changeTime, const Items&,
                 const std::vector<std::string>& folders);
    /// Forgets a folder and all below it.
    void forget(const std::string& folder);

    [[nodiscard]] std::vector<std::string> find(const std::vector<std::string>& words, int limit) const;
    [[nodiscard]] std::optional<FoundDocument> document(const std::string& identifier) const;

private:
    explicit SearchIndex(Database database) : database_(std::move(database)) {}

    void remove(std::int64_t item, const std::string& name, const std::string& tags) const;
    void add(const std::string& folder, const std::string& name, const std::string& tags) const;

    Database database_;
};

} // namespace tessel
