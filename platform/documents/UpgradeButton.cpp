#include "platform/documents/UpgradeButton.h"

#include "platform/apps/ApplicationRegistry.h"
#include "platform/base/Platform.h"
#include "platform/log/UnifiedLog.h"
#include "platform/text/TextServices.h"

namespace tessel {

bool performAction(const OfferLink& link)
{
    if (link.action == OfferLink::kUpgradeFlow || link.url.empty())
        return false;
    const auto error = platform::installed().apps.openLink(link.url);
    if (error)
        platform::installed().log.write(LogLevel::Error, "Cannot open %@: %@", link.url, *error);
    return !error;
}

std::shared_ptr<UpgradeButton> UpgradeButton::create()
{
    auto button = std::make_shared<UpgradeButton>();
    button->setTitle(platform::installed().text.localized("Upgrade Storage"));
    button->setTitleFont(Font::preferred(TextStyle::Footnote));
    return button;
}

} // namespace tessel
