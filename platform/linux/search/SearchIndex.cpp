#include "platform/linux/search/SearchIndex.h"

#include <algorithm>
#include <filesystem>

namespace tessel {

namespace {

constexpr const char* kSchema = R"(
    PRAGMA journal_mode = WAL;
    PRAGMA synchronous = OFF;
    CREATE TABLE IF NOT EXISTS folders(path TEXT PRIMARY KEY, parent TEXT NOT NULL, changed INTEGER NOT NULL) WITHOUT ROWID;
    CREATE INDEX IF NOT EXISTS foldersByParent ON folders(parent);
    CREATE TABLE IF NOT EXISTS items(id INTEGER PRIMARY KEY, folder TEXT NOT NULL, name TEXT NOT NULL, tags TEXT NOT NULL);
    CREATE INDEX IF NOT EXISTS itemsByFolder ON items(folder);
    CREATE VIRTUAL TABLE IF NOT EXISTS words USING fts5(name, tags, content = 'items', content_rowid = 'id',
        tokenize = 'unicode61 remove_diacritics 2', prefix = '1 2 3');
)";

std::string parentOf(const std::string& folder)
{
    return URL::file(folder).deletingLastPathComponent().path();
}

/// Words that begin so, each in quotes: nothing in them is an operator.
std::string matchOf(const std::vector<std::string>& words)
{
    std::string match;
    for (const auto& word : words) {
        const bool hasLetters = std::ranges::any_of(word, [](unsigned char c) { return std::isalnum(c) || c >= 0x80; });
        if (!hasLetters || word.find('\0') != std::string::npos)
            continue;
        match += match.empty() ? "\"" : " \"";
        for (const char character : word)
            match += character == '"' ? ' ' : character;
        match += "\"*";
    }
    return match;
}

} // namespace

Result<SearchIndex> SearchIndex::open(const URL& file)
{
    for (const bool isLastTry : {false, true}) {
        auto database = Database::open(file, Database::Missing::Create);
        if (database && database->execute(kSchema))
            return SearchIndex(std::move(database.value()));
        if (isLastTry)
            return database ? database->lastError() : database.error();
        std::error_code ignored;
        for (const auto* suffix : {"", "-wal", "-shm"})
            std::filesystem::remove(file.path() + suffix, ignored);
    }
    return Error{};
}

bool SearchIndex::begin()
{
    return database_.execute("BEGIN IMMEDIATE");
}

bool SearchIndex::commit()
{
    return database_.execute("COMMIT");
}

std::optional<std::int64_t> SearchIndex::changeTime(const std::string& folder) const
{
    auto query = database_.prepare("SELECT changed FROM folders WHERE path = ?");
    query.bind(folder);
    return query.step() == Statement::Step::Row ? std::optional(query.number(0)) : std::nullopt;
}

std::vector<std::string> SearchIndex::foldersIn(const std::string& folder) const
{
    std::vector<std::string> folders;
    auto query = database_.prepare("SELECT path FROM folders WHERE parent = ?");
    query.bind(folder);
    while (query.step() == Statement::Step::Row)
        folders.push_back(query.bytes(0));
    return folders;
}

int SearchIndex::setItems(const std::string& folder, std::int64_t changeTime, const Items& items,
                          const std::vector<std::string>& folders)
{
    int changes = 0;
    auto added = items;
    auto known = database_.prepare("SELECT id, name, tags FROM items WHERE folder = ?");
    known.bind(folder);
    while (known.step() == Statement::Step::Row) {
        const auto name = known.bytes(1);
        const auto tags = known.bytes(2);
        const auto found = added.find(name);
        if (found != added.end() && found->second == tags) {
            added.erase(found);
            continue;
        }
        remove(known.number(0), name, tags);
        ++changes;
    }
    for (const auto& [name, tags] : added)
        add(folder, name, tags);
    changes += static_cast<int>(added.size());
    for (const auto& before : foldersIn(folder))
        if (std::ranges::find(folders, before) == folders.end())
            forget(before);
    for (const auto& inside : folders) {
        auto insert = database_.prepare("INSERT OR IGNORE INTO folders VALUES(?, ?, -1)");
        if (!Database::run(insert.bind(inside).bind(folder)))
            return -1;
    }
    auto update = database_.prepare("INSERT OR REPLACE INTO folders VALUES(?, ?, ?)");
    return Database::run(update.bind(folder).bind(parentOf(folder)).bindNumber(changeTime)) ? changes : -1;
}

void SearchIndex::forget(const std::string& folder)
{
    std::vector<std::string> pending = {folder};
    while (!pending.empty()) {
        const auto path = std::move(pending.back());
        pending.pop_back();
        const auto inside = foldersIn(path);
        pending.insert(pending.end(), inside.begin(), inside.end());
        auto known = database_.prepare("SELECT id, name, tags FROM items WHERE folder = ?");
        known.bind(path);
        while (known.step() == Statement::Step::Row)
            remove(known.number(0), known.bytes(1), known.bytes(2));
        auto erase = database_.prepare("DELETE FROM folders WHERE path = ?");
        static_cast<void>(Database::run(erase.bind(path)));
    }
}

void SearchIndex::remove(std::int64_t item, const std::string& name, const std::string& tags) const
{
    auto words = database_.prepare("INSERT INTO words(words, rowid, name, tags) VALUES('delete', ?, ?, ?)");
    static_cast<void>(Database::run(words.bindNumber(item).bind(name).bind(tags)));
    auto erase = database_.prepare("DELETE FROM items WHERE id = ?");
    static_cast<void>(Database::run(erase.bindNumber(item)));
}

void SearchIndex::add(const std::string& folder, const std::string& name, const std::string& tags) const
{
    auto insert = database_.prepare("INSERT INTO items(folder, name, tags) VALUES(?, ?, ?)");
    if (!Database::run(insert.bind(folder).bind(name).bind(tags)))
        return;
    auto words = database_.prepare("INSERT INTO words(rowid, name, tags) VALUES(last_insert_rowid(), ?, ?)");
    static_cast<void>(Database::run(words.bind(name).bind(tags)));
}

std::vector<std::string> SearchIndex::find(const std::vector<std::string>& words, int limit) const
{
    std::vector<std::string> identifiers;
    const auto match = matchOf(words);
    if (match.empty())
        return identifiers;
    auto query = database_.prepare("SELECT rowid FROM words WHERE words MATCH ? LIMIT ?");
    query.bind(match).bindNumber(limit);
    while (query.step() == Statement::Step::Row)
        identifiers.push_back(std::to_string(query.number(0)));
    return identifiers;
}

std::optional<FoundDocument> SearchIndex::document(const std::string& identifier) const
{
    auto query = database_.prepare("SELECT folder, name FROM items WHERE id = CAST(? AS INTEGER)");
    query.bind(identifier);
    if (query.step() != Statement::Step::Row)
        return std::nullopt;
    return FoundDocument{identifier, URL::file(query.bytes(0)).appending(query.bytes(1))};
}

} // namespace tessel
