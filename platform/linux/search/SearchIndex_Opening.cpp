#include "platform/linux/search/SearchIndex.h"

#include "platform/log/UnifiedLog.h"

#include <filesystem>
#include <unistd.h>

namespace tessel {

namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kVersion = 2;
constexpr std::uintmax_t kMostBytes = std::uintmax_t{4} << 30;

// Without syncs but at checkpoints: what a loss of power takes away is found again by the next look.
constexpr const char* kSettings = R"(
    PRAGMA journal_mode = WAL;
    PRAGMA synchronous = NORMAL;
    PRAGMA journal_size_limit = 4194304;
)";

// The parent of a folder, and the folder of an item, is a number of the first table. A document with a text is known by
// its identity, so that one that is moved need not be read again; `version` is that of its text, `wanted` that of the
// file as it was last seen.
constexpr const char* kSchema = R"(
    BEGIN IMMEDIATE;
    CREATE TABLE IF NOT EXISTS folders(id INTEGER PRIMARY KEY, path TEXT NOT NULL UNIQUE, parent INTEGER NOT NULL,
        changed INTEGER NOT NULL);
    CREATE INDEX IF NOT EXISTS foldersByParent ON folders(parent);
    CREATE TABLE IF NOT EXISTS items(id INTEGER PRIMARY KEY, folder INTEGER NOT NULL, name TEXT NOT NULL,
        tags TEXT NOT NULL, changed INTEGER NOT NULL, document INTEGER NOT NULL, UNIQUE(folder, name));
    CREATE INDEX IF NOT EXISTS itemsByDocument ON items(document) WHERE document <> 0;
    CREATE TABLE IF NOT EXISTS documents(id INTEGER PRIMARY KEY, identity TEXT NOT NULL UNIQUE,
        version TEXT NOT NULL DEFAULT '', wanted TEXT NOT NULL);
    CREATE INDEX IF NOT EXISTS unread ON documents(id) WHERE version <> wanted;
    CREATE VIRTUAL TABLE IF NOT EXISTS words USING fts5(name, tags, content = 'items', content_rowid = 'id',
        tokenize = 'unicode61 remove_diacritics 2', prefix = '1 2 3');
    CREATE VIRTUAL TABLE IF NOT EXISTS texts USING fts5(text, tokenize = 'unicode61 remove_diacritics 2',
        prefix = '2 3');
    PRAGMA user_version = 2;
    COMMIT;
)";

Error unusable(const URL& file, const std::string& reason)
{
    return {Domain::General, ErrorCode::kReadCorrupt, "Cannot use the index “" + file.path() + "”: " + reason, reason};
}

std::int64_t numberOf(const Database& database, const char* question)
{
    auto query = database.prepare(question);
    return query.step() == Statement::Step::Row ? query.number(0) : -1;
}

std::optional<Error> prepare(const Database& database, const URL& file)
{
    if (!database.execute(kSettings))
        return database.lastError();
    const auto version = numberOf(database, "PRAGMA user_version");
    if (version == kVersion)
        return std::nullopt;
    if (version > 0 || numberOf(database, "SELECT count(*) FROM sqlite_master") > 0)
        return unusable(file, "It is of another version");
    return database.execute(kSchema) ? std::nullopt : std::optional(database.lastError());
}

/// One that is there is not opened to be made: to close such a descriptor would end the locks of other connections.
Result<Database> openOrMake(const URL& file)
{
    const bool isThere = ::access(file.path().c_str(), F_OK) == 0;
    return Database::open(file, isThere ? Database::Missing::Fail : Database::Missing::Create);
}

} // namespace

Result<SearchIndex> SearchIndex::open(const URL& file, UnifiedLog& log)
{
    std::error_code ignored;
    if (const auto size = fs::file_size(file.path(), ignored); size != std::uintmax_t(-1) && size > kMostBytes)
        setAside(file, log, "It is too large");
    for (const bool isLastTry : {false, true}) {
        auto database = openOrMake(file);
        const auto error = database ? prepare(database.value(), file) : std::optional(database.error());
        if (!error)
            return SearchIndex(std::move(database.value()));
        if (isLastTry || *error != unusable(file, {}))
            return *error;
        setAside(file, log, error->failureReason);
    }
    return Error{};
}

void SearchIndex::setAside(const URL& file, UnifiedLog& log, const std::string& reason)
{
    log.write(LogLevel::Error, "The search's index is set aside and made anew: %{public}@", reason);
    std::error_code ignored;
    fs::remove_all(file.path() + ".damaged", ignored);
    fs::rename(file.path(), file.path() + ".damaged", ignored);
    for (const auto* suffix : {"-wal", "-shm"})
        fs::remove(file.path() + suffix, ignored);
}

} // namespace tessel
