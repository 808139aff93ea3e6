#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"
#include "platform/base/Value.h"
#include "platform/cloud/CloudContainer.h"
#include "platform/files/ResourceValues.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// The one place where the program changes the drive: creates, removes and moves items, each inside coordinated file
/// access, so that the sync service and other programs see every change and never a half-done one. Beside it, the
/// questions about single files that several places share.
///
/// Everything is synchronous and runs on the calling thread. What changes items returns the error that stopped it; a
/// coordinator's error comes before the file system's.
class FileUtils {
public:
    FileUtils() = delete;

    /// Creates a folder and any missing parents; a folder that is there already is no error.
    [[nodiscard]] static std::optional<Error> mkdir(const URL&);

    /// Deletes an item unless it changes while the deletion waits for its turn.
    /// @returns error 3072 (user cancelled) when the content modification date, read before and inside the coordinated
    ///          access, differs or cannot be read; the item then stays
    [[nodiscard]] static std::optional<Error> remove(const URL&);

    /// Moves or renames an item; never replaces one. Equal paths change nothing. A source without a file is moved all
    /// the same: it may be a document that is not on the device.
    /// @returns error 3328 (unsupported), before anything is touched, for a file onto a folder or a folder onto a file;
    ///          516 when an item of the destination's name is there
    [[nodiscard]] static std::optional<Error> move(const URL&, const URL& to);

    /// Gives up the copy of a document that is on the device; the document stays in the cloud.
    /// @returns whether it is not on the device any more; why it is, is logged
    [[nodiscard]] static bool evictDocument(const URL&);

    /// Whether something is at the URL's path; a document that is not on the device is not.
    [[nodiscard]] static bool exists(const URL&);
    /// Whether it is there and no folder.
    [[nodiscard]] static bool isFile(const URL&);
    [[nodiscard]] static bool isDir(const URL&);

    /// The promised value or, when there is none, the plain one; a none value when neither can be had. Never downloads.
    [[nodiscard]] static Value getResourceValue(ResourceKey, const std::optional<URL>& forURL);
    /// For a debugger to stop in: does nothing.
    static void dumpURLResourceValues(const URL&) {}
    /// Logs the dates and the size of a file, or why they cannot be had.
    static void logFileAttributes(const std::string& path);

    /// Whether an item may have this name: not empty, no dot in front, none of "/" and ":", and no character that is
    /// unassigned, a control, a format character or a line's end. How long it is, the file system decides.
    [[nodiscard]] static bool isValidFilename(std::string_view name);

    /// The type of documents with the URL's extension; none without an extension, or for an unknown one.
    [[nodiscard]] static std::optional<std::string> fileUTI(const URL&);
    /// Whether it is a picture, a film, a sound or a PDF file, by its extension.
    [[nodiscard]] static bool isAudioVideoImageFile(const URL&);
    /// Whether a document of the URL's extension may live in the container that holds the URL.
    [[nodiscard]] static bool isValidExtensionForContainer(const URL&);

    /// What stands between the folders of a location.
    [[nodiscard]] static std::string pathBarArrowCharacter(bool rightToLeft);
    /// Where an item lies, for people: the drive, the app library if it is in one, and the folders down to the item,
    /// which is not named itself. None for what is in no container.
    [[nodiscard]] static std::optional<std::string> displayableLocationForURL(const URL&);
    /// Splits a URL into its container and the localized names from the container's documents folder, which is not
    /// among them, down to the item.
    /// @param container may be null; not set when there is none, which is no error
    /// @param relativePathComponents may be null; not set for the documents folder itself
    /// @returns error 2048 (formatting) for what lies in a container but not below its documents folder
    [[nodiscard]] static std::optional<Error> containerAndRelativePathforURL(
        const URL&, std::shared_ptr<const CloudContainer>* container, std::vector<std::string>* relativePathComponents);
};

} // namespace tessel
