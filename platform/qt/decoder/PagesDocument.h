#pragma once

#include "platform/qt/decoder/OpenDocument.h"

#include <QPdfDocument>

#include <optional>

namespace tessel::qt {

/// The pages of a PDF document.
class PagesDocument final : public OpenDocument {
public:
    explicit PagesDocument(std::unique_ptr<QFile>);

    ContentFacts facts() override;
    Picture paint(const Wish&) override;

private:
    [[nodiscard]] std::optional<ContentProblem> problem() const;

    const std::unique_ptr<QFile> file_;
    QPdfDocument pages_;
};

} // namespace tessel::qt
