#pragma once

#include "tests/support/Program.h"
#include "tests/support/TemporaryDrive.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

using Lines = std::vector<std::string>;

/// The built program in a window without a screen, over a home of its own, used by touch and keys.
class WindowFixture : public testing::Test {
protected:
    WindowFixture()
    {
        folder.folder("home");
        folder.folder("drive");
        folder.folder("cache");
        folder.folder("runtime");
        std::filesystem::permissions(folder.url("runtime").path(), std::filesystem::perms::owner_all);
    }

    /// @param more arguments
    /// @param environment more variables, as NAME=VALUE
    /// @param user runs it as this user; needs root
    [[nodiscard]] Program open(const Lines& more = {}, const Lines& environment = {},
                               std::optional<uid_t> user = std::nullopt) const
    {
        Lines arguments = {"--log", "off", "--home", folder.url("home").path()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        Lines variables = {"QT_QPA_PLATFORM=offscreen", "QT_PLUGIN_PATH=" TESSEL_DRIVER_PLUGINS,
                           "QT_QPA_GENERIC_PLUGINS=tesseldriver", "XDG_CACHE_HOME=" + folder.url("cache").path(),
                           "XDG_RUNTIME_DIR=" + folder.url("runtime").path()};
        variables.insert(variables.end(), environment.begin(), environment.end());
        return Program(arguments, user, variables);
    }

    [[nodiscard]] Program openDrive() const { return open({"--drive", folder.url("drive").path()}); }

    /// Waits until a condition holds, or for 15 seconds.
    static bool soon(const std::function<bool()>& condition)
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(15);
        while (!condition())
            if (std::chrono::steady_clock::now() > deadline)
                return false;
        return true;
    }

    static bool holds(Program& program, std::string_view text)
    {
        return std::ranges::any_of(program.send("tree").lines,
                                   [text](const auto& line) { return line.find(text) != line.npos; });
    }

    static bool shows(Program& program, std::string_view text)
    {
        return soon([&] { return holds(program, text); });
    }

    static bool hides(Program& program, std::string_view text)
    {
        return soon([&] { return !holds(program, text); });
    }

    /// Does one thing as soon as it can be done, and waits until the window is at rest again.
    static void use(Program& program, std::string_view command)
    {
        EXPECT_TRUE(soon([&] { return program.send(command).answer == "ok"; })) << command;
        EXPECT_EQ(program.send("rest").answer, "ok") << command;
    }

    /// The lines of one role.
    static Lines linesOf(Program& program, const std::string& role)
    {
        Lines found;
        for (const auto& line : program.send("tree").lines)
            if (line.starts_with(role + " | "))
                found.push_back(line.substr(role.size() + 3));
        return found;
    }

    /// The names of the rows on the screen, without what is told of them.
    static Lines rows(Program& program)
    {
        auto found = linesOf(program, "ListItem");
        for (auto& line : found)
            line.resize(std::min(line.find(','), line.size()));
        return found;
    }

    static bool hasRows(Program& program, const Lines& names)
    {
        return soon([&] { return rows(program) == names; });
    }

    TemporaryDrive folder;
};

} // namespace tessel
