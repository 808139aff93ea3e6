#pragma once

#include "platform/ui/Image.h"
#include "platform/ui/TextMeasurer.h"

#include <optional>
#include <string>
#include <vector>

namespace tessel {

/// How a part of a text looks.
struct TextAttributes {
    double baselineOffset = 0; ///< points that text is raised by; images stay where they are

    friend bool operator==(const TextAttributes&, const TextAttributes&) = default;
};

/// A text of parts that look differently, with images among them that stand on its baseline and take
/// whole points.
class AttributedText {
public:
    struct Run {
        std::string text; ///< UTF-8; empty for an image
        std::optional<Image> attachment;
        TextAttributes attributes;

        friend bool operator==(const Run&, const Run&) = default;
    };

    void append(std::string text, const TextAttributes& = {});
    void append(Image attachment, const TextAttributes& = {});

    [[nodiscard]] const std::vector<Run>& runs() const { return runs_; }
    /// Without the images.
    [[nodiscard]] std::string text() const;

    /// As TextMeasurer::measure has it; lines break at blanks and before images.
    [[nodiscard]] Size measured(const TextMeasurer&, const Font&, double width, std::size_t lines) const;

    friend bool operator==(const AttributedText&, const AttributedText&) = default;

private:
    std::vector<Run> runs_;
};

} // namespace tessel
