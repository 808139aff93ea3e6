#pragma once

#include <memory>
#include <optional>
#include <string>

namespace tessel {

class Application;
class SystemSearch;
struct OutsideRequest;

/// What the window is for the desktop.
struct DesktopRole {
    bool ownsName = false;          ///< it answers to the program's name on the session's bus
    SystemSearch* search = nullptr; ///< answers the desktop's search; outlives the shell's run
};

/// The whole application in a window of the desktop or the phone. Main thread only; one at a time.
class WindowShell {
public:
    /// Looks for a display and chooses the way to it, before a WindowShell is made.
    /// @returns why no window can be opened, in words for the user; none when one can
    [[nodiscard]] static std::optional<std::string> whyNoWindow();

    /// Connects to the display, and tells the device's screen, kind and text size, all of which a launching application
    /// reads. Becomes the main queue's wake handler.
    /// @param endDescriptor readable once the process is asked to end, which then counts as closing the window; -1:
    /// none
    explicit WindowShell(int endDescriptor);
    ~WindowShell();
    WindowShell(const WindowShell&) = delete;
    WindowShell& operator=(const WindowShell&) = delete;

    /// Shows a launched application until its window is closed; it then resigns active.
    /// @returns no when the parts of the window cannot be loaded, which Qt has told on standard error.
    bool run(Application&, const DesktopRole&);

    /// Has a running application do what the desktop asks, and the window come to the front. Nothing before `run` and
    /// after its end.
    void take(const OutsideRequest&);

private:
    struct Parts;

    std::unique_ptr<Parts> parts_;
};

} // namespace tessel
