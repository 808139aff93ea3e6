#pragma once

#include "platform/base/URL.h"

#include <string>
#include <string_view>

namespace tessel {

/// A real folder of its own for one test, removed with everything in it at the end.
class TemporaryDrive {
public:
    /// @param inside makes it this folder, in a temporary one that has room for others beside it
    explicit TemporaryDrive(std::string_view inside = {});
    ~TemporaryDrive();
    TemporaryDrive(const TemporaryDrive&) = delete;
    TemporaryDrive& operator=(const TemporaryDrive&) = delete;

    /// Makes what a short literal says: "Projects/ Projects/Plan.txt link->Projects" makes a folder, an empty file and
    /// a link, in this order, parents included. Names in it hold no blanks.
    void tree(std::string_view description) const;
    /// Makes or replaces one file.
    URL file(std::string_view name, std::string_view content = {}) const;
    URL folder(std::string_view name) const;
    /// @param target the link's text, as stored
    URL link(std::string_view name, std::string_view target) const;

    [[nodiscard]] URL url(std::string_view name = {}) const;
    [[nodiscard]] std::string read(std::string_view name) const;

private:
    std::string temporary_;
    std::string path_;
};

} // namespace tessel
