#include "platform/linux/cloud/Catalog.h"

#include "platform/base/KeyedArchive.h"
#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/cloud/ContainerDeclaration.h"

#include <cerrno>

namespace tessel {

namespace {

constexpr int kSchemaVersion = 2; // kept in user_version; 0 before the tables are made

// Paths are relative to the synced root, so that the home may be moved. Lists are JSON. An absent depth is NULL.
constexpr const char* kSchema = R"sql(
    CREATE TABLE account (
        name TEXT PRIMARY KEY,
        token BLOB NOT NULL,
        signedIn INTEGER NOT NULL
    ) WITHOUT ROWID;
    CREATE TABLE containers (
        identifier TEXT PRIMARY KEY,
        documents BLOB NOT NULL,
        localizedName TEXT NOT NULL,
        depthOption TEXT,
        documentTypes TEXT NOT NULL,
        owners TEXT NOT NULL
    ) WITHOUT ROWID;
)sql";

// What the second version added. An inode is kept as the signed number of the same bits. "change" orders the documents
// that were seen at one path.
constexpr const char* kDocumentSchema = R"sql(
    CREATE TABLE documents (
        identifier INTEGER PRIMARY KEY,
        drive BLOB NOT NULL,
        path BLOB NOT NULL,
        inode INTEGER NOT NULL,
        birth INTEGER NOT NULL,
        change INTEGER NOT NULL
    );
    CREATE INDEX documentFiles ON documents (inode, birth);
    CREATE INDEX documentPaths ON documents (path, drive);
    CREATE TABLE documentChanges (count INTEGER NOT NULL);
    INSERT INTO documentChanges VALUES (0);
    CREATE TABLE scannedDrives (drive BLOB PRIMARY KEY) WITHOUT ROWID;
    PRAGMA user_version = 2;
)sql";

std::string archivedList(const std::vector<std::string>& texts)
{
    return keyedArchive::archived(listValue(texts));
}

std::vector<std::string> unarchivedList(std::string_view text)
{
    const auto value = keyedArchive::unarchived(text);
    return value ? textList(*value) : std::vector<std::string>();
}

bool mayBeReadAtLeast(const Error& error)
{
    return error == Error{Domain::General, ErrorCode::kReadNoPermission, {}, {}} ||
           (error.domain == Domain::System && error.code != EBUSY);
}

} // namespace

Catalog::Opened Catalog::open(const URL& file, const URL& syncedRoot)
{
    auto catalog = checked(Database::open(file, Database::Missing::Fail), file, syncedRoot);
    if (catalog || !mayBeReadAtLeast(catalog.error()))
        return catalog;
    return checked(Database::openWithoutChanges(file, catalog.error()), file, syncedRoot);
}

Catalog::Opened Catalog::checked(Result<Database> database, const URL& file, const URL& syncedRoot)
{
    if (!database)
        return database.error();
    std::unique_ptr<Catalog> catalog(new Catalog(std::move(database.value()), file, syncedRoot));
    const int version = catalog->schemaVersion();
    if (version < 0)
        return catalog->database_.lastError();
    if (version == 0)
        return errnoError(ENOENT, file);
    if (version > kSchemaVersion)
        return Error{Domain::General, ErrorCode::kUnsupported,
                     "The catalogue “" + file.path() + "” was made by a newer version of this program.",
                     "It is newer than this program"};
    catalog->extendSchema();
    return catalog;
}

// Of a home that an earlier version made. Where nothing can be written it serves as it is, without document
// identifiers.
void Catalog::extendSchema()
{
    if (schemaVersion() == kSchemaVersion || !database_.canChange())
        return;
    Transaction transaction(database_);
    const bool isStillOld = transaction.hasBegun() && schemaVersion() < kSchemaVersion; // not done by another instance
    if (isStillOld && database_.execute(kDocumentSchema))
        (void)transaction.commit();
}

Catalog::Opened Catalog::make(const URL& file, const URL& syncedRoot, const std::string& firstAccount)
{
    auto database = Database::open(file, Database::Missing::Create);
    if (!database)
        return database.error();
    std::unique_ptr<Catalog> catalog(new Catalog(std::move(database.value()), file, syncedRoot));
    if (auto error = catalog->makeSchema(firstAccount))
        return *std::move(error);
    return catalog;
}

// There may be room again by now; if not, the change fails with the reason.
void Catalog::prepareForChange()
{
    if (database_.canChange())
        return;
    if (auto changeable = checked(Database::open(file_, Database::Missing::Fail), file_, syncedRoot_))
        database_ = std::move(changeable.value()->database_);
}

int Catalog::schemaVersion() const
{
    auto query = database_.prepare("PRAGMA user_version");
    return query.step() == Statement::Step::Row ? static_cast<int>(query.number(0)) : -1;
}

std::optional<Error> Catalog::makeSchema(const std::string& firstAccount)
{
    if (!database_.execute("PRAGMA journal_mode = WAL"))
        return database_.lastError();
    Transaction transaction(database_);
    const bool made = transaction.hasBegun() && database_.execute(kSchema) && database_.execute(kDocumentSchema) &&
                      replaceSignedIn(firstAccount);
    if (!made || !transaction.commit())
        return database_.lastError();
    return std::nullopt;
}

Result<Catalog::Containers> Catalog::containers() const
{
    const std::lock_guard lock(mutex_);
    Containers containers;
    auto query = database_.prepare("SELECT identifier, documents, localizedName, depthOption, documentTypes, owners "
                                   "FROM containers ORDER BY identifier");
    auto result = query.step();
    for (; result == Statement::Step::Row; result = query.step())
        containers.push_back(containerIn(query));
    if (result == Statement::Step::Failed)
        return database_.lastError();
    return containers;
}

std::shared_ptr<const CloudContainer> Catalog::containerIn(const Statement& row) const
{
    CloudContainer container{row.bytes(0), syncedRoot_.appending(row.bytes(1)), row.bytes(2),
                             {},           unarchivedList(row.bytes(4)),        unarchivedList(row.bytes(5))};
    if (auto depthOption = row.bytes(3); !depthOption.empty())
        container.depthOption = std::move(depthOption);
    return std::make_shared<const CloudContainer>(std::move(container));
}

std::optional<Error> Catalog::addContainers(const Containers& containers)
{
    const std::lock_guard lock(mutex_);
    prepareForChange();
    Transaction transaction(database_);
    bool added = transaction.hasBegun();
    for (const auto& container : containers)
        added = added && add(*container);
    if (!added || !transaction.commit())
        return database_.lastError();
    return std::nullopt;
}

bool Catalog::add(const CloudContainer& container)
{
    const auto documents = container.documentsURL.path().substr(syncedRoot_.path().size() + 1);
    auto insertion = database_.prepare("INSERT OR IGNORE INTO containers VALUES (?, ?, ?, nullif(?, ''), ?, ?)");
    insertion.bind(container.identifier).bindBytes(documents).bind(container.localizedName);
    insertion.bind(container.depthOption.value_or(""));
    insertion.bind(archivedList(container.documentTypes)).bind(archivedList(container.owners));
    return Database::run(insertion);
}

Result<std::optional<Data>> Catalog::identityToken() const
{
    const std::lock_guard lock(mutex_);
    auto query = database_.prepare("SELECT token FROM account WHERE signedIn");
    const auto result = query.step();
    if (result == Statement::Step::Failed)
        return database_.lastError();
    return result == Statement::Step::Row ? std::optional(Data{query.bytes(0)}) : std::nullopt;
}

std::optional<Error> Catalog::signIn(const std::string& accountName)
{
    const std::lock_guard lock(mutex_);
    prepareForChange();
    Transaction transaction(database_);
    if (!transaction.hasBegun() || !replaceSignedIn(accountName) || !transaction.commit())
        return database_.lastError();
    return std::nullopt;
}

bool Catalog::replaceSignedIn(const std::string& accountName)
{
    auto insertion = database_.prepare("INSERT INTO account VALUES (?, randomblob(16), 1) "
                                       "ON CONFLICT (name) DO UPDATE SET signedIn = 1");
    insertion.bind(accountName);
    return database_.execute("UPDATE account SET signedIn = 0 WHERE signedIn") && Database::run(insertion);
}

std::optional<Error> Catalog::signOut()
{
    const std::lock_guard lock(mutex_);
    prepareForChange();
    if (!database_.execute("UPDATE account SET signedIn = 0 WHERE signedIn"))
        return database_.lastError();
    return std::nullopt;
}

} // namespace tessel
