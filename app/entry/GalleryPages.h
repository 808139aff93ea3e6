#pragma once

#include "platform/ui/ViewController.h"

#include <functional>
#include <memory>
#include <string>

namespace tessel {

class Button;
class StackView;

/// A page with a column of views that scrolls.
class GalleryPage : public ViewController {
public:
    explicit GalleryPage(std::string title);

    [[nodiscard]] std::string className() const override { return "GalleryPage"; }

    void add(const std::shared_ptr<View>&);
    void addText(std::string);
    void addButton(std::string title, std::function<void(GalleryPage&, Button&)> pressed);

protected:
    [[nodiscard]] std::shared_ptr<View> loadView() override;
    void viewWillLayoutSubviews() override;

private:
    const std::shared_ptr<StackView> column_;
};

[[nodiscard]] std::shared_ptr<GalleryPage> galleryLabels();
[[nodiscard]] std::shared_ptr<GalleryPage> galleryControls();
[[nodiscard]] std::shared_ptr<GalleryPage> galleryPictures();
[[nodiscard]] std::shared_ptr<GalleryPage> galleryStacks();
[[nodiscard]] std::shared_ptr<GalleryPage> galleryBars();
[[nodiscard]] std::shared_ptr<GalleryPage> galleryPresentations();

} // namespace tessel
