#pragma once

#include "platform/base/Error.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/UnfinishedWork.h"

#include <optional>

namespace tessel {

/// A file that gets its name once it is whole. Until then it has none, so that nothing is left of it when the program
/// is killed; on a file system that has no files without a name, it has a hidden one. Destroying it drops a file that
/// has not been published.
class NewFile {
public:
    /// @param place where it will be
    /// @param named the item that the error names
    static Result<NewFile> create(const URL& place, const URL& named, const UnfinishedWork&);

    NewFile(NewFile&& other) noexcept
        : place_(other.place_), unfinished_(other.unfinished_), hidden_(std::exchange(other.hidden_, {})),
          note_(std::move(other.note_)), file_(std::move(other.file_))
    {
    }
    NewFile& operator=(NewFile&&) = delete;
    ~NewFile();

    /// Open for reading and writing.
    [[nodiscard]] int descriptor() const { return file_.get(); }

    /// Gives it its place, unless something is there (EEXIST).
    /// @returns false with errno set when it has no place
    [[nodiscard]] bool publish();
    /// Puts it in the place of what is there.
    [[nodiscard]] bool replace();

private:
    NewFile(URL place, const UnfinishedWork& unfinished, std::optional<URL> hidden, UnfinishedWork::Note note,
            FileDescriptor file)
        : place_(std::move(place)), unfinished_(unfinished), hidden_(std::move(hidden)), note_(std::move(note)),
          file_(std::move(file))
    {
    }

    [[nodiscard]] bool giveName(const URL&) const;

    const URL place_;
    const UnfinishedWork& unfinished_;
    std::optional<URL> hidden_;
    UnfinishedWork::Note note_;
    FileDescriptor file_;
};

} // namespace tessel
