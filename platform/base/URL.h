#pragma once

#include <compare>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// The location of a file: an immutable value whose copies share one representation.
///
/// Paths are bytes, as the kernel has them; they need not be valid UTF-8. A URL is normalised once, when it is
/// made: repeated slashes, "." components and a trailing slash go. ".." stays, because only the file system knows
/// what it means behind a link. Safe to use from any thread.
class URL {
public:
    /// @param path absolute, or relative where a link's text is held (such a URL has no place on disk of its own).
    [[nodiscard]] static URL file(std::string_view path);

    [[nodiscard]] const std::string& path() const { return *path_; }
    /// The name: what follows the last slash; "/" for the root.
    [[nodiscard]] std::string_view lastPathComponent() const;
    /// What follows the last dot of the name, case kept; empty without one, and for names such as ".profile".
    [[nodiscard]] std::string_view pathExtension() const;
    /// "/" counts as a component of its own: "/a/b" has three, "b" has one.
    [[nodiscard]] std::vector<std::string> pathComponents() const;

    [[nodiscard]] URL deletingLastPathComponent() const;
    [[nodiscard]] URL appending(std::string_view relativePath) const;

    /// Whether `other` is this location or lies below it, by path alone.
    [[nodiscard]] bool contains(const URL& other) const;

    /// The very same object, not merely an equal one.
    [[nodiscard]] bool isSameObject(const URL& other) const { return path_ == other.path_; }

    /// "file://" and the percent-encoded path (RFC 3986), for logs and other programs.
    [[nodiscard]] std::string absoluteString() const;

    friend bool operator==(const URL& left, const URL& right) { return *left.path_ == *right.path_; }
    friend std::strong_ordering operator<=>(const URL& left, const URL& right) { return *left.path_ <=> *right.path_; }

private:
    explicit URL(std::string path) : path_(std::make_shared<const std::string>(std::move(path))) {}

    std::shared_ptr<const std::string> path_;
};

} // namespace tessel

template <>
struct std::hash<tessel::URL> {
    std::size_t operator()(const tessel::URL& url) const noexcept { return std::hash<std::string>()(url.path()); }
};
