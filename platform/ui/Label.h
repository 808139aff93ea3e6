#pragma once

#include "platform/ui/AttributedText.h"
#include "platform/ui/Font.h"
#include "platform/ui/View.h"

namespace tessel {

/// Natural: towards the side where the user's language begins.
enum class TextAlignment { Natural, Left, Center, Right };
enum class LineBreak { WordWrap, TruncateTail, TruncateMiddle };

/// Text that is only read. Plain black on nothing, one line, until told otherwise.
class Label : public View {
public:
    Label() = default;
    explicit Label(std::string text) : text_(std::move(text)) {}

    [[nodiscard]] const std::string& text() const { return text_; }
    void setText(std::string);
    /// Shown in place of the text, which becomes the same without images; none when a plain text was set last.
    [[nodiscard]] const std::optional<AttributedText>& attributedText() const { return attributed_; }
    void setAttributedText(AttributedText);
    [[nodiscard]] const Font& font() const { return font_; }
    void setFont(const Font&);
    [[nodiscard]] const Color& textColor() const { return textColor_; }
    void setTextColor(const Color&);
    [[nodiscard]] TextAlignment textAlignment() const { return alignment_; }
    void setTextAlignment(TextAlignment);
    [[nodiscard]] std::size_t numberOfLines() const { return lines_; }
    /// @param lines the most lines; 0 for any number
    void setNumberOfLines(std::size_t lines);
    [[nodiscard]] LineBreak lineBreak() const { return lineBreak_; }
    void setLineBreak(LineBreak);

    [[nodiscard]] Size intrinsicContentSize() const override;
    [[nodiscard]] Size sizeThatFits(const Size& available) const override;
    [[nodiscard]] bool heightFollowsWidth() const override { return lines_ != 1; }
    [[nodiscard]] Baselines baselines() const override;
    [[nodiscard]] std::string accessibilityLabel() const override;

private:
    [[nodiscard]] Size measured(double width) const;
    void attributedTextChanged();

    std::string text_;
    std::optional<AttributedText> attributed_;
    Font font_;
    Color textColor_ = Color::black();
    TextAlignment alignment_ = TextAlignment::Natural;
    std::size_t lines_ = 1;
    LineBreak lineBreak_ = LineBreak::TruncateTail;
};

} // namespace tessel
