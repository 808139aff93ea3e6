#pragma once

#include "platform/files/FileManager.h"

namespace tessel {

class UnfinishedWork;
struct ItemStamp;

/// The file manager on the kernel's own calls.
class PosixFileManager final : public FileManager {
public:
    /// @param unfinished remembers its changes; outlives the file manager
    explicit PosixFileManager(const UnfinishedWork& unfinished) : unfinished_(unfinished) {}

    Result<FileAttributes> attributes(const std::string& path) const override;
    Result<std::string> destinationOfSymbolicLink(const URL&) const override;
    /// A URL whose links lead in a circle comes back as it is.
    [[nodiscard]] URL resolvingSymbolicLinks(const URL&) const override;
    /// A target that is gone is a no-such-file error (4); one that is in the cloud only is there.
    Result<URL> resolvingAliasFile(const URL&) const override;
    [[nodiscard]] std::optional<FileKind> kindOfItem(const std::string& path) const override;
    [[nodiscard]] std::optional<Error> createDirectory(const URL&, WithIntermediates) override;
    [[nodiscard]] std::optional<Error> removeItem(const URL&, const std::optional<Date>& modified) override;
    [[nodiscard]] std::optional<Error> moveItem(const URL& from, const URL& to) override;
    [[nodiscard]] std::optional<Error> enumerateShallow(
        const URL& folder, const std::function<bool(const URL&, const FileAttributes&)>& visit) const override;
    void enumerateDeep(const URL& folder, const std::function<void(const URL&, const FileAttributes&)>& visit,
                       const std::function<OnEnumerationError(const URL&, const Error&)>& onError) const override;

    /// Told of each item before it moves, on the thread that moves it. Set before there are others.
    std::function<void(const URL&)> beforeMove;

private:
    [[nodiscard]] std::optional<Error> createWithParents(const URL&);
    [[nodiscard]] std::optional<Error> removeFileOfDate(const URL&, const ItemStamp&, const Date& modified);
    [[nodiscard]] std::optional<Error> removeFolder(const URL&);
    [[nodiscard]] std::optional<Error> moveToFreeName(const URL& from, const URL& to);
    [[nodiscard]] std::optional<Error> movePlaceholder(const URL& from, const URL& to);
    [[nodiscard]] std::optional<Error> moveEntry(const URL& from, const URL& to, const URL& named);

    const UnfinishedWork& unfinished_;
};

} // namespace tessel
