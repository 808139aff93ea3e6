#include "platform/ui/layout/VisualFormat.h"

#include "platform/ui/View.h"

#include <charconv>
#include <optional>
#include <utility>

namespace tessel {

namespace {

struct LengthRelation {
    LayoutRelation relation = LayoutRelation::Equal;
    double number = 0;
    View* view = nullptr; ///< in place of the number
    double priority = LayoutPriority::kRequired;
};

} // namespace

/// Reads a format from its beginning to its end, or to its first fault.
class VisualFormatReader {
public:
    VisualFormatReader(std::string_view format, const NamedViews& views) : format_(format), views_(views) {}

    Result<LayoutConstraint::List> read();

private:
    void readAxis();
    void readEdge();
    void readView();
    void readLengths(View&);
    [[nodiscard]] std::optional<LengthRelation> readGap();
    [[nodiscard]] LengthRelation readRelation();
    [[nodiscard]] View* readName();
    [[nodiscard]] double readNumber();

    void addGap(View& before, bool beforeEnds, View& after, bool afterBegins, const LengthRelation&);
    void addLength(View&, const LengthRelation&);
    template <typename Anchor, typename... Other>
    void add(const Anchor&, const LengthRelation&, const Other&...);

    [[nodiscard]] bool isAtEnd() const { return place_ == format_.size() || fault_; }
    [[nodiscard]] bool peek(std::string_view text) const { return format_.substr(place_).starts_with(text); }
    bool skip(std::string_view text);
    void expect(std::string_view text);
    void fail(std::string what);

    std::string_view format_;
    const NamedViews& views_;
    std::size_t place_ = 0;
    bool isColumn_ = false;
    View* superview_ = nullptr;
    View* last_ = nullptr;
    std::optional<LengthRelation> gapToEdge_; ///< of a format that begins with a bar
    LayoutConstraint::List made_;
    std::optional<Error> fault_;
};

Result<LayoutConstraint::List> VisualFormatReader::read()
{
    readAxis();
    if (skip("|"))
        gapToEdge_ = readGap();
    readView();
    while (!isAtEnd()) {
        const auto gap = readGap();
        if (fault_)
            break;
        if (skip("|")) {
            if (!superview_)
                fail("the view has no superview");
            else
                addGap(*last_, true, *superview_, false, *gap);
            if (!isAtEnd())
                fail("nothing may follow the edge");
            break;
        }
        gapToEdge_ = gap;
        readView();
    }
    if (fault_)
        return *fault_;
    return made_;
}

void VisualFormatReader::readAxis()
{
    isColumn_ = skip("V:");
    if (!isColumn_)
        skip("H:");
}

void VisualFormatReader::readView()
{
    expect("[");
    auto* const view = readName();
    if (fault_)
        return;
    if (!last_)
        superview_ = view->superview_;
    if (gapToEdge_ && !last_ && !superview_)
        return fail("the view has no superview");
    if (gapToEdge_ && last_)
        addGap(*last_, true, *view, true, *gapToEdge_);
    else if (gapToEdge_)
        addGap(*superview_, false, *view, true, *gapToEdge_);
    last_ = view;
    if (skip("("))
        readLengths(*view);
    expect("]");
}

void VisualFormatReader::readLengths(View& view)
{
    do {
        const auto relation = readRelation();
        if (!fault_)
            addLength(view, relation);
    } while (!fault_ && skip(","));
    expect(")");
}

std::optional<LengthRelation> VisualFormatReader::readGap()
{
    if (!skip("-"))
        return LengthRelation();
    LengthRelation gap;
    if (skip("(")) {
        gap = readRelation();
        if (gap.view)
            fail("a gap is a number");
        expect(")");
    } else {
        gap.number = readNumber();
    }
    expect("-");
    return gap;
}

LengthRelation VisualFormatReader::readRelation()
{
    LengthRelation relation;
    if (skip("<="))
        relation.relation = LayoutRelation::AtMost;
    else if (skip(">="))
        relation.relation = LayoutRelation::AtLeast;
    else
        skip("==");
    const auto next = format_.substr(place_, 1);
    if (!next.empty() && next.find_first_of("0123456789.") == 0)
        relation.number = readNumber();
    else
        relation.view = readName();
    if (skip("@"))
        relation.priority = readNumber();
    return relation;
}

View* VisualFormatReader::readName()
{
    if (fault_)
        return nullptr;
    const auto end = std::min(format_.find_first_of("[]()|-@,=<>", place_), format_.size());
    const auto name = format_.substr(place_, end - place_);
    const auto view = views_.find(name);
    if (name.empty())
        fail("a name of a view is missing");
    else if (view == views_.end())
        fail("no view is called \"" + std::string(name) + "\"");
    if (fault_)
        return nullptr;
    place_ = end;
    return view->second;
}

double VisualFormatReader::readNumber()
{
    double number = 0;
    const auto* const begin = format_.data() + place_;
    const auto [end, error] = std::from_chars(begin, format_.data() + format_.size(), number);
    if (error != std::errc())
        fail("a number is missing");
    else
        place_ += static_cast<std::size_t>(end - begin);
    return number;
}

/// @param beforeEnds whether the gap begins where the first view ends; else it is the superview, and begins there too
/// @param afterBegins the same of the second view
void VisualFormatReader::addGap(View& before, bool beforeEnds, View& after, bool afterBegins, const LengthRelation& gap)
{
    if (isColumn_)
        add(afterBegins ? after.topAnchor() : after.bottomAnchor(), gap,
            beforeEnds ? before.bottomAnchor() : before.topAnchor(), gap.number);
    else
        add(afterBegins ? after.leadingAnchor() : after.trailingAnchor(), gap,
            beforeEnds ? before.trailingAnchor() : before.leadingAnchor(), gap.number);
}

void VisualFormatReader::addLength(View& view, const LengthRelation& length)
{
    const auto side = [this](View& of) { return isColumn_ ? of.heightAnchor() : of.widthAnchor(); };
    if (length.view)
        add(side(view), length, side(*length.view));
    else
        add(side(view), length, length.number);
}

template <typename Anchor, typename... Other>
void VisualFormatReader::add(const Anchor& anchor, const LengthRelation& relation, const Other&... other)
{
    const auto made = relation.relation == LayoutRelation::Equal    ? anchor.equalTo(other...)
                      : relation.relation == LayoutRelation::AtMost ? anchor.atMost(other...)
                                                                    : anchor.atLeast(other...);
    made->setPriority(relation.priority);
    made_.push_back(made);
}

bool VisualFormatReader::skip(std::string_view text)
{
    if (fault_ || !peek(text))
        return false;
    place_ += text.size();
    return true;
}

void VisualFormatReader::expect(std::string_view text)
{
    if (!skip(text))
        fail("\"" + std::string(text) + "\" is missing");
}

/// The first fault is the one that is told.
void VisualFormatReader::fail(std::string what)
{
    if (!fault_)
        fault_ = Error{Domain::General, ErrorCode::kFormatting,
                       "The layout \"" + std::string(format_) + "\" is wrong at character " +
                           std::to_string(place_ + 1) + ": " + what + ".",
                       std::move(what)};
}

Result<LayoutConstraint::List> constraintsWithVisualFormat(std::string_view format, const NamedViews& views)
{
    return VisualFormatReader(format, views).read();
}

} // namespace tessel
