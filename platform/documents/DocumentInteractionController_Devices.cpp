#include "platform/base/NotificationCenter.h"
#include "platform/base/Platform.h"
#include "platform/documents/DocumentInteractionController.h"
#include "platform/files/FileManager.h"
#include "platform/text/FilledText.h"
#include "platform/text/TextServices.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/Device.h"

#include <algorithm>
#include <map>

namespace tessel {

namespace {

/// The sheet's lines for devices. They live as long as the sheet does, and have this live as long.
class DeviceLines {
public:
    DeviceLines() = default;
    DeviceLines(const DeviceLines&) = delete;
    DeviceLines& operator=(const DeviceLines&) = delete;

    void add(const PairedDevice& device, const std::shared_ptr<AlertAction>& action)
    {
        actions_[device.identifier] = action;
    }

private:
    /// What goes away while the sheet is shown cannot be chosen any more; lines that come would move others away from
    /// under the finger.
    void follow()
    {
        const auto& devices = platform::installed().device.sharing.pairedDevices;
        for (const auto& [identifier, line] : actions_)
            if (const auto action = line.lock())
                action->setEnabled(std::ranges::find(devices, identifier, &PairedDevice::identifier) != devices.end());
    }

    std::map<std::string, std::weak_ptr<AlertAction>> actions_;
    NotificationCenter::Observation devicesChanged_ =
        platform::installed().notifications.observe(kPairedDevicesChangedNotification, [this] { follow(); });
};

} // namespace

void DocumentInteractionController::addDevices(AlertController& sheet) const
{
    const auto& services = platform::installed();
    const auto& sharing = services.device.sharing;
    if (!sharing.sendToDevice || !isFileOnDevice())
        return;
    const auto lines = std::make_shared<DeviceLines>();
    for (const auto& device : sharing.pairedDevices) {
        const auto action = std::make_shared<AlertAction>(
            localizedFilledText("Send to “%@”", {services.text.displayName(device.name)}), AlertAction::Style::Default,
            [lines, device, itself = *this](const std::shared_ptr<AlertAction>&) { itself.sendTo(device); });
        lines->add(device, action);
        sheet.addAction(action);
    }
    if (sharing.lookForDevices)
        sharing.lookForDevices();
}

/// Other devices take files: neither folders nor what would have to be downloaded first.
bool DocumentInteractionController::isFileOnDevice() const
{
    const auto attributes = platform::installed().files.attributes(document_.path());
    return attributes && attributes->kind == FileKind::RegularFile;
}

void DocumentInteractionController::sendTo(const PairedDevice& device) const
{
    const auto& sharing = platform::installed().device.sharing;
    if (!sharing.sendToDevice || !isFileOnDevice())
        return tellNotSentTo(device);
    sharing.sendToDevice(device, document_, [device, itself = *this](bool isSent) {
        if (!isSent)
            itself.tellNotSentTo(device);
    });
}

void DocumentInteractionController::tellNotSentTo(const PairedDevice& device) const
{
    const auto presenter = uppermostController();
    if (!presenter)
        return;
    const auto& text = platform::installed().text;
    auto alert = std::make_shared<AlertController>(
        AlertController::Style::Alert,
        localizedFilledText("“%1$@” couldn’t be sent to “%2$@”.", {shownName(), text.displayName(device.name)}), "");
    alert->addAction(std::make_shared<AlertAction>(text.localized("OK"), AlertAction::Style::Default, nullptr));
    presenter->present(std::move(alert), Animated::Yes);
}

} // namespace tessel
