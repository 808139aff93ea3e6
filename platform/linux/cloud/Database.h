#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace tessel {

/// One SQL statement with its bound parameters. A failure while it is prepared or bound shows in `step`.
class Statement {
public:
    enum class Step { Row, Done, Failed };

    /// The next parameter, in the order of the question marks.
    Statement& bind(std::string_view text);
    Statement& bindBytes(std::string_view bytes);
    Statement& bindNumber(std::int64_t number);

    [[nodiscard]] Step step();

    /// A column of the current row as bytes; empty for NULL.
    [[nodiscard]] std::string bytes(int column) const;
    [[nodiscard]] std::int64_t number(int column) const;

private:
    friend class Database;
    struct Finalizer {
        void operator()(sqlite3_stmt*) const;
    };

    std::unique_ptr<sqlite3_stmt, Finalizer> handle_;
    int boundCount_ = 0;
};

/// A connection to an SQLite database. Waits up to five seconds for another program's change. One thread at
/// a time; its statements end before it.
class Database {
public:
    enum class Missing { Create, Fail };

    /// @returns a no-such-file error (4) for a file that is not there and is not to be created (mode 0600), and a
    ///          corrupt-file error (259) for what is no regular file
    static Result<Database> open(const URL& file, Missing);

    /// Opens a database that cannot be used by `open`, because that makes files beside it even to read: when the disk
    /// is full, or the folder cannot be written.
    /// @param reason why it cannot; every change fails with it
    /// @returns `reason` again when a change that lies beside the database would be missed
    static Result<Database> openWithoutChanges(const URL& file, const Error& reason);

    [[nodiscard]] bool canChange() const { return !noChanges_; }

    [[nodiscard]] Statement prepare(std::string_view sql) const;
    /// Runs statements without parameters and rows. The parts that were run before an error stay run.
    [[nodiscard]] bool execute(const char* sql) const;
    /// Runs a statement to its end.
    [[nodiscard]] static bool run(Statement& statement);

    /// Why the last call failed; a corrupt-file error (259) when the file is no sound database.
    [[nodiscard]] Error lastError() const;

private:
    struct Closer {
        void operator()(sqlite3*) const;
    };

    explicit Database(URL file) : file_(std::move(file)) {}

    [[nodiscard]] bool connect(const std::string& name, int flags);
    [[nodiscard]] Error errorForUser(int errorNumber) const;

    URL file_;
    std::optional<Error> noChanges_; // why
    std::unique_ptr<sqlite3, Closer> handle_;
};

/// A transaction that holds the database's write lock from the start; undone unless committed.
class Transaction {
public:
    explicit Transaction(const Database& database);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    [[nodiscard]] bool hasBegun() const { return open_; }
    [[nodiscard]] bool commit();

private:
    const Database& database_;
    bool open_;
};

} // namespace tessel
