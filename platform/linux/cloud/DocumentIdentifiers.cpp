#include "platform/linux/cloud/DocumentIdentifiers.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/cloud/DocumentMark.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/DeepNames.h"
#include "platform/linux/files/UnfinishedWork.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

namespace tessel {

namespace {

constexpr int kMaximumAttempts = 16; // each after another program's change

bool areSameFile(const URL& left, const URL& right)
{
    std::error_code ignored;
    return std::filesystem::equivalent(left.path(), right.path(), ignored);
}

// Where some editors keep what they replaced.
bool isBackupOf(const std::string& path, const std::string& original)
{
    return path == original + '~';
}

} // namespace

/// What lies at a URL in the drive.
struct DocumentIdentifiers::Item {
    URL url;
    URL file; ///< `url`, or the placeholder there
    FileIdentity identity;
    std::string path; ///< in the folder that holds all containers
};

Result<std::uint32_t> DocumentIdentifiers::identifierOf(const URL& url)
{
    scanOnce();
    for (int attempt = 0; attempt < kMaximumAttempts; ++attempt) {
        const auto item = itemAt(url);
        if (!item)
            return errnoError(errno, url);
        const auto identifier = tryToIdentify(*item);
        if (!identifier)
            return identifier.error();
        if (*identifier)
            return **identifier;
    }
    return errnoError(EBUSY, url);
}

/// @returns none when it has to be tried again: another program was faster, or a document was found to have moved
Result<std::optional<std::uint32_t>> DocumentIdentifiers::tryToIdentify(const Item& item)
{
    const auto count = catalog_.changeCount();
    if (!count)
        return count.error();
    const auto known = catalog_.withFile(item.identity);
    if (!known)
        return known.error();
    switch (*known ? whereabouts(**known, item) : Whereabouts::OtherFile) {
    case Whereabouts::InItsPlace:
        return markInPlace((*known)->identifier, item);
    case Whereabouts::Moved:
        return storeMarked({(*known)->identifier, drive_, item.path, item.identity}, item, *count);
    case Whereabouts::OtherFile:
        break;
    }
    const auto document = documentForUnknown(item);
    return document ? storeMarked(*document, item, *count) : Result<std::optional<std::uint32_t>>(document.error());
}

/// @param document its file has the item's identity
DocumentIdentifiers::Whereabouts DocumentIdentifiers::whereabouts(const CatalogedDocument& document,
                                                                  const Item& item) const
{
    if (document.drive == drive_ && document.path == item.path)
        return Whereabouts::InItsPlace;
    if (!isInItsPlace(document))
        return Whereabouts::Moved;
    // A second name of the file, or the same number in another file system that keeps no dates of birth.
    return areSameFile(itemOf(document)->file, item.file) ? Whereabouts::InItsPlace : Whereabouts::OtherFile;
}

Result<std::optional<std::uint32_t>> DocumentIdentifiers::storeMarked(CatalogedDocument document, const Item& item,
                                                                      std::int64_t changeCount)
{
    const bool isOfItem = document.path == item.path;
    auto stored = catalog_.store(std::move(document), changeCount);
    if (stored && *stored && isOfItem)
        return markInPlace(**stored, item);
    if (stored)
        stored.value().reset();
    return stored;
}

/// A document that goes to another file system takes its mark along: one that was marked in vain, since it had gone by
/// then, is looked for once more.
std::optional<std::uint32_t> DocumentIdentifiers::markInPlace(std::uint32_t identifier, const Item& item) const
{
    if (markDocument(item.file, {identifier, item.identity}) || fileIdentity(item.file.path()) == item.identity)
        return identifier;
    return std::nullopt;
}

/// What is to be stored of a file that the catalogue does not know: the file as a known or a new document or, where the
/// document of its path has moved, that document.
Result<CatalogedDocument> DocumentIdentifiers::documentForUnknown(const Item& item)
{
    const auto before = catalog_.atPath(drive_, item.path);
    if (!before)
        return before.error();
    const auto known = readDocumentMark(item.file);
    if (!known)
        return errorNaming(item.url, known.error());
    const auto& mark = *known;
    if (mark && (mark->file == item.identity || !*before)) {
        const auto isCopied = isCopy(*mark, item);
        if (!isCopied)
            return isCopied.error();
        if (!*isCopied)
            return CatalogedDocument{mark->identifier, drive_, item.path, item.identity};
    }
    if (*before) {
        const auto identifier = (*before)->identifier;
        const auto elsewhere = (*before)->file == item.identity ? std::nullopt : findElsewhere(**before, item);
        if (elsewhere && !isBackupOf(elsewhere->path, item.path))
            return CatalogedDocument{identifier, drive_, elsewhere->path, elsewhere->identity};
        return CatalogedDocument{identifier, drive_, item.path, item.identity};
    }
    return CatalogedDocument{0, drive_, item.path, item.identity};
}

/// Whether the document of an unknown file's mark is another file.
Result<bool> DocumentIdentifiers::isCopy(const DocumentMark& mark, const Item& item)
{
    const auto original = catalog_.withIdentifier(mark.identifier);
    if (!original)
        return original.error();
    if (!*original)
        return false;
    return (*original)->drive != drive_ || isInItsPlace(**original) || findElsewhere(**original, item);
}

Result<std::optional<std::uint32_t>> DocumentIdentifiers::knownIdentifierOf(const FileIdentity& file)
{
    const auto document = catalog_.withFile(file);
    if (!document)
        return document.error();
    return *document ? std::optional((*document)->identifier) : std::nullopt;
}

Result<std::optional<DocumentIdentifiers::Location>> DocumentIdentifiers::locate(std::uint32_t identifier)
{
    scanOnce();
    auto document = catalog_.withIdentifier(identifier);
    if (!document)
        return document.error();
    if (!*document || (*document)->drive != drive_)
        return std::optional<Location>();
    const auto here = itemOf(**document);
    if (here && (here->identity == (*document)->file || identifierIs(identifier, here->url)))
        return std::optional(Location{here->url, here->file, true});
    auto moved = locateMoved(**document);
    if (!moved && here)
        moved = Location{here->url, here->file, false};
    return moved;
}

void DocumentIdentifiers::recognizeBeforeMove(const URL& url)
{
    const auto path = places_.pathInRoot(url);
    if (!path)
        return;
    const auto documents = catalog_.atPathOrBelow(drive_, *path);
    if (!documents)
        return;
    for (const auto& document : *documents)
        if (const auto item = itemOf(document); item && item->identity != document.file)
            static_cast<void>(identifierOf(item->url));
}

// Asked for its identifier, a file that replaced the document's takes it over.
bool DocumentIdentifiers::identifierIs(std::uint32_t identifier, const URL& url)
{
    const auto own = identifierOf(url);
    return own && *own == identifier;
}

std::optional<DocumentIdentifiers::Location> DocumentIdentifiers::locateMoved(const CatalogedDocument& document)
{
    const auto count = catalog_.changeCount();
    const auto sameFile = find(document.file);
    const auto found = sameFile ? sameFile : findMarked(document.identifier);
    if (!found || !count)
        return std::nullopt;
    const auto stored = storeMarked({document.identifier, drive_, found->path, found->identity}, *found, *count);
    const bool isStored = stored && *stored;
    return sameFile || isStored ? std::optional(Location{found->url, found->file, true}) : std::nullopt;
}

/// @returns none with errno set
std::optional<DocumentIdentifiers::Item> DocumentIdentifiers::itemAt(const URL& url) const
{
    if (isPlaceholderName(url.lastPathComponent()))
        return itemWithFile(url);
    auto path = places_.pathInRoot(url);
    auto file = url;
    auto identity = fileIdentity(file.path());
    if (!identity && errno == ENOENT) {
        file = placeholderURL(url);
        identity = fileIdentity(file.path());
    }
    const auto own = path ? places_.urlAt(*path) : std::nullopt;
    if (identity && own)
        return Item{*own, file, *identity, *std::move(path)};
    if (identity)
        errno = ENOENT;
    return std::nullopt;
}

/// @param file a document's own, or its placeholder
std::optional<DocumentIdentifiers::Item> DocumentIdentifiers::itemWithFile(const URL& file) const
{
    if (!isPlaceholderName(file.lastPathComponent()))
        return itemAt(file);
    const auto record = readPlaceholder(file);
    if (record)
        return itemAt(file.deletingLastPathComponent().appending(record->name));
    errno = ENOENT;
    return std::nullopt;
}

std::optional<DocumentIdentifiers::Item> DocumentIdentifiers::itemOf(const CatalogedDocument& document) const
{
    const auto url = document.drive == drive_ ? places_.urlAt(document.path) : std::nullopt;
    return url ? itemAt(*url) : std::nullopt;
}

bool DocumentIdentifiers::isInItsPlace(const CatalogedDocument& document) const
{
    const auto item = itemOf(document);
    return item && item->identity == document.file;
}

bool DocumentIdentifiers::isKnown(const FileIdentity& file)
{
    const auto document = catalog_.withFile(file);
    return !document || *document;
}

std::optional<DocumentIdentifiers::Item> DocumentIdentifiers::find(const FileIdentity& file) const
{
    return firstItem([&](const URL& candidate, std::uint64_t inode) {
        return inode == file.inode && fileIdentity(candidate.path()) == file;
    });
}

/// The document's file or, unless the item is that itself, the one that continues it.
std::optional<DocumentIdentifiers::Item> DocumentIdentifiers::findElsewhere(const CatalogedDocument& document,
                                                                            const Item& item) const
{
    if (auto same = find(document.file))
        return same;
    const auto isContinuation = [&](const URL& candidate, std::uint64_t inode) {
        const auto mark = readDocumentMark(candidate);
        return mark && *mark && (*mark)->identifier == document.identifier && (*mark)->file.inode == inode &&
               fileIdentity(candidate.path()) == (*mark)->file;
    };
    return isContinuation(item.file, item.identity.inode) ? std::nullopt : firstItem(isContinuation);
}

std::optional<DocumentIdentifiers::Item> DocumentIdentifiers::findMarked(std::uint32_t identifier)
{
    return firstItem([&](const URL& candidate, std::uint64_t) {
        const auto mark = readDocumentMark(candidate);
        if (!mark || !*mark || (*mark)->identifier != identifier)
            return false;
        const auto identity = fileIdentity(candidate.path());
        return identity && !isKnown(*identity);
    });
}

std::optional<DocumentIdentifiers::Item> DocumentIdentifiers::firstItem(
    const std::function<bool(const URL& file, std::uint64_t inode)>& isWanted) const
{
    std::optional<Item> found;
    for (const auto& place : places_.all())
        visitDeepNames(place.realDocumentsURL, [&](const URL& file, std::uint64_t inode) {
            if (!found && !isOutOfSight(file) && isWanted(file, inode))
                found = itemWithFile(file);
            return !found;
        });
    return found;
}

void DocumentIdentifiers::scanOnce()
{
    if (isScanned_)
        return;
    const auto isScanned = catalog_.isScanned(drive_);
    isScanned_ = isScanned && (*isScanned || !catalog_.addScanned(drive_, markedDocuments()));
}

/// In the order in which they are to be believed: files that bear their own mark, then those with a mark that came
/// along from elsewhere.
std::vector<CatalogedDocument> DocumentIdentifiers::markedDocuments() const
{
    std::vector<CatalogedDocument> own;
    std::vector<CatalogedDocument> foreign;
    static_cast<void>(firstItem([&](const URL& file, std::uint64_t) {
        const auto mark = readDocumentMark(file);
        const auto item = mark && *mark ? itemWithFile(file) : std::nullopt;
        if (item)
            (item->identity == (*mark)->file ? own : foreign)
                .push_back({(*mark)->identifier, drive_, item->path, item->identity});
        return false;
    }));
    const auto byPath = [](const auto& left, const auto& right) { return left.path < right.path; };
    std::sort(foreign.begin(), foreign.end(), byPath);
    own.insert(own.end(), foreign.begin(), foreign.end());
    return own;
}

} // namespace tessel
