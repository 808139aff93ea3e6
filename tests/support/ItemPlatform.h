#pragma once

#include "platform/files/TypeRegistry.h"
#include "platform/linux/files/LinuxResourceValues.h"
#include "platform/linux/files/PosixFileManager.h"
#include "platform/linux/text/EmbeddedStringTables.h"
#include "platform/linux/text/IcuTextServices.h"
#include "tests/support/FakeCloud.h"
#include "tests/support/LogCapture.h"
#include "tests/support/LoggingPlatform.h"

#include <algorithm>

namespace tessel {

/// Types of which a test knows all: text files and decks, which are packages.
class FewTypes final : public TypeRegistry {
public:
    [[nodiscard]] std::optional<std::string> identifierForExtension(std::string_view extension) const override
    {
        if (extension == "txt")
            return "public.plain-text";
        return extension == "deck" ? std::optional<std::string>("example.deck") : std::nullopt;
    }
    [[nodiscard]] std::string identifierForFileName(std::string_view name) const override
    {
        return identifierForExtension(name.substr(std::min(name.rfind('.'), name.size() - 1) + 1))
            .value_or(std::string(TypeIdentifier::kData));
    }
    [[nodiscard]] bool conforms(std::string_view identifier, std::string_view ancestor) const override
    {
        return identifier == ancestor || (identifier == "example.deck" && ancestor == TypeIdentifier::kPackage);
    }
    [[nodiscard]] std::optional<std::string> description(std::string_view identifier) const override
    {
        if (identifier == TypeIdentifier::kAliasFile)
            return "aLIAS";
        return "kind of " + std::string(identifier);
    }
    [[nodiscard]] bool isPackageName(std::string_view name) const override { return name.ends_with(".deck"); }
};

/// Resource values of real items, which a test counts or makes fail.
class WatchedValues final : public ResourceValues {
public:
    explicit WatchedValues(ResourceValues& inner) : inner_(inner) {}

    std::optional<Error> promisedError, plainError;
    Values added; ///< given with every answer for their keys
    bool reachable = true;
    mutable int reads = 0;

    Result<Values> values(std::span<const ResourceKey> keys, const URL& url, ValueVariant variant) const override
    {
        ++reads;
        if (const auto& error = variant == ValueVariant::Promised ? promisedError : plainError)
            return *error;
        auto result = inner_.values(keys, url, variant);
        for (const auto key : keys)
            if (const auto extra = added.find(key); result && extra != added.end())
                result.value().insert_or_assign(key, extra->second);
        return result;
    }
    [[nodiscard]] bool promisedItemIsReachable(const URL& url) const override
    {
        return reachable && inner_.promisedItemIsReachable(url);
    }
    [[nodiscard]] URL physicalURLOfPromisedItem(const URL& url) const override
    {
        return inner_.physicalURLOfPromisedItem(url);
    }
    [[nodiscard]] bool startAccessingSecurityScopedResource(const URL&) override { return ++openAccesses > 0; }
    void stopAccessingSecurityScopedResource(const URL&) override { --openAccesses; }

    int openAccesses = 0;

private:
    ResourceValues& inner_;
};

/// Installs a platform for items over real files.
class ItemPlatform {
public:
    ItemPlatform() { base_.log.addSink(log); }

    [[nodiscard]] ManualClock& clock() { return base_.clock; }

private:
    LoggingPlatform base_;
    LinuxResourceValues values_ = LinuxResourceValues(files, types);

public:
    std::shared_ptr<LogCapture> log = std::make_shared<LogCapture>();
    PosixFileManager files;
    FewTypes types;
    IcuTextServices text = IcuTextServices("en", embeddedStringTables());
    FakeCloud cloud;
    WatchedValues resources = WatchedValues(values_);

private:
    platform::Scope scope_ = platform::Scope({
        .clock = base_.clock,
        .mainQueue = base_.mainQueue,
        .notifications = base_.notifications,
        .log = base_.log,
        .text = text,
        .types = types,
        .files = files,
        .resources = resources,
        .folders = platform::installed().folders,
        .cloud = cloud,
        .defaults = platform::installed().defaults,
        .device = platform::installed().device,
    });
};

} // namespace tessel
