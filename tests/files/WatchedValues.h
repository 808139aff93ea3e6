#pragma once

#include "platform/files/ResourceValues.h"

namespace tessel {

/// Resource values of real items, which a test counts or makes fail.
class WatchedValues final : public ResourceValues {
public:
    explicit WatchedValues(ResourceValues& inner) : inner_(inner) {}

    std::optional<Error> promisedError; ///< instead of every promised value
    Values added;                       ///< given with every answer for their keys
    bool reachable = true;
    int openAccesses = 0;
    mutable int reads = 0;

    Result<Values> values(std::span<const ResourceKey> keys, const URL& url, ValueVariant variant) const override
    {
        ++reads;
        if (promisedError && variant == ValueVariant::Promised)
            return *promisedError;
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
    [[nodiscard]] std::optional<URL> logicalURLOfPromise(const URL& url) const override
    {
        return inner_.logicalURLOfPromise(url);
    }
    [[nodiscard]] bool startAccessingSecurityScopedResource(const URL&) override { return ++openAccesses > 0; }
    void stopAccessingSecurityScopedResource(const URL&) override { --openAccesses; }

private:
    ResourceValues& inner_;
};

} // namespace tessel
