#pragma once

#include "platform/ui/TextMeasurer.h"

#include <memory>

namespace tessel::qt {

/// Measures text as QML's Text lays it out, with the system's font. Needs the application object; main thread only.
class QtTextMeasurer final : public TextMeasurer {
public:
    QtTextMeasurer();
    ~QtTextMeasurer() override;

    [[nodiscard]] FontMetrics metrics(const Font&) const override;
    [[nodiscard]] Size measure(std::string_view text, const Font&, double width, std::size_t lines) const override;

    /// Forgets what was measured: the system's font is another one.
    void fontChanged();

private:
    struct Cache;

    const std::unique_ptr<Cache> cache_;
};

} // namespace tessel::qt
