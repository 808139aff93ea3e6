#pragma once

#include "platform/files/FileCoordinationService.h"
#include "platform/files/FileManager.h"

#include <functional>
#include <utility>

namespace tessel {

using IntentToDelete = std::function<void(const URL&)>;

/// The coordination, which says of every document that is to be deleted so before it is waited for: what it holds then
/// is what the user saw, and what the deletion must leave alone if it is something else in the end.
class WatchedCoordination final : public FileCoordinationService {
public:
    WatchedCoordination(FileCoordinationService& inner, IntentToDelete intends)
        : inner_(inner), intends_(std::move(intends))
    {
    }

    [[nodiscard]] std::optional<Error> read(const URL& url, const FileCoordinator::Progress& progress,
                                            const FilePresenter* asker, const Access& access) override
    {
        return inner_.read(url, progress, asker, access);
    }
    [[nodiscard]] std::optional<Error> write(std::span<const WriteIntent> intents, const FilePresenter* asker,
                                             const Access& access) override
    {
        for (const auto& intent : intents)
            if (intent.options == WritingOptions::ForDeleting)
                intends_(intent.url);
        return inner_.write(intents, asker, access);
    }

    void itemWillMove(const URL& from, const URL& to) override { inner_.itemWillMove(from, to); }
    void itemDidMove(const URL& from, const URL& to, const FilePresenter* asker) override
    {
        inner_.itemDidMove(from, to, asker);
    }
    void addPresenter(FilePresenter& presenter) override { inner_.addPresenter(presenter); }
    void removePresenter(const FilePresenter& presenter) override { inner_.removePresenter(presenter); }

private:
    FileCoordinationService& inner_;
    const IntentToDelete intends_;
};

/// The file manager, which says the same of a folder when its turn has come: then it holds what is deleted with it.
class WatchedFileManager final : public FileManager {
public:
    WatchedFileManager(FileManager& inner, IntentToDelete intends) : inner_(inner), intends_(std::move(intends)) {}

    Result<FileAttributes> attributes(const std::string& path) const override { return inner_.attributes(path); }
    Result<std::string> destinationOfSymbolicLink(const URL& url) const override
    {
        return inner_.destinationOfSymbolicLink(url);
    }
    [[nodiscard]] URL resolvingSymbolicLinks(const URL& url) const override
    {
        return inner_.resolvingSymbolicLinks(url);
    }
    Result<URL> resolvingAliasFile(const URL& url) const override { return inner_.resolvingAliasFile(url); }
    [[nodiscard]] std::optional<FileKind> kindOfItem(const std::string& path) const override
    {
        return inner_.kindOfItem(path);
    }
    [[nodiscard]] std::optional<Error> createDirectory(const URL& url, WithIntermediates intermediates) override
    {
        return inner_.createDirectory(url, intermediates);
    }
    [[nodiscard]] std::optional<Error> removeItem(const URL& url, const std::optional<Date>& modified) override
    {
        if (kindOfItem(url.path()) == FileKind::Directory)
            intends_(url);
        return inner_.removeItem(url, modified);
    }
    [[nodiscard]] std::optional<Error> moveItem(const URL& from, const URL& to) override
    {
        return inner_.moveItem(from, to);
    }
    [[nodiscard]] std::optional<Error> enumerateShallow(
        const URL& folder, const std::function<bool(const URL&, const FileAttributes&)>& visit) const override
    {
        return inner_.enumerateShallow(folder, visit);
    }
    void enumerateDeep(const URL& folder, const std::function<void(const URL&, const FileAttributes&)>& visit,
                       const std::function<OnEnumerationError(const URL&, const Error&)>& onError) const override
    {
        inner_.enumerateDeep(folder, visit, onError);
    }

private:
    FileManager& inner_;
    const IntentToDelete intends_;
};

} // namespace tessel
