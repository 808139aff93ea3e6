#include "app/entry/Gallery.h"

#include "app/entry/GalleryPages.h"
#include "platform/base/Platform.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"

namespace tessel {

namespace {

using MakePage = std::shared_ptr<GalleryPage> (*)();

constexpr std::pair<const char*, MakePage> kPages[] = {
    {"Labels", galleryLabels}, {"Controls", galleryControls}, {"Pictures", galleryPictures},
    {"Stacks", galleryStacks}, {"Bars", galleryBars},         {"Presentations", galleryPresentations},
};

std::shared_ptr<GalleryPage> contents()
{
    const auto page = std::make_shared<GalleryPage>("Gallery");
    for (const auto& [title, make] : kPages)
        page->addButton(title, [make = make](GalleryPage& contents, Button&) {
            contents.navigationController()->pushViewController(make(), Animated::Yes);
        });
    return page;
}

} // namespace

bool Gallery::applicationWillFinishLaunchingWithOptions(const LaunchOptions&)
{
    const auto navigation = std::make_shared<NavigationController>();
    navigation->setViewControllers({contents()}, Animated::No);
    window_ = std::make_shared<Window>(platform::installed().device.screenBounds());
    window_->setRootViewController(navigation);
    window_->makeKeyAndVisible();
    return true;
}

} // namespace tessel
