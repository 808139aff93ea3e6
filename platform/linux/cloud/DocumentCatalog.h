#pragma once

#include "platform/linux/cloud/Database.h"
#include "platform/linux/files/FileIdentity.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

/// A document as it was seen last.
struct CatalogedDocument {
    std::uint32_t identifier = 0; ///< 0 for one that has yet to get it
    std::string drive;            ///< empty for the home's own drive, else the path of the bound folder
    std::string path;             ///< in the folder that holds all containers
    FileIdentity file;            ///< of the document, or of its placeholder

    friend bool operator==(const CatalogedDocument&, const CatalogedDocument&) = default;
};

/// The part of the catalogue that knows documents by their identifiers. Opened by the first call. Safe to use from any
/// thread; several programs may share the file: what is decided on what was read is stored only while that still holds.
class DocumentCatalog {
public:
    using Found = Result<std::optional<CatalogedDocument>>;

    /// @param file of a catalogue that is there and has this version's tables
    explicit DocumentCatalog(URL file) : file_(std::move(file)) {}

    /// Grows with every change, by any program.
    Result<std::int64_t> changeCount();

    Found withIdentifier(std::uint32_t identifier);
    Found withFile(const FileIdentity&);
    /// The one that was stored last for a path; others may have been there before it.
    Found atPath(const std::string& drive, const std::string& path);
    /// All that were stored for a path, or for one below it.
    Result<std::vector<CatalogedDocument>> atPathOrBelow(const std::string& drive, const std::string& path);

    /// Stores a document that has an identifier, or adds it with a new one that no document here ever had.
    /// @param changeCount as it was before what led to this was read
    /// @returns the identifier; none, and nothing stored, when there were other changes since
    Result<std::optional<std::uint32_t>> store(CatalogedDocument, std::int64_t changeCount);

    /// Whether the documents of a drive were once collected from the marks on their files.
    Result<bool> isScanned(const std::string& drive);
    /// Adds the documents of a drive, but for those whose identifier or file is known of another one, and has the drive
    /// count as scanned.
    [[nodiscard]] std::optional<Error> addScanned(const std::string& drive, const std::vector<CatalogedDocument>&);

private:
    [[nodiscard]] std::optional<Error> open();
    Found only(Statement&);
    [[nodiscard]] std::int64_t countNow() const;
    [[nodiscard]] bool isUsed(std::uint32_t identifier) const;
    [[nodiscard]] std::uint32_t unusedIdentifier() const;
    [[nodiscard]] bool write(const CatalogedDocument&, std::int64_t change);
    [[nodiscard]] bool addUnlessContradicted(const CatalogedDocument&, std::int64_t change);

    const URL file_;
    std::mutex mutex_;
    std::optional<Database> database_;
};

} // namespace tessel
