#include "platform/linux/cloud/Database.h"

#include "platform/linux/base/ErrnoError.h"

#include <sqlite3.h>

#include <cerrno>

namespace tessel {

namespace {

constexpr int kBusyTimeout = 5000; // milliseconds

int errnoOf(sqlite3* database)
{
    switch (sqlite3_errcode(database)) {
    case SQLITE_CANTOPEN:
        return sqlite3_system_errno(database);
    case SQLITE_FULL:
        return ENOSPC;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return EBUSY;
    case SQLITE_READONLY:
        return EROFS;
    case SQLITE_PERM:
        return EACCES;
    case SQLITE_NOMEM:
        return ENOMEM;
    default:
        return EIO;
    }
}

} // namespace

void Statement::Finalizer::operator()(sqlite3_stmt* statement) const
{
    sqlite3_finalize(statement);
}

Statement& Statement::bind(std::string_view text)
{
    sqlite3_bind_text64(handle_.get(), ++boundCount_, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    return *this;
}

Statement& Statement::bindBytes(std::string_view bytes)
{
    sqlite3_bind_blob64(handle_.get(), ++boundCount_, bytes.data(), bytes.size(), SQLITE_TRANSIENT);
    return *this;
}

Statement::Step Statement::step()
{
    const int result = handle_ ? sqlite3_step(handle_.get()) : SQLITE_MISUSE;
    if (result == SQLITE_ROW)
        return Step::Row;
    return result == SQLITE_DONE ? Step::Done : Step::Failed;
}

std::string Statement::bytes(int column) const
{
    const auto* content = static_cast<const char*>(sqlite3_column_blob(handle_.get(), column));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(handle_.get(), column));
    return content ? std::string(content, size) : std::string();
}

int Statement::number(int column) const
{
    return sqlite3_column_int(handle_.get(), column);
}

void Database::Closer::operator()(sqlite3* database) const
{
    sqlite3_close(database);
}

Result<Database> Database::open(const URL& file, Missing missing)
{
    Database database(file);
    sqlite3* handle = nullptr;
    const int creation = missing == Missing::Create ? SQLITE_OPEN_CREATE : 0;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | creation;
    const int result = sqlite3_open_v2(file.path().c_str(), &handle, flags, nullptr);
    database.handle_.reset(handle);
    if (result != SQLITE_OK)
        return database.lastError();
    sqlite3_busy_timeout(handle, kBusyTimeout);
    return database;
}

Statement Database::prepare(std::string_view sql) const
{
    Statement statement;
    sqlite3_stmt* handle = nullptr;
    sqlite3_prepare_v2(handle_.get(), sql.data(), static_cast<int>(sql.size()), &handle, nullptr);
    statement.handle_.reset(handle);
    return statement;
}

bool Database::execute(const char* sql) const
{
    return sqlite3_exec(handle_.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool Database::run(Statement& statement)
{
    auto result = Statement::Step::Row;
    while (result == Statement::Step::Row)
        result = statement.step();
    return result == Statement::Step::Done;
}

Error Database::lastError() const
{
    const int result = sqlite3_errcode(handle_.get());
    // A sound database of ours has all tables that are asked for.
    if (result == SQLITE_CORRUPT || result == SQLITE_NOTADB || result == SQLITE_ERROR)
        return {Domain::General, ErrorCode::kReadCorrupt,
                "The catalogue “" + file_.path() + "” is damaged: " + sqlite3_errmsg(handle_.get()), "It is damaged"};
    auto error = errnoError(errnoOf(handle_.get()), file_);
    error.description = "Cannot use the catalogue “" + file_.path() + "”: " + sqlite3_errmsg(handle_.get());
    return error;
}

Transaction::Transaction(const Database& database) : database_(database), open_(database.execute("BEGIN IMMEDIATE"))
{
}

Transaction::~Transaction()
{
    if (open_)
        (void)database_.execute("ROLLBACK");
}

bool Transaction::commit()
{
    if (!open_ || !database_.execute("COMMIT"))
        return false;
    open_ = false;
    return true;
}

} // namespace tessel
