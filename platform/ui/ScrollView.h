#pragma once

#include "platform/ui/View.h"

namespace tessel {

/// Shows a part of content that is larger than itself.
class ScrollView : public View {
public:
    bool bouncesVertically = true;
    bool showsIndicators = true;

    [[nodiscard]] const Size& contentSize() const { return contentSize_; }
    void setContentSize(const Size& size) { assign(contentSize_, size); }
    [[nodiscard]] const EdgeInsets& contentInset() const { return contentInset_; }
    /// Also brings the offset back to where there is content, or an inset.
    void setContentInset(const EdgeInsets&);
    /// The content's point at the view's leading top corner.
    [[nodiscard]] const Point& contentOffset() const { return contentOffset_; }
    void setContentOffset(const Point& offset) { assign(contentOffset_, offset); }
    /// The shell's scrolling: sets the offset without telling the shell of it.
    void didScrollTo(const Point& offset) { contentOffset_ = offset; }
    /// Scrolls as little as is needed to show a part of the content between the insets, its top rather than its end.
    void scrollRectToVisible(const Rect&);

private:
    [[nodiscard]] double verticallyInContent(double y) const;

    Size contentSize_;
    EdgeInsets contentInset_;
    Point contentOffset_;
};

} // namespace tessel
