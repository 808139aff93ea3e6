#include "platform/linux/cloud/Database.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/base/UserText.h"
#include "platform/linux/files/FileDescriptor.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace tessel {

namespace {

constexpr int kBusyTimeout = 5000; // milliseconds

// Or the other errno when one can be made. Nothing is left: the file has no name.
int errnoOfMakingAFileBeside(const URL& file, int other)
{
    const auto folder = file.deletingLastPathComponent();
    return FileDescriptor(::open(folder.path().c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600)).isOpen() ? other : errno;
}

// SQLite tells the errno of its last attempt. When it cannot make a file beside the database it then tries to read it,
// and "no such file" hides the reason.
int errnoOfOpening(sqlite3* database, const URL& file)
{
    const int errorNumber = sqlite3_system_errno(database);
    if (errorNumber == ENOENT && ::access(file.path().c_str(), F_OK) == 0)
        return errnoOfMakingAFileBeside(file, EIO);
    return errorNumber != 0 ? errorNumber : EIO;
}

int errnoOf(sqlite3* database, const URL& file)
{
    switch (sqlite3_errcode(database)) {
    case SQLITE_CANTOPEN:
    case SQLITE_IOERR:
        return errnoOfOpening(database, file);
    case SQLITE_FULL:
        return ENOSPC;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return EBUSY;
    case SQLITE_READONLY:
        return errnoOfMakingAFileBeside(file, EROFS);
    case SQLITE_PERM:
        return EACCES;
    case SQLITE_NOMEM:
        return ENOMEM;
    default:
        return EIO;
    }
}

// SQLite would make it readable for everybody; the files beside it take its mode.
bool makeFile(const std::string& path)
{
    return FileDescriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_NONBLOCK | O_CLOEXEC, 0600)).isOpen();
}

bool isRegularFileOrMissing(const std::string& path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode);
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

Statement& Statement::bindNumber(std::int64_t number)
{
    sqlite3_bind_int64(handle_.get(), ++boundCount_, number);
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

std::int64_t Statement::number(int column) const
{
    return sqlite3_column_int64(handle_.get(), column);
}

void Database::Closer::operator()(sqlite3* database) const
{
    sqlite3_close(database);
}

Result<Database> Database::open(const URL& file, Missing missing)
{
    Database database(file);
    if (missing == Missing::Create && !makeFile(file.path()))
        return database.errorForUser(errno);
    if (!isRegularFileOrMissing(file.path()))
        return Error{Domain::General, ErrorCode::kReadCorrupt, "No file: " + file.path(), "It is no file"};
    if (!database.connect(file.path(), SQLITE_OPEN_READWRITE))
        return database.lastError();
    return database;
}

Result<Database> Database::openWithoutChanges(const URL& file, const Error& reason)
{
    struct stat status = {};
    if (::stat((file.path() + "-wal").c_str(), &status) == 0 && status.st_size > 0)
        return reason;
    Database database(file);
    const auto name = file.absoluteString() + "?immutable=1";
    if (!database.connect(name, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI))
        return database.lastError();
    database.noChanges_ = reason;
    return database;
}

bool Database::connect(const std::string& name, int flags)
{
    sqlite3* handle = nullptr;
    const int result = sqlite3_open_v2(name.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    handle_.reset(handle);
    if (result == SQLITE_OK)
        sqlite3_busy_timeout(handle, kBusyTimeout);
    return result == SQLITE_OK;
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
    if (result == SQLITE_READONLY && noChanges_)
        return *noChanges_;
    return errorForUser(errnoOf(handle_.get(), file_));
}

Error Database::errorForUser(int errorNumber) const
{
    auto error = errnoError(errorNumber, file_);
    error.description = userText("Cannot use the catalogue “%1$@”: %2$@", {file_.path(), error.failureReason});
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
