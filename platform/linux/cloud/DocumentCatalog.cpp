#include "platform/linux/cloud/DocumentCatalog.h"

#include <bit>
#include <limits>
#include <random>

namespace tessel {

namespace {

constexpr const char* kColumns = "SELECT identifier, drive, path, inode, birth FROM documents WHERE ";

CatalogedDocument documentIn(const Statement& row)
{
    return {static_cast<std::uint32_t>(row.number(0)),
            row.bytes(1),
            row.bytes(2),
            {std::bit_cast<std::uint64_t>(row.number(3)), row.number(4)}};
}

} // namespace

std::optional<Error> DocumentCatalog::open()
{
    if (database_ && database_->canChange())
        return std::nullopt;
    auto database = Database::open(file_, Database::Missing::Fail);
    if (!database)
        return database.error();
    database_ = std::move(database.value());
    return std::nullopt;
}

Result<std::int64_t> DocumentCatalog::changeCount()
{
    const std::lock_guard lock(mutex_);
    if (auto error = open())
        return *std::move(error);
    const auto count = countNow();
    return count >= 0 ? Result(count) : Result<std::int64_t>(database_->lastError());
}

std::int64_t DocumentCatalog::countNow() const
{
    auto query = database_->prepare("SELECT count FROM documentChanges");
    return query.step() == Statement::Step::Row ? query.number(0) : -1;
}

DocumentCatalog::Found DocumentCatalog::withIdentifier(std::uint32_t identifier)
{
    const std::lock_guard lock(mutex_);
    if (auto error = open())
        return *std::move(error);
    auto query = database_->prepare(std::string(kColumns) + "identifier = ?");
    return only(query.bindNumber(identifier));
}

DocumentCatalog::Found DocumentCatalog::withFile(const FileIdentity& file)
{
    const std::lock_guard lock(mutex_);
    if (auto error = open())
        return *std::move(error);
    auto query = database_->prepare(std::string(kColumns) + "inode = ? AND birth = ? ORDER BY change DESC");
    return only(query.bindNumber(std::bit_cast<std::int64_t>(file.inode)).bindNumber(file.birth));
}

DocumentCatalog::Found DocumentCatalog::atPath(const std::string& drive, const std::string& path)
{
    const std::lock_guard lock(mutex_);
    if (auto error = open())
        return *std::move(error);
    auto query = database_->prepare(std::string(kColumns) + "path = ? AND drive = ? ORDER BY change DESC");
    return only(query.bindBytes(path).bindBytes(drive));
}

Result<std::vector<CatalogedDocument>> DocumentCatalog::atPathOrBelow(const std::string& drive, const std::string& path)
{
    const std::lock_guard lock(mutex_);
    if (auto error = open())
        return *std::move(error);
    auto query = database_->prepare(std::string(kColumns) + "(path = ? OR (path > ? AND path < ?)) AND drive = ?");
    const auto first = path + '/';
    const auto end = path + char('/' + 1);
    query.bindBytes(path).bindBytes(first).bindBytes(end).bindBytes(drive);
    std::vector<CatalogedDocument> documents;
    for (;;)
        switch (query.step()) {
        case Statement::Step::Row:
            documents.push_back(documentIn(query));
            break;
        case Statement::Step::Done:
            return documents;
        case Statement::Step::Failed:
            return database_->lastError();
        }
}

DocumentCatalog::Found DocumentCatalog::only(Statement& query)
{
    const auto result = query.step();
    if (result == Statement::Step::Failed)
        return database_->lastError();
    return result == Statement::Step::Row ? std::optional(documentIn(query)) : std::nullopt;
}

Result<std::optional<std::uint32_t>> DocumentCatalog::store(CatalogedDocument document, std::int64_t changeCount)
{
    const std::lock_guard lock(mutex_);
    if (auto error = open())
        return *std::move(error);
    Transaction transaction(*database_);
    const auto count = transaction.hasBegun() ? countNow() : -1;
    if (count < 0)
        return database_->lastError();
    if (count != changeCount)
        return std::optional<std::uint32_t>();
    if (document.identifier == 0)
        document.identifier = unusedIdentifier();
    if (!write(document, count + 1) || !transaction.commit())
        return database_->lastError();
    return std::optional(document.identifier);
}

// By chance, so that a catalogue made anew, which may not know of all documents, hardly ever gives one's again.
std::uint32_t DocumentCatalog::unusedIdentifier() const
{
    std::random_device source;
    std::uniform_int_distribution<std::uint32_t> identifiers(1, std::numeric_limits<std::uint32_t>::max());
    auto identifier = identifiers(source);
    while (isUsed(identifier))
        identifier = identifiers(source);
    return identifier;
}

bool DocumentCatalog::isUsed(std::uint32_t identifier) const
{
    auto query = database_->prepare("SELECT 1 FROM documents WHERE identifier = ?");
    return query.bindNumber(identifier).step() == Statement::Step::Row;
}

bool DocumentCatalog::write(const CatalogedDocument& document, std::int64_t change)
{
    auto insertion = database_->prepare("INSERT OR REPLACE INTO documents VALUES (?, ?, ?, ?, ?, ?)");
    insertion.bindNumber(document.identifier).bindBytes(document.drive).bindBytes(document.path);
    insertion.bindNumber(std::bit_cast<std::int64_t>(document.file.inode)).bindNumber(document.file.birth);
    auto counting = database_->prepare("UPDATE documentChanges SET count = ?");
    return Database::run(insertion.bindNumber(change)) && Database::run(counting.bindNumber(change));
}

Result<bool> DocumentCatalog::isScanned(const std::string& drive)
{
    const std::lock_guard lock(mutex_);
    if (auto error = open())
        return *std::move(error);
    auto query = database_->prepare("SELECT 1 FROM scannedDrives WHERE drive = ?");
    const auto result = query.bindBytes(drive).step();
    return result == Statement::Step::Failed ? Result<bool>(database_->lastError())
                                             : Result(result == Statement::Step::Row);
}

std::optional<Error> DocumentCatalog::addScanned(const std::string& drive,
                                                 const std::vector<CatalogedDocument>& documents)
{
    const std::lock_guard lock(mutex_);
    if (auto error = open())
        return error;
    Transaction transaction(*database_);
    auto count = transaction.hasBegun() ? countNow() : -1;
    bool added = count >= 0;
    for (const auto& document : documents)
        added = added && addUnlessContradicted(document, ++count);
    auto insertion = database_->prepare("INSERT OR IGNORE INTO scannedDrives VALUES (?)");
    if (!added || !Database::run(insertion.bindBytes(drive)) || !transaction.commit())
        return database_->lastError();
    return std::nullopt;
}

bool DocumentCatalog::addUnlessContradicted(const CatalogedDocument& document, std::int64_t change)
{
    auto query = database_->prepare("SELECT 1 FROM documents WHERE (identifier = ?1) <> (inode = ?2 AND birth = ?3)");
    query.bindNumber(document.identifier).bindNumber(std::bit_cast<std::int64_t>(document.file.inode));
    const auto contradiction = query.bindNumber(document.file.birth).step();
    return contradiction == Statement::Step::Row || (contradiction == Statement::Step::Done && write(document, change));
}

} // namespace tessel
