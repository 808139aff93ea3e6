#include "platform/linux/instance/RequestText.h"

#include "platform/base/KeyedArchive.h"

namespace tessel {

namespace {

constexpr const char* kURLs = "urls";
constexpr const char* kToken = "token";
constexpr const char* kShortcut = "shortcut";
constexpr const char* kShortcutInfo = "shortcutInfo";

template <typename T>
const T* find(const Value::Dictionary& dictionary, const char* key)
{
    const auto found = dictionary.find(key);
    return found == dictionary.end() ? nullptr : found->second.get<T>();
}

} // namespace

std::string textOf(const OutsideRequest& request)
{
    Value::Array urls;
    for (const auto& url : request.urls)
        urls.emplace_back(url);
    Value::Dictionary dictionary = {{kURLs, urls}, {kToken, request.activationToken}};
    if (request.shortcut) {
        dictionary[kShortcut] = request.shortcut->type;
        dictionary[kShortcutInfo] = request.shortcut->userInfo;
    }
    return keyedArchive::archived(dictionary);
}

std::optional<OutsideRequest> requestIn(std::string_view text)
{
    const auto archive = keyedArchive::unarchived(text);
    const auto* dictionary = archive ? archive->get<Value::Dictionary>() : nullptr;
    const auto* urls = dictionary ? find<Value::Array>(*dictionary, kURLs) : nullptr;
    const auto* token = dictionary ? find<std::string>(*dictionary, kToken) : nullptr;
    if (!urls || !token)
        return std::nullopt;
    OutsideRequest request;
    request.activationToken = *token;
    for (const auto& element : *urls) {
        const auto* url = element.get<std::string>();
        if (!url)
            return std::nullopt;
        request.urls.push_back(*url);
    }
    if (const auto* type = find<std::string>(*dictionary, kShortcut)) {
        const auto* info = find<Value::Dictionary>(*dictionary, kShortcutInfo);
        request.shortcut = ShortcutItem{*type, info ? *info : Value::Dictionary()};
    }
    return request;
}

} // namespace tessel
