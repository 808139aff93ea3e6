#include "platform/console/PreviewScreen.h"

#include "platform/base/Platform.h"
#include "platform/console/ScreenControls.h"
#include "platform/documents/PreviewController.h"
#include "platform/documents/TextContent.h"
#include "platform/text/FilledText.h"
#include "platform/text/TextServices.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr std::size_t kMostTextLines = 40;

std::string counted(std::string_view key, std::uint64_t count)
{
    return platform::installed().text.localizedCount(key, static_cast<std::int64_t>(count));
}

std::string pixels(const Size& size)
{
    return std::to_string(static_cast<int>(size.width)) + " × " + std::to_string(static_cast<int>(size.height));
}

/// The page at the top is told once it is not the first.
std::vector<std::string> pageParts(int count, double place)
{
    std::vector<std::string> parts = {"pdf", counted(".DICT.PAGES.%d", static_cast<std::uint64_t>(count))};
    const auto page = static_cast<int>(std::min<double>(place, std::max(0, count - 1))) + 1;
    if (page > 1)
        parts.push_back(localizedFilledText("Page %@ of %@", {std::to_string(page), std::to_string(count)}));
    return parts;
}

/// What kind of content is shown, and how much of it.
std::vector<std::string> contentParts(const PreviewController& preview)
{
    const auto& [facts, text] = preview.content();
    switch (facts.kind) {
    case ContentKind::Text: {
        const auto lines = text ? text->lineCount() : std::nullopt;
        return {"text", lines ? counted(".DICT.LINES.%d", *lines) : ""};
    }
    case ContentKind::Image:
        return {"image", pixels(facts.size)};
    case ContentKind::Pages:
        return pageParts(facts.count, preview.place());
    default:
        return {preview.detail()};
    }
}

void addTextLines(Screen& screen, const TextContent& text)
{
    const auto& rows = text.firstRows();
    for (std::size_t row = 0; row < std::min(rows.size(), kMostTextLines); ++row)
        screen.push_back({"text", {rows[row]}, {}, {}, {}});
}

} // namespace

void addPreview(Screen& screen, const PreviewController& preview)
{
    const bool isShown = preview.state() == PreviewState::Shown;
    std::vector<std::string> parts = {preview.name()};
    for (auto& part : isShown ? contentParts(preview) : std::vector{preview.detail()})
        parts.push_back(std::move(part));
    std::ranges::replace(parts.back(), '\n', ' ');
    addLine(screen, "preview", std::move(parts));
    if (isShown && preview.content().text)
        addTextLines(screen, *preview.content().text);
}

void addPreviewState(Screen& screen, const std::shared_ptr<PreviewController>& preview)
{
    addButton(screen, preview->buttonTitle(), [preview] { preview->pressButton(); });
    if (preview->state() == PreviewState::Looking || preview->state() == PreviewState::Downloading)
        addLine(screen, "loading", {preview->name()});
}

} // namespace tessel
