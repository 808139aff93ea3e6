#pragma once

#include "platform/console/ScreenElement.h"

#include <memory>

namespace tessel {

class PreviewController;

/// What a preview shows: one line, and the first lines of a text.
void addPreview(Screen&, const PreviewController&);

/// What goes on in it, and its button.
void addPreviewState(Screen&, const std::shared_ptr<PreviewController>&);

} // namespace tessel
