#include "platform/ui/Image.h"

#include <utility>

namespace tessel {

namespace {

constexpr Size kSymbolSize = {24, 24};

} // namespace

Image Image::symbol(std::string name)
{
    return {Kind::Symbol, std::move(name), std::nullopt, nullptr, kSymbolSize};
}

Image Image::icon(std::string names, const Size& size)
{
    return {Kind::Icon, std::move(names), std::nullopt, nullptr, size};
}

Image Image::file(const URL& url, const Size& size)
{
    return {Kind::File, {}, url, nullptr, size};
}

Image Image::drawn(std::shared_ptr<const DisplayList> drawing, const Size& size)
{
    return {Kind::Drawn, {}, std::nullopt, std::move(drawing), size};
}

} // namespace tessel
