#pragma once

#include "platform/base/URL.h"
#include "platform/ui/DisplayList.h"
#include "platform/ui/Geometry.h"

#include <memory>
#include <optional>
#include <string>

namespace tessel {

/// A picture, as a description that a shell makes pixels of at its own scale: a named symbol or icon, a file, or what
/// the program drew itself. A value; copies share the drawing.
class Image {
public:
    /// A symbol of the shell's own set, drawn in the colour of the text around it.
    [[nodiscard]] static Image symbol(std::string name);
    /// The icon for a kind of document, by its freedesktop icon names, the best first, separated by blanks.
    [[nodiscard]] static Image icon(std::string names, const Size&);
    /// A picture file. @param size in points, as far as it is known
    [[nodiscard]] static Image file(const URL&, const Size& size);
    [[nodiscard]] static Image drawn(std::shared_ptr<const DisplayList>, const Size&);

    enum class Kind { Symbol, Icon, File, Drawn };

    [[nodiscard]] Kind kind() const { return kind_; }
    [[nodiscard]] const std::string& name() const { return name_; }      ///< of symbols and icons
    [[nodiscard]] const std::optional<URL>& url() const { return url_; } ///< of files
    [[nodiscard]] const std::shared_ptr<const DisplayList>& drawing() const { return drawing_; }
    [[nodiscard]] const Size& size() const { return size_; } ///< points

    friend bool operator==(const Image&, const Image&) = default;

private:
    Image(Kind kind, std::string name, std::optional<URL> url, std::shared_ptr<const DisplayList> drawing,
          const Size& size)
        : kind_(kind), name_(std::move(name)), url_(std::move(url)), drawing_(std::move(drawing)), size_(size)
    {
    }

    Kind kind_;
    std::string name_;
    std::optional<URL> url_;
    std::shared_ptr<const DisplayList> drawing_;
    Size size_;
};

} // namespace tessel
