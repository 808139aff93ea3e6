#include "platform/documents/PreviewController.h"

#include "platform/base/Platform.h"
#include "platform/documents/DocumentIcon.h"
#include "platform/files/ResourceValues.h"
#include "platform/text/TextServices.h"
#include "platform/ui/ImageView.h"
#include "platform/ui/Label.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace tessel {

namespace {

constexpr Size kIconSize = {128, 128};
constexpr double kMargin = 16;
constexpr double kSpace = 8;
constexpr std::size_t kMostLines = 4;

/// Puts its subviews below one another, in the middle of the whole.
class Column final : public View {
public:
    void layoutSubviews() override
    {
        const auto width = std::max(0.0, bounds().width - 2 * kMargin);
        double height = -kSpace;
        for (const auto& subview : subviews())
            height += subview->sizeThatFits({width, 0}).height + kSpace;
        auto y = std::max(kMargin, (bounds().height - height) / 2);
        for (const auto& subview : subviews()) {
            const auto size = subview->sizeThatFits({width, 0});
            const auto shown = std::min(size.width, width);
            subview->setFrame({(bounds().width - shown) / 2, y, shown, size.height});
            y += size.height + kSpace;
        }
    }
};

template <typename T>
std::optional<T> valueOf(const ResourceValues::Values& values, ResourceKey key)
{
    const auto found = values.find(key);
    const auto* value = found == values.end() ? nullptr : found->second.get<T>();
    return value ? std::optional(*value) : std::nullopt;
}

/// Empty for what is gone.
ResourceValues::Values valuesOf(const URL& url)
{
    const ResourceKey keys[] = {ResourceKey::TypeIdentifier, ResourceKey::LocalizedTypeDescription,
                                ResourceKey::FileSize};
    auto values = platform::installed().resources.values(keys, url, ValueVariant::Promised);
    return values ? std::move(values.value()) : ResourceValues::Values();
}

std::string kindAndSize(const ResourceValues::Values& values)
{
    auto text = valueOf<std::string>(values, ResourceKey::LocalizedTypeDescription).value_or("");
    const auto size = valueOf<std::int64_t>(values, ResourceKey::FileSize);
    if (size && *size >= 0)
        text += (text.empty() ? "" : " · ") +
                platform::installed().text.byteCount(static_cast<std::uint64_t>(*size), ByteCountStyle::File);
    return text;
}

std::shared_ptr<Label> addedLabel(View& view, TextStyle style)
{
    auto label = std::make_shared<Label>();
    label->setFont(Font::preferred(style));
    label->setTextAlignment(TextAlignment::Center);
    label->setNumberOfLines(kMostLines);
    view.addSubview(label);
    return label;
}

} // namespace

std::shared_ptr<View> PreviewController::loadView()
{
    return std::make_shared<Column>();
}

void PreviewController::viewDidLoad()
{
    view().setBackgroundColor(Color::white());
    icon_ = std::make_shared<ImageView>();
    view().addSubview(icon_);
    name_ = addedLabel(view(), TextStyle::Headline);
    description_ = addedLabel(view(), TextStyle::Subheadline);
    description_->setTextColor(Color::gray(0.4));
    reloadData();
}

void PreviewController::viewWillAppear(Animated)
{
    isOnScreen_ = true;
}

void PreviewController::viewDidDisappear()
{
    isOnScreen_ = false;
}

void PreviewController::reloadData()
{
    const bool hasItem = dataSource && dataSource->numberOfPreviewItemsInPreviewController(*this) > 0;
    shown_ = hasItem ? std::optional(dataSource->previewControllerPreviewItemAtIndex(*this, 0)) : std::nullopt;
    refreshCurrentPreviewItem();
}

void PreviewController::refreshCurrentPreviewItem()
{
    if (!isViewLoaded())
        return;
    const auto values = shown_ ? valuesOf(*shown_) : ResourceValues::Values();
    const auto name = shown_ ? std::string(shown_->lastPathComponent()) : std::string();
    const auto type = valueOf<std::string>(values, ResourceKey::TypeIdentifier).value_or("");
    icon_->setImage(shown_ ? std::optional(documentIcon(name, type, kIconSize)) : std::nullopt);
    name_->setText(platform::installed().text.displayName(name));
    description_->setText(kindAndSize(values));
    view().setNeedsLayout();
}

} // namespace tessel
