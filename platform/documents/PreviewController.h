#pragma once

#include "platform/base/URL.h"
#include "platform/ui/ViewController.h"

#include <cstddef>
#include <memory>
#include <optional>

namespace tessel {

class ImageView;
class Label;
class PreviewController;

/// What a preview shows.
class PreviewControllerDataSource {
public:
    virtual ~PreviewControllerDataSource() = default;

    [[nodiscard]] virtual std::size_t numberOfPreviewItemsInPreviewController(const PreviewController&) const = 0;
    [[nodiscard]] virtual URL previewControllerPreviewItemAtIndex(const PreviewController&,
                                                                  std::size_t index) const = 0;
};

/// What may be done in a preview.
class PreviewControllerDelegate {
public:
    virtual ~PreviewControllerDelegate() = default;

    /// Whether the document may be marked up, and whether what was marked up is saved in it.
    [[nodiscard]] virtual bool previewControllerCanEditItem(const PreviewController&, const URL&) const = 0;
    [[nodiscard]] virtual bool previewControllerShouldSaveEditedItem(const PreviewController&, const URL&) const = 0;
};

/// The quick preview: shows the first of its source's documents, by its icon, name, kind and size. Its content is not
/// read. Main thread only.
class PreviewController : public ViewController {
public:
    PreviewControllerDataSource* dataSource = nullptr; ///< lives as long as the controller does
    PreviewControllerDelegate* delegate = nullptr;     ///< likewise

    [[nodiscard]] std::string className() const override { return "PreviewController"; }

    /// Asks the source again what there is to show.
    void reloadData();
    /// Describes the shown document anew: it has changed.
    void refreshCurrentPreviewItem();
    /// None when the source has none.
    [[nodiscard]] const std::optional<URL>& currentPreviewItem() const { return shown_; }

    /// Whether the view is on screen.
    [[nodiscard]] bool isVisible() const { return isOnScreen_; }

protected:
    [[nodiscard]] std::shared_ptr<View> loadView() override;
    void viewDidLoad() override;
    void viewWillAppear(Animated) override;
    void viewDidDisappear() override;

private:
    std::optional<URL> shown_;
    std::shared_ptr<ImageView> icon_;
    std::shared_ptr<Label> name_;
    std::shared_ptr<Label> description_;
    bool isOnScreen_ = false;
};

} // namespace tessel
