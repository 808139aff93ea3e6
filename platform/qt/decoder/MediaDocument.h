#pragma once

#include "platform/qt/decoder/OpenDocument.h"

namespace tessel::qt {

/// Sound or a film, which another program plays.
class MediaDocument final : public OpenDocument {
public:
    explicit MediaDocument(ContentKind kind) : kind_(kind) {}

    ContentFacts facts() override { return {.kind = kind_, .problem = {}, .size = {}}; }
    Picture paint(const Wish&) override { return {.image = {}, .problem = ContentProblem::NotReadable}; }

private:
    const ContentKind kind_;
};

} // namespace tessel::qt
