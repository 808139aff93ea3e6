#include "platform/ui/AttributedText.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

namespace tessel {

namespace {

/// How far something reaches up and down from the baseline, in points.
struct Reach {
    double up = 0;
    double down = 0;

    void include(const Reach& other)
    {
        up = std::max(up, other.up);
        down = std::max(down, other.down);
    }
    [[nodiscard]] double height() const { return up + down; }
};

/// Puts pieces side by side into lines, none of which is broken.
class Lines {
public:
    Lines(double width, std::size_t most) : width_(width), most_(most) {}

    /// @param gap what is left blank before the next piece, unless a line begins with it
    void beginPiece(double gap)
    {
        placePiece();
        gap_ = gap;
    }
    void extendPiece(double width, const Reach& reach)
    {
        pieceWidth_ += width;
        pieceReach_.include(reach);
    }
    [[nodiscard]] Size size()
    {
        placePiece();
        closeLine();
        return size_;
    }

private:
    void placePiece()
    {
        if (lineWidth_ > 0 && lineWidth_ + gap_ + pieceWidth_ > width_)
            closeLine();
        if (pieceWidth_ > 0)
            lineWidth_ += (lineWidth_ > 0 ? gap_ : 0) + std::exchange(pieceWidth_, 0);
        lineReach_.include(std::exchange(pieceReach_, {}));
    }
    void closeLine()
    {
        if (most_ == 0 || count_ < most_) {
            size_.width = std::max(size_.width, std::min(lineWidth_, width_));
            size_.height += lineReach_.height();
        }
        count_++;
        lineWidth_ = 0;
        lineReach_ = {};
    }

    const double width_;
    const std::size_t most_;
    Size size_;
    std::size_t count_ = 0; ///< of closed lines
    double lineWidth_ = 0;
    Reach lineReach_;
    double gap_ = 0;
    double pieceWidth_ = 0;
    Reach pieceReach_;
};

/// A text's words, and how many blanks come before each; the last one is empty after blanks at the end.
struct Word {
    std::string_view text;
    std::size_t blanks = 0;
};

std::vector<Word> wordsOf(std::string_view text)
{
    std::vector<Word> words;
    while (!text.empty()) {
        const auto start = std::min(text.find_first_not_of(' '), text.size());
        const auto end = std::min(text.find(' ', start), text.size());
        words.push_back({text.substr(start, end - start), start});
        text.remove_prefix(end);
    }
    return words;
}

} // namespace

void AttributedText::append(std::string text, const TextAttributes& attributes)
{
    runs_.push_back({std::move(text), std::nullopt, attributes});
}

void AttributedText::append(Image attachment, const TextAttributes& attributes)
{
    runs_.push_back({{}, std::move(attachment), attributes});
}

std::string AttributedText::text() const
{
    std::string text;
    for (const auto& run : runs_)
        text += run.text;
    return text;
}

Size AttributedText::measured(const TextMeasurer& measurer, const Font& font, double width, std::size_t most) const
{
    const auto metrics = measurer.metrics(font);
    const auto widthOf = [&](std::string_view text) { return measurer.measure(text, font, kUnlimitedWidth, 1).width; };
    const auto blank = widthOf("o o") - widthOf("oo");
    Lines lines(width, most);
    double gap = 0; // the blanks before what comes next
    for (const auto& run : runs_) {
        if (run.attachment) {
            const auto& size = run.attachment->size();
            lines.beginPiece(gap);
            lines.extendPiece(std::ceil(size.width), {std::ceil(size.height), 0});
            gap = 0;
        }
        const auto offset = run.attributes.baselineOffset;
        for (const auto& word : wordsOf(run.text)) {
            gap += blank * static_cast<double>(word.blanks);
            if (word.text.empty())
                continue;
            if (gap > 0)
                lines.beginPiece(std::exchange(gap, 0));
            lines.extendPiece(widthOf(word.text), {metrics.ascender + offset, metrics.descender - offset});
        }
    }
    return lines.size();
}

} // namespace tessel
