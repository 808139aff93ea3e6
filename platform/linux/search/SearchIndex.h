#pragma once

#include "platform/documents/SystemSearch.h"
#include "platform/linux/cloud/Database.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tessel {

class UnifiedLog;

/// The names and tags of the drive's items, and the texts of its documents, in a database with full-text search. It
/// can be made anew at any time. One thread at a time for each object; several objects and programs may use one file.
class SearchIndex {
public:
    struct Item {
        std::string tags;
        std::int64_t changed = 0; ///< when the file's status last did, in ns since 1970; 0 for what may change unseen
        std::string document;     ///< tells a document with a text from every other, wherever it is moved; else empty
        std::string version;      ///< of its text
    };
    using ChangeTimes = std::map<std::string, std::int64_t>; ///< of items, by their names

    /// Makes one that is missing. One that is damaged, too large, or of another kind is set aside, and begun again.
    static Result<SearchIndex> open(const URL& file, UnifiedLog&);
    /// Renames what is no good to "<name>.damaged", in place of what lay there, and logs why.
    static void setAside(const URL& file, UnifiedLog&, const std::string& reason);

    /// Changes between these two are on disk together, or, when the last one fails, not at all.
    [[nodiscard]] bool begin();
    [[nodiscard]] bool commit();
    /// Whether some call has failed: the object is of no more use.
    [[nodiscard]] bool hasFailed() const { return hasFailed_; }
    /// Whether it was because the file is damaged: a new one has to be made.
    [[nodiscard]] bool isDamaged() const { return isDamaged_; }
    /// Bytes of the file.
    [[nodiscard]] std::int64_t size() const;

    /// When a folder was changed last, as it was known when it was set; none for one that is not known.
    [[nodiscard]] std::optional<std::int64_t> changeTime(const std::string& folder) const;
    [[nodiscard]] std::vector<std::string> foldersIn(const std::string& folder) const;
    /// The folders that lie in none that is known.
    [[nodiscard]] std::vector<std::string> topFolders() const;
    void setFolder(const std::string& folder, std::int64_t changeTime);
    /// Forgets a folder and all below it.
    void forget(const std::string& folder);

    [[nodiscard]] ChangeTimes itemsIn(const std::string& folder) const;
    /// Adds or replaces an item of a folder that was set.
    void setItem(const std::string& folder, const std::string& name, const Item&);
    void removeItem(const std::string& folder, const std::string& name);

    /// A document whose text is not known, or that of an older version.
    struct Unread {
        std::int64_t document = 0;
        std::string version;
        URL url;
    };
    [[nodiscard]] std::vector<Unread> unreadTexts(int limit) const;
    /// @param text empty for what has none
    void setText(const Unread&, const std::string& text);
    [[nodiscard]] bool mayHaveUnusedTexts() const { return !removedDocuments_.empty(); }
    /// Forgets the texts of documents that are in no folder any more.
    /// @param all also of those that were removed before this object was made
    void forgetUnusedTexts(bool all);

    /// Items that have each of the words in their names and tags come first, then those that have them in their texts.
    [[nodiscard]] std::vector<std::string> find(const std::vector<std::string>& words, int limit) const;
    [[nodiscard]] std::optional<FoundDocument> document(const std::string& identifier) const;

private:
    explicit SearchIndex(Database database) : database_(std::move(database)) {}

    [[nodiscard]] Statement::Step step(Statement&) const;
    void run(Statement&) const;
    [[nodiscard]] std::optional<std::int64_t> folderNumber(const std::string& folder) const;
    [[nodiscard]] std::int64_t documentNumber(const Item&) const;
    bool addItem(const std::string& folder, const std::string& name, const Item&, std::int64_t document) const;
    void remove(std::int64_t item, const std::string& name, const std::string& tags, std::int64_t document);
    void forgetTextIfUnused(std::int64_t document) const;
    void collect(const char* question, const std::string& match, int limit, std::vector<std::string>& found) const;

    Database database_;
    mutable bool hasFailed_ = false;
    mutable bool isDamaged_ = false;
    std::set<std::int64_t> removedDocuments_; ///< that may be in no folder any more
};

} // namespace tessel
