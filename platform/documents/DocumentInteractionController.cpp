#include "platform/documents/DocumentInteractionController.h"

#include "platform/apps/DocumentRecord.h"
#include "platform/base/Platform.h"
#include "platform/files/FileManager.h"
#include "platform/log/UnifiedLog.h"
#include "platform/text/FilledText.h"
#include "platform/text/TextServices.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/Device.h"
#include "platform/ui/OutsideRequest.h"
#include "platform/ui/Window.h"

#include <functional>
#include <utility>

namespace tessel {

namespace {

void addAction(AlertController& sheet, std::string title, std::function<void()> action)
{
    sheet.addAction(
        std::make_shared<AlertAction>(std::move(title), AlertAction::Style::Default,
                                      [action = std::move(action)](const std::shared_ptr<AlertAction>&) { action(); }));
}

} // namespace

std::shared_ptr<ViewController> DocumentInteractionController::uppermostController()
{
    const auto window = platform::installed().device.keyWindow();
    auto controller = window ? window->rootViewController() : nullptr;
    while (controller && controller->presentedViewController())
        controller = controller->presentedViewController();
    return controller;
}

void DocumentInteractionController::openInPlace(const ApplicationRecord& application) const
{
    const auto& services = platform::installed();
    if (const auto error = services.apps.openDocument(document_, application))
        services.log.write(LogLevel::Error, "Cannot open %@ in %@: %@", document_, application, *error);
}

void DocumentInteractionController::presentOptionsMenu(const Rect& fromRect, const std::shared_ptr<View>& inView,
                                                       Animated animated) const
{
    PopoverAnchor anchor;
    anchor.sourceView = inView;
    anchor.sourceRect = fromRect;
    present(std::move(anchor), animated);
}

void DocumentInteractionController::presentOptionsMenu(const std::shared_ptr<BarButtonItem>& fromItem,
                                                       Animated animated) const
{
    PopoverAnchor anchor;
    anchor.barButtonItem = fromItem;
    present(std::move(anchor), animated);
}

void DocumentInteractionController::present(PopoverAnchor anchor, Animated animated) const
{
    const auto presenter = uppermostController();
    if (!presenter)
        return;
    const auto& text = platform::installed().text;
    auto sheet = std::make_shared<AlertController>(AlertController::Style::ActionSheet, shownName(), "");
    addApplications(*sheet);
    addTransfers(*sheet);
    sheet->addAction(std::make_shared<AlertAction>(text.localized("Cancel"), AlertAction::Style::Cancel, nullptr));
    sheet->popoverAnchor = std::move(anchor);
    presenter->present(std::move(sheet), animated);
}

std::string DocumentInteractionController::shownName() const
{
    return platform::installed().text.displayName(name ? std::string_view(*name) : document_.lastPathComponent());
}

void DocumentInteractionController::addApplications(AlertController& sheet) const
{
    for (const auto& rank : DocumentRecord(document_).applicationsAvailableForOpening())
        for (const auto& application : rank.applications)
            if (application->supportsOpenInPlace && application->bundleIdentifier != kOwnBundleIdentifier)
                addAction(sheet, localizedFilledText("Open in “%@”", {application->localizedName}),
                          [document = document_, application] {
                              DocumentInteractionController(document).openInPlace(*application);
                          });
}

void DocumentInteractionController::addTransfers(AlertController& sheet) const
{
    const auto& services = platform::installed();
    const auto& sharing = services.device.sharing;
    const auto& text = services.text;
    const bool isOnDevice = static_cast<bool>(services.files.attributes(document_.path()));
    if (isOnDevice && sharing.canSendByMail && sharing.canSendByMail())
        addAction(sheet, text.localized("Send by E-Mail"), std::bind(sharing.sendByMail, document_));
    addDevices(sheet);
    if (sharing.copyDocument && isOnDevice)
        addAction(sheet, text.localized("Copy"), std::bind(sharing.copyDocument, document_));
    if (!sharing.copyText)
        return;
    addAction(sheet, text.localized("Copy Path"), std::bind(sharing.copyText, document_.path()));
    addAction(sheet, text.localized("Copy Link"), std::bind(sharing.copyText, applicationURL(document_.path())));
}

} // namespace tessel
