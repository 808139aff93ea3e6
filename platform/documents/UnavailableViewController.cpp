#include "platform/documents/UnavailableViewController.h"

#include "platform/base/Platform.h"
#include "platform/text/TextServices.h"

namespace tessel {

std::shared_ptr<UnavailableViewController> UnavailableViewController::create()
{
    return std::make_shared<UnavailableViewController>();
}

std::string UnavailableViewController::message() const
{
    return platform::installed().text.localized("Tessel is not enabled");
}

} // namespace tessel
