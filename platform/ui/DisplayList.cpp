#include "platform/ui/DisplayList.h"

namespace tessel {

namespace {

struct Replay {
    Canvas& canvas;

    void operator()(const DisplayList::SetFillColor& command) const { canvas.setFillColor(command.color); }
    void operator()(const DisplayList::SetStrokeColor& command) const { canvas.setStrokeColor(command.color); }
    void operator()(const DisplayList::SetLineWidth& command) const { canvas.setLineWidth(command.points); }
    void operator()(const DisplayList::SetBlendMode& command) const { canvas.setBlendMode(command.mode); }
    void operator()(const DisplayList::FillPath& command) const { canvas.fill(command.path); }
    void operator()(const DisplayList::StrokePath& command) const { canvas.stroke(command.path); }
    void operator()(const DisplayList::FillRect& command) const { canvas.fillRect(command.rect); }
    void operator()(const DisplayList::FillOval& command) const { canvas.fillOval(command.rect); }
    void operator()(const DisplayList::StrokeOval& command) const { canvas.strokeOval(command.rect); }
};

} // namespace

void DisplayList::drawOn(Canvas& canvas) const
{
    for (const auto& command : commands_)
        std::visit(Replay{canvas}, command);
}

} // namespace tessel
