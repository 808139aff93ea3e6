#pragma once

#include "platform/qt/decoder/OpenDocument.h"

namespace tessel::qt {

/// A text, which others show.
class TextDocument final : public OpenDocument {
public:
    ContentFacts facts() override { return {.kind = ContentKind::Text, .problem = {}, .size = {}}; }
    Picture paint(const Wish&) override { return {.image = {}, .problem = ContentProblem::NotReadable}; }
};

} // namespace tessel::qt
