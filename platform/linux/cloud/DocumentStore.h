#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"
#include "platform/files/FileCoordinator.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/NewFile.h"

#include <functional>
#include <optional>
#include <string>

namespace tessel {

class TextServices;
class TypeRegistry;
class UnfinishedWork;

/// The attribute by which a downloaded document remembers what the store calls its content.
inline constexpr const char* kContentAttribute = "user.tesseldrive.content";

/// Whether a text may name a content. It comes from files that anybody may have written.
[[nodiscard]] bool isContentIdentifier(const std::string&);

/// The folder of a home that holds the content of documents which are not on the device, one file each, named by the
/// identifier in the document's placeholder. What is there is never changed: other content has another name. It stays
/// when a document is downloaded, so that an unchanged one goes back at no cost, and when one is deleted.
///
/// Safe from any thread. The caller coordinates what changes the drive (`install`, `evict`).
class DocumentStore {
public:
    /// The services outlive the store.
    DocumentStore(URL folder, const TextServices& text, const TypeRegistry& types, const UnfinishedWork& unfinished)
        : folder_(std::move(folder)), text_(text), types_(types), unfinished_(unfinished)
    {
    }

    /// A document's content on its way to the device.
    struct Content {
        PlaceholderRecord record;
        NewFile file;
    };

    /// @returns an error when that cannot be found out now
    Result<bool> isInCloudOnly(const URL& document) const;

    /// Gets the content of a document, which is not touched.
    /// @param progress may be empty
    /// @returns an error when the store has no such content (4) or it is not the document's (259), or the
    /// user-cancelled
    ///          error (3072)
    Result<Content> fetch(const URL& document, const FileCoordinator::Progress& progress) const;
    /// Puts the content in the place of the placeholder that it was fetched for; drops it when the document is there
    /// already, and when another placeholder is: then the document is still in the cloud.
    [[nodiscard]] std::optional<Error> install(Content&, const URL& document) const;

    /// Stores the content of a document and puts a placeholder in its place. One that is in the cloud only is left
    /// alone. Folders, packages and links cannot be sent (3328); a document that is open somewhere or changes meanwhile
    /// stays (EBUSY), as does one after any other error.
    [[nodiscard]] std::optional<Error> evict(const URL& document) const;

private:
    Result<std::string> storedIdentifierOf(int document, const URL&) const;
    [[nodiscard]] bool hasContent(const std::string& identifier, int document) const;
    [[nodiscard]] std::optional<Error> store(const std::string& identifier, int document, const URL&) const;
    [[nodiscard]] std::optional<Error> replaceByPlaceholder(const URL& document, int file, const ItemStamp&,
                                                            std::string identifier,
                                                            const std::function<bool()>& isUntouched) const;
    [[nodiscard]] std::optional<Error> removeIfUnchanged(const URL& document, const ItemStamp&,
                                                         const std::function<bool()>& isUntouched) const;
    [[nodiscard]] Error error(int code, const char* key, const URL& document) const;

    const URL folder_;
    const TextServices& text_;
    const TypeRegistry& types_;
    const UnfinishedWork& unfinished_;
};

} // namespace tessel
