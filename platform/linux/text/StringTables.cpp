#include "platform/linux/text/StringTables.h"

#include "platform/linux/text/PseudoTexts.h"

#include <nlohmann/json.hpp>

namespace tessel {

namespace {

template <typename Map>
auto* find(const Map& map, std::string_view key)
{
    const auto found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
}

} // namespace

StringTable::StringTable(std::string_view language, std::string_view json) : language_(language)
{
    const auto content = nlohmann::json::parse(json, nullptr, false);
    if (!content.is_object())
        return;
    for (const auto& [key, value] : content.items()) {
        if (value.is_string())
            texts_.emplace(key, value.get<std::string>());
        else if (value.is_object())
            for (const auto& [form, text] : value.items())
                if (text.is_string())
                    countedTexts_[key].emplace(form, text.get<std::string>());
    }
}

const std::string* StringTable::text(std::string_view key) const
{
    return find(texts_, key);
}

const std::string* StringTable::text(std::string_view key, double count) const
{
    const auto* forms = find(countedTexts_, key);
    if (!forms)
        return text(key);
    const auto* text = find(*forms, pluralForm(count));
    return text ? text : find(*forms, "other");
}

std::string StringTable::pluralForm(double count) const
{
    std::call_once(opened_, [this] {
        UErrorCode status = U_ZERO_ERROR;
        rules_.reset(icu::PluralRules::forLocale(icu::Locale(language_.c_str()), status));
    });
    std::string form = "other";
    if (rules_) {
        form.clear();
        rules_->select(count).toUTF8String(form);
    }
    return form;
}

std::string StringTables::text(std::string_view key) const
{
    for (const auto& table : chain())
        if (const auto* text = table->text(key))
            return shown(*text);
    return shown(key);
}

std::string StringTables::text(std::string_view key, double count) const
{
    for (const auto& table : chain())
        if (const auto* text = table->text(key, count))
            return shown(*text);
    return shown(key);
}

std::string StringTables::shown(std::string_view text) const
{
    return locale_ == kPseudoLocale ? pseudoText(text) : std::string(text);
}

const std::vector<std::unique_ptr<const StringTable>>& StringTables::chain() const
{
    std::call_once(opened_, [this] {
        const auto locale = std::string_view(locale_);
        std::vector<std::string_view> languages = {locale, locale.substr(0, locale.find('_')), "en"};
        languages.erase(std::unique(languages.begin(), languages.end()), languages.end());
        for (const auto language : languages)
            if (const auto* json = find(tables_, language))
                chain_.push_back(std::make_unique<StringTable>(language, *json));
    });
    return chain_;
}

} // namespace tessel
