#pragma once

#include "platform/ui/Canvas.h"

#include <variant>

namespace tessel {

/// A canvas that keeps what is drawn on it, to be drawn again elsewhere.
class DisplayList final : public Canvas {
public:
    struct SetFillColor {
        Color color;
        friend bool operator==(const SetFillColor&, const SetFillColor&) = default;
    };
    struct SetStrokeColor {
        Color color;
        friend bool operator==(const SetStrokeColor&, const SetStrokeColor&) = default;
    };
    struct SetLineWidth {
        double points;
        friend bool operator==(const SetLineWidth&, const SetLineWidth&) = default;
    };
    struct SetBlendMode {
        BlendMode mode;
        friend bool operator==(const SetBlendMode&, const SetBlendMode&) = default;
    };
    struct FillPath {
        Path path;
        friend bool operator==(const FillPath&, const FillPath&) = default;
    };
    struct StrokePath {
        Path path;
        friend bool operator==(const StrokePath&, const StrokePath&) = default;
    };
    struct FillRect {
        Rect rect;
        friend bool operator==(const FillRect&, const FillRect&) = default;
    };
    struct FillOval {
        Rect rect;
        friend bool operator==(const FillOval&, const FillOval&) = default;
    };
    struct StrokeOval {
        Rect rect;
        friend bool operator==(const StrokeOval&, const StrokeOval&) = default;
    };
    using Command = std::variant<SetFillColor, SetStrokeColor, SetLineWidth, SetBlendMode, FillPath, StrokePath,
                                 FillRect, FillOval, StrokeOval>;

    void setFillColor(const Color& color) override { commands_.emplace_back(SetFillColor{color}); }
    void setStrokeColor(const Color& color) override { commands_.emplace_back(SetStrokeColor{color}); }
    void setLineWidth(double points) override { commands_.emplace_back(SetLineWidth{points}); }
    void setBlendMode(BlendMode mode) override { commands_.emplace_back(SetBlendMode{mode}); }
    void fill(const Path& path) override { commands_.emplace_back(FillPath{path}); }
    void stroke(const Path& path) override { commands_.emplace_back(StrokePath{path}); }
    void fillRect(const Rect& rect) override { commands_.emplace_back(FillRect{rect}); }
    void fillOval(const Rect& rect) override { commands_.emplace_back(FillOval{rect}); }
    void strokeOval(const Rect& rect) override { commands_.emplace_back(StrokeOval{rect}); }

    [[nodiscard]] const std::vector<Command>& commands() const { return commands_; }
    void drawOn(Canvas&) const;

    friend bool operator==(const DisplayList& left, const DisplayList& right)
    {
        return left.commands_ == right.commands_;
    }

private:
    std::vector<Command> commands_;
};

} // namespace tessel
