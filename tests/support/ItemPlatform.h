#pragma once

#include "platform/files/TypeRegistry.h"
#include "platform/linux/files/LinuxResourceValues.h"
#include "platform/linux/files/PosixFileManager.h"
#include "platform/text/TextServices.h"
#include "tests/support/FakeCloud.h"
#include "tests/support/LogCapture.h"
#include "tests/support/LoggingPlatform.h"

#include <algorithm>
#include <cctype>

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

/// Texts of no language, short enough to compare.
class BareText final : public TextServices {
public:
    [[nodiscard]] std::string localized(std::string_view key) const override { return std::string(key); }
    [[nodiscard]] std::string localizedCount(std::string_view key, std::int64_t count) const override
    {
        return std::string(key) + std::to_string(count);
    }
    [[nodiscard]] std::string byteCount(std::uint64_t bytes, ByteCountStyle) const override
    {
        return std::to_string(bytes) + " bytes";
    }
    [[nodiscard]] std::string dateAndTime(Date date, DateStyle) const override { return describe(date); }
    [[nodiscard]] std::string displayName(std::string_view name) const override { return std::string(name); }
    [[nodiscard]] std::strong_ordering compareNames(std::string_view left, std::string_view right) const override
    {
        return left <=> right;
    }
    [[nodiscard]] std::vector<std::uint32_t> orderOfNames(std::span<const std::string_view>) const override
    {
        return {};
    }
    [[nodiscard]] std::vector<std::uint32_t> firstOfNames(std::span<const std::string_view>, std::size_t) const override
    {
        return {};
    }
    [[nodiscard]] std::string searchFolded(std::string_view text) const override { return std::string(text); }
    [[nodiscard]] bool equalIgnoringCase(std::string_view left, std::string_view right) const override
    {
        return std::ranges::equal(left, right, {}, ::tolower, ::tolower);
    }
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
    BareText text;
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
