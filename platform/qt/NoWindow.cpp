#include "platform/qt/WindowShell.h"

namespace tessel {

struct WindowShell::Parts {};

std::optional<std::string> WindowShell::whyNoWindow()
{
    return "this program was built without windows";
}

WindowShell::WindowShell(int /*endDescriptor*/)
{
}

WindowShell::~WindowShell() = default;

bool WindowShell::run(Application& /*application*/, const DesktopRole& /*role*/)
{
    return false;
}

void WindowShell::take(const OutsideRequest& /*request*/)
{
}

} // namespace tessel
