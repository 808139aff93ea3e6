#pragma once

#include "platform/cloud/CloudService.h"

#include <map>

namespace tessel {

/// A cloud whose containers and tags a test writes down.
class FakeCloud final : public CloudService {
public:
    std::vector<std::shared_ptr<const CloudContainer>> containers;
    std::map<URL, std::vector<std::string>> tags;

    [[nodiscard]] std::optional<Data> identityToken() const override { return std::nullopt; }
    [[nodiscard]] std::optional<Error> signIn(const std::string&) override { return std::nullopt; }
    [[nodiscard]] std::optional<Error> signOut() override { return std::nullopt; }
    [[nodiscard]] std::shared_ptr<const CloudContainer> defaultContainer() const override { return nullptr; }
    [[nodiscard]] std::vector<std::shared_ptr<const CloudContainer>> libraries() const override { return containers; }
    [[nodiscard]] std::shared_ptr<const CloudContainer> containerForURL(const URL& url) const override
    {
        for (const auto& container : containers)
            if (container->documentsURL.contains(url))
                return container;
        return nullptr;
    }
    [[nodiscard]] bool isContainerTopFolder(const URL& url) const override
    {
        const auto container = containerForURL(url);
        return container && container->documentsURL == url;
    }
    [[nodiscard]] bool isInDrive(const URL&) const override { return true; }
    [[nodiscard]] bool isInTrash(const URL&) const override { return false; }
    Result<std::vector<std::string>> tagNames(const URL& url) const override
    {
        const auto found = tags.find(url);
        return found == tags.end() ? std::vector<std::string>() : found->second;
    }
};

} // namespace tessel
