#include "tests/support/TemporaryDrive.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace tessel {

TemporaryDrive::TemporaryDrive(std::string_view inside)
{
    std::string pattern = (fs::temp_directory_path() / "tesseldrive-test-XXXXXX").string();
    if (!::mkdtemp(pattern.data()))
        throw std::runtime_error("no temporary folder");
    temporary_ = fs::canonical(pattern).string();
    path_ = inside.empty() ? temporary_ : temporary_ + '/' + std::string(inside);
    fs::create_directories(path_);
}

TemporaryDrive::~TemporaryDrive()
{
    std::error_code ignored;
    const auto options = fs::directory_options::skip_permission_denied;
    for (auto entry = fs::recursive_directory_iterator(temporary_, options, ignored);
         entry != fs::recursive_directory_iterator(); entry.increment(ignored))
        if (entry->is_directory(ignored) && !entry->is_symlink(ignored))
            fs::permissions(entry->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    fs::remove_all(temporary_, ignored);
}

void TemporaryDrive::tree(std::string_view description) const
{
    std::istringstream words{std::string(description)};
    for (std::string word; words >> word;) {
        if (const auto arrow = word.find("->"); arrow != std::string::npos)
            link(word.substr(0, arrow), word.substr(arrow + 2));
        else if (word.ends_with('/'))
            folder(word);
        else
            file(word);
    }
}

URL TemporaryDrive::file(std::string_view name, std::string_view content) const
{
    const auto result = url(name);
    fs::create_directories(result.deletingLastPathComponent().path());
    std::ofstream(result.path(), std::ios::binary) << content;
    return result;
}

URL TemporaryDrive::folder(std::string_view name) const
{
    const auto result = url(name);
    fs::create_directories(result.path());
    return result;
}

URL TemporaryDrive::link(std::string_view name, std::string_view target) const
{
    const auto result = url(name);
    fs::create_directories(result.deletingLastPathComponent().path());
    fs::create_symlink(target, result.path());
    return result;
}

URL TemporaryDrive::url(std::string_view name) const
{
    return name.empty() ? URL::file(path_) : URL::file(path_).appending(name);
}

std::string TemporaryDrive::read(std::string_view name) const
{
    std::ifstream stream(url(name).path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace tessel
