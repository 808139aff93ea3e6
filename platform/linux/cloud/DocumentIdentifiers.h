#pragma once

#include "platform/linux/cloud/DocumentCatalog.h"
#include "platform/linux/cloud/DocumentMark.h"
#include "platform/linux/cloud/DrivePlaces.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

/// Gives every document and folder that is asked for an identifier of 32 bits, once, and finds it again. Synchronous,
/// from any thread, by several programs at once; nothing is done for files that nobody asks for.
///
/// The catalogue knows each document's path and the identity of its file, and decides:
///
///   1. The file with a known identity is that document, wherever it lies, and marked or not.
///   2. An unknown file whose mark was made for this very file is the marked document, which this program moved to
///      another file system, to the cloud or back (continueDocument), unless the document is still there.
///   3. An unknown file at a known path is that document saved by replacing its file, unless the document is somewhere
///      else in the drive by rule 1 or 2. A backup left beside it as "name~" does not count.
///   4. An unknown file elsewhere that bears the document's mark is that document, moved from another file system or
///      under a catalogue made anew, unless it is a copy: the document is still there.
///
/// So no two have the same one. Looking for a file that is not where it was reads every folder of the drive.
class DocumentIdentifiers {
public:
    struct Location {
        URL url;            ///< as the document's own, also while its placeholder is there
        URL file;           ///< the same, or the placeholder
        bool isTheDocument; ///< false when another one lies where the document was
    };

    /// @param drive empty for the home's own drive, else the path of the bound folder
    /// @param places outlives this
    DocumentIdentifiers(const URL& catalogFile, std::string drive, const DrivePlaces& places)
        : catalog_(catalogFile), drive_(std::move(drive)), places_(places)
    {
    }

    /// The identifier of the item, given now if it has none.
    /// @returns a no-such-file error (4) for what is not in the drive; EINVAL for a link or a device; the catalogue's
    ///          error when there is none yet and it cannot be written
    Result<std::uint32_t> identifierOf(const URL&);

    /// The identifier of a file if it has one.
    Result<std::optional<std::uint32_t>> knownIdentifierOf(const FileIdentity&);

    /// Where a document is now, or who is where it was last; none when nothing is there, or no document of this drive
    /// has the identifier.
    Result<std::optional<Location>> locate(std::uint32_t identifier);

    /// Has the documents at a place, and below it, take over the files that they were saved to since: only there can
    /// these be known. Nobody need call it who leaves them where they are.
    void recognizeBeforeMove(const URL&);

private:
    struct Item;
    enum class Whereabouts { InItsPlace, Moved, OtherFile };

    void scanOnce();
    [[nodiscard]] std::vector<CatalogedDocument> markedDocuments() const;
    Result<std::optional<std::uint32_t>> tryToIdentify(const Item&);
    Result<std::optional<std::uint32_t>> storeMarked(CatalogedDocument, const Item&, std::int64_t changeCount);
    [[nodiscard]] std::optional<std::uint32_t> markInPlace(std::uint32_t identifier, const Item&) const;
    [[nodiscard]] Whereabouts whereabouts(const CatalogedDocument&, const Item&) const;
    Result<CatalogedDocument> documentForUnknown(const Item&);
    [[nodiscard]] bool identifierIs(std::uint32_t identifier, const URL&);
    [[nodiscard]] std::optional<Location> locateMoved(const CatalogedDocument&);

    [[nodiscard]] std::optional<Item> itemAt(const URL&) const;
    [[nodiscard]] std::optional<Item> itemOf(const CatalogedDocument&) const;
    [[nodiscard]] std::optional<Item> itemWithFile(const URL& file) const;
    [[nodiscard]] bool isInItsPlace(const CatalogedDocument&) const;
    [[nodiscard]] bool isKnown(const FileIdentity&);
    [[nodiscard]] std::optional<Item> find(const FileIdentity&) const;
    [[nodiscard]] std::optional<Item> findElsewhere(const CatalogedDocument&, const Item&) const;
    Result<bool> isCopy(const DocumentMark&, const Item&);
    [[nodiscard]] std::optional<Item> findMarked(std::uint32_t identifier);
    [[nodiscard]] std::optional<Item> firstItem(
        const std::function<bool(const URL& file, std::uint64_t inode)>& isWanted) const;

    DocumentCatalog catalog_;
    const std::string drive_;
    const DrivePlaces& places_;
    std::atomic<bool> isScanned_ = false;
};

} // namespace tessel
