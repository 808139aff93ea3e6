#pragma once

#include "platform/ui/View.h"

namespace tessel {

/// A view that the user acts on.
class Control : public View {
public:
    [[nodiscard]] bool enabled() const { return enabled_; }
    void setEnabled(bool enabled) { assign(enabled_, enabled); }

private:
    bool enabled_ = true;
};

} // namespace tessel
