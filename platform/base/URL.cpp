#include "platform/base/URL.h"

#include "platform/base/PercentEncoding.h"

namespace tessel {

namespace {

std::string normalised(std::string_view path)
{
    std::string result;
    result.reserve(path.size());
    if (path.starts_with('/'))
        result.push_back('/');
    for (std::size_t start = 0; start < path.size();) {
        const auto end = std::min(path.find('/', start), path.size());
        const auto component = path.substr(start, end - start);
        if (!component.empty() && component != ".") {
            if (!result.empty() && result.back() != '/')
                result.push_back('/');
            result.append(component);
        }
        start = end + 1;
    }
    return result;
}

} // namespace

URL URL::file(std::string_view path)
{
    return URL(normalised(path));
}

std::string_view URL::lastPathComponent() const
{
    const std::string_view path = *path_;
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos || path.size() == 1 ? path : path.substr(slash + 1);
}

std::string_view URL::pathExtension() const
{
    const auto name = lastPathComponent();
    const auto dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? std::string_view() : name.substr(dot + 1);
}

std::vector<std::string> URL::pathComponents() const
{
    const std::string_view path = *path_;
    std::vector<std::string> components;
    std::size_t start = 0;
    if (path.starts_with('/')) {
        components.emplace_back("/");
        start = 1;
    }
    while (start < path.size()) {
        const auto end = std::min(path.find('/', start), path.size());
        components.emplace_back(path.substr(start, end - start));
        start = end + 1;
    }
    return components;
}

URL URL::deletingLastPathComponent() const
{
    const auto slash = path_->rfind('/');
    if (slash == std::string::npos)
        return URL(std::string());
    return URL(path_->substr(0, slash == 0 ? 1 : slash));
}

URL URL::appending(std::string_view relativePath) const
{
    return file(*path_ + '/' + std::string(relativePath));
}

bool URL::contains(const URL& other) const
{
    const std::string_view path = *path_;
    const std::string_view rest = *other.path_;
    if (!rest.starts_with(path))
        return false;
    return rest.size() == path.size() || path.ends_with('/') || rest[path.size()] == '/';
}

std::string URL::absoluteString() const
{
    return "file://" + percentEncodedPath(*path_);
}

} // namespace tessel
