#pragma once

#include "platform/apps/ApplicationRecord.h"
#include "platform/base/URL.h"
#include "platform/ui/Presentation.h"
#include "platform/ui/ViewController.h"

#include <memory>
#include <optional>
#include <string>

namespace tessel {

class AlertController;
struct PairedDevice;

/// What other programs are asked to do with one document. Main thread only.
class DocumentInteractionController {
public:
    explicit DocumentInteractionController(URL document) : document_(std::move(document)) {}

    /// What people are told the document is called; none: its file name.
    std::optional<std::string> name;

    /// Has an application open the document itself. Why it could not is logged.
    void openInPlace(const ApplicationRecord&) const;

    /// Shows a sheet of all that can be done with the document here: opened by each of the applications that can, the
    /// best one first; sent, copied. What this device cannot do is left out.
    /// @param fromRect of the view: where the sheet points
    void presentOptionsMenu(const Rect& fromRect, const std::shared_ptr<View>& inView, Animated) const;
    void presentOptionsMenu(const std::shared_ptr<BarButtonItem>& fromItem, Animated) const;

private:
    /// What lies over everything else.
    [[nodiscard]] static std::shared_ptr<ViewController> uppermostController();
    void present(PopoverAnchor, Animated) const;
    void addApplications(AlertController&) const;
    void addTransfers(AlertController&) const;
    void addDevices(AlertController&) const;
    void sendTo(const PairedDevice&) const;
    void tellNotSentTo(const PairedDevice&) const;
    [[nodiscard]] std::string shownName() const;
    [[nodiscard]] bool isFileOnDevice() const;

    const URL document_;
};

} // namespace tessel
