#include "files/FileTags.h"

#include "app/common/Log.h"
#include "files/TesselDriveApp_FileTagColors.h"
#include "platform/base/NotificationCenter.h"
#include "platform/cloud/KeyValueStore.h"

#include <cstdint>
#include <memory>
#include <utility>

namespace tessel {

namespace {

constexpr const char* kDictionaryKey = "TrovelTagDict";
constexpr std::uint64_t kVersion = 2;
constexpr double kLargestNumber = 1e15; // larger ones are no numbers of anything

/// What is known of the tags, for as long as the platform stands under which it was read.
struct State {
    FileTags::Colors colors;
    std::vector<std::string> tags;
    NotificationCenter::Observation observation;
};

State& state()
{
    static State state;
    return state;
}

std::uint64_t unsignedNumber(const Value::Dictionary& dictionary, const char* key)
{
    const auto found = dictionary.find(key);
    if (found == dictionary.end())
        return 0;
    if (const auto* real = found->second.get<double>()) // somebody wrote 2.0
        return *real >= 1 && *real < kLargestNumber ? static_cast<std::uint64_t>(*real) : 0;
    const auto* number = found->second.get<std::int64_t>();
    return number ? static_cast<std::uint64_t>(*number) : 0;
}

template <typename T>
T valueOf(const Value::Dictionary& dictionary, const char* key)
{
    const auto found = dictionary.find(key);
    const auto* value = found == dictionary.end() ? nullptr : found->second.get<T>();
    return value ? *value : T();
}

/// Empty when the store has none that can be used.
Value::Dictionary storedDictionary()
{
    TSD_FUNCTION("+[FileTags _tagColorsDidChange]");
    const auto stored = platform::installed().keyValues.value(kDictionaryKey);
    const auto* dictionary = stored.get<Value::Dictionary>();
    if (!dictionary)
        return {};
    const auto version = unsignedNumber(*dictionary, "TrovelTagDictVersion");
    if (version == kVersion)
        return *dictionary;
    TSD_DEBUG("Trovel tag dictionary has incorrect version (%u, should be 2)", version);
    return {};
}

} // namespace

FileTags::Colors FileTags::tagColorsByTag()
{
    auto& observation = state().observation;
    if (!observation.stands()) {
        observation =
            platform::installed().notifications.observe(kKeyValueStoreChangedNotification, _tagColorsDidChange);
        _tagColorsDidChange();
    }
    return state().colors;
}

std::vector<std::string> FileTags::allTags()
{
    (void)tagColorsByTag();
    return state().tags;
}

const std::array<Color, 8>& FileTags::_tagBlipColors()
{
    static constexpr std::array<Color, 8> kColors = {Color::gray(0.8),      Color::systemGray(),  Color::systemGreen(),
                                                     Color::systemPurple(), Color::systemBlue(),  Color::systemYellow(),
                                                     Color::systemRed(),    Color::systemOrange()};
    return kColors;
}

void FileTags::_tagColorsDidChange()
{
    TSD_FUNCTION("+[FileTags _tagColorsDidChange]");
    const auto dictionary = storedDictionary();
    if (dictionary.empty())
        TSD_WARNING("Trovel tag dictionary is empty");
    Colors colors;
    std::vector<std::string> tags;
    for (const auto& entry : valueOf<Value::Array>(dictionary, "TrovelTags")) {
        const auto* tag = entry.get<Value::Dictionary>();
        const auto name = tag ? valueOf<std::string>(*tag, "n") : std::string();
        if (name.empty())
            continue;
        const auto number = unsignedNumber(*tag, "l");
        tags.push_back(name);
        colors[name] = _tagBlipColors()[number < _tagBlipColors().size() ? number : 0];
    }
    state().tags = std::move(tags);
    state().colors = std::move(colors);
}

std::optional<Image> FileTags::blipWithTag(const std::optional<std::string>& tag, const Size& imageSize,
                                           double blipHeight, const Point& offset)
{
    if (!tag)
        return std::nullopt;
    const auto colors = tagColorsByTag();
    const auto drawing = std::make_shared<DisplayList>();
    if (const auto color = colors.find(*tag); color != colors.end()) {
        const Rect circle = {offset.x + 1, offset.y + 1, blipHeight - 2, blipHeight - 2};
        drawing->setFillColor(color->second);
        drawing->fillOval(circle);
        drawing->setStrokeColor(tsd_colorBlendedWithColor(color->second, Color::gray(1, 0.5)));
        drawing->setLineWidth(1);
        drawing->strokeOval(circle);
    }
    return Image::drawn(drawing, imageSize);
}

} // namespace tessel
