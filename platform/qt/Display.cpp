#include "platform/qt/Display.h"

#include <QDir>
#include <QLibraryInfo>

#include <cstdlib>
#include <cstring>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>
#include <xcb/xcb.h>

namespace tessel::qt {

namespace {

std::string chosen;

/// Empty when the variable is not set.
std::string environment(const char* name)
{
    const auto* const value = std::getenv(name);
    return value ? value : "";
}

bool isPluginThere(const QString& name)
{
    const QDir folder(QLibraryInfo::path(QLibraryInfo::PluginsPath) + "/platforms");
    return !folder.entryList({"libq" + name + "*.so"}).isEmpty();
}

bool canConnect(const std::string& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, path.data(), path.size());
    const int connection = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool answers = ::connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    if (connection >= 0)
        ::close(connection);
    return answers;
}

bool waylandAnswers()
{
    const auto name = environment("WAYLAND_DISPLAY").empty() ? "wayland-0" : environment("WAYLAND_DISPLAY");
    return canConnect(name.front() == '/' ? name : environment("XDG_RUNTIME_DIR") + '/' + name);
}

// An X server of its own may start anew when its last client leaves, and for a moment takes no other: the connection is
// kept until the next one is there.
xcb_connection_t* keptConnection = nullptr;

bool xAnswers()
{
    forgetTriedDisplay();
    keptConnection = xcb_connect(nullptr, nullptr);
    return xcb_connection_has_error(keptConnection) == 0;
}

/// Whether a way that the user has named leads to a display. Others than Wayland and X need no server.
bool leadsToDisplay(std::string_view platform)
{
    if (platform.starts_with("wayland"))
        return isPluginThere("wayland") && waylandAnswers();
    return !platform.starts_with("xcb") || (isPluginThere("xcb") && xAnswers());
}

} // namespace

std::optional<std::string> chooseDisplay()
{
    chosen.clear();
    if (const auto named = environment("QT_QPA_PLATFORM"); !named.empty())
        return leadsToDisplay(named) ? std::nullopt : std::optional(named + " does not answer");
    const bool hasWayland = !environment("WAYLAND_DISPLAY").empty();
    const bool hasX = !environment("DISPLAY").empty();
    for (const auto& [isSet, platform] : {std::pair(hasWayland, "wayland"), std::pair(hasX, "xcb")}) {
        if (!isSet || !leadsToDisplay(platform))
            continue;
        chosen = platform;
        return std::nullopt;
    }
    if (!hasWayland && !hasX)
        return "neither WAYLAND_DISPLAY nor DISPLAY is set";
    const auto display = hasX ? "the display " + environment("DISPLAY") : "Wayland's " + environment("WAYLAND_DISPLAY");
    return display + " does not answer";
}

const std::string& chosenPlatform()
{
    return chosen;
}

void forgetTriedDisplay()
{
    if (auto* const connection = std::exchange(keptConnection, nullptr))
        xcb_disconnect(connection);
}

} // namespace tessel::qt
