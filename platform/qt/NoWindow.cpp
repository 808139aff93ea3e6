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

void WindowShell::run(Application& /*application*/)
{
}

} // namespace tessel
