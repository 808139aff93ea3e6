#pragma once

#include "platform/base/URL.h"
#include "platform/linux/files/FileDescriptor.h"

#include <optional>
#include <string>
#include <vector>

namespace tessel {

/// One line of the ledger. Its words:
///
///     Begin   what the operation is, the path of its item, then for "create" the content's identifier, for "save"
///             that and the identifier of the content that it is based on; "create in turn" and "save in turn" are
///             coordinated
///     End     "done", "in part" or why not; after "done" of "identify" the number and the content's identifier
///     Fact    "looks", before it is found out what follows
///             "intends" and the identifiers of all contents that the operation removes when it is done
///             "displaced", a content and the one that took its place
///             "shadowed", a content that was in the cloud when a file came to be where it was
///             "aside", the path at which a displaced content that nobody had read was kept
///             "torn", the path of a file that was not whole when it was read
///     Start, Kill   of a process
struct LedgerLine {
    enum class Kind : char { Begin = 'B', End = 'E', Fact = 'F', Start = 'S', Kill = 'K' };

    Kind kind = Kind::Fact;
    int process = 0;
    int generation = 0; ///< how often the process has been started again
    int operation = 0;  ///< counted over all generations; negative for clearing up at the start
    std::vector<std::string> words;

    [[nodiscard]] std::string text() const;
    [[nodiscard]] static std::optional<LedgerLine> parsed(const std::string& text);
};

/// Writes lines for a process. What was written is in the ledger, whatever happens to the process then. Many write to
/// one ledger, which has the lines in the order in which they were written.
class LedgerPen {
public:
    /// @param socket of the ledger, which outlives the pen
    LedgerPen(int socket, int process, int generation) : socket_(socket), process_(process), generation_(generation) {}

    void start() { write(LedgerLine::Kind::Start, {}); }
    void begin(int operation, std::vector<std::string> words)
    {
        operation_ = operation;
        write(LedgerLine::Kind::Begin, std::move(words));
    }
    void end(std::vector<std::string> words) { write(LedgerLine::Kind::End, std::move(words)); }
    void fact(std::vector<std::string> words) { write(LedgerLine::Kind::Fact, std::move(words)); }

private:
    void write(LedgerLine::Kind, std::vector<std::string> words);

    const int socket_;
    const int process_;
    const int generation_;
    int operation_ = 0;
};

/// Keeps what several processes write, outside of them and of the drive.
class Ledger {
public:
    /// Throws when there are no sockets.
    Ledger();

    [[nodiscard]] int penSocket() const { return forPens_.get(); }

    /// Waits for the next line. @returns null after `milliseconds` without one
    [[nodiscard]] const LedgerLine* receive(int milliseconds);
    void add(LedgerLine line) { lines_.push_back(std::move(line)); }

    [[nodiscard]] const std::vector<LedgerLine>& lines() const { return lines_; }
    void writeTo(const URL& file) const;

private:
    FileDescriptor forPens_;
    FileDescriptor own_;
    std::vector<LedgerLine> lines_;
};

} // namespace tessel
