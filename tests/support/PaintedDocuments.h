#pragma once

#include "platform/documents/DocumentDecoder.h"
#include "platform/run/MainQueue.h"

#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace tessel {

/// Stands for the decoder's process: knows documents by their names, and paints each of its pictures in one colour of
/// its own, at once, as large as it is wanted. What it does not know, nothing can show.
class PaintedDocuments final : public DocumentDecoder {
public:
    explicit PaintedDocuments(MainQueue& mainQueue) : mainQueue_(mainQueue) {}

    Ticket inspect(const URL& url, FactsHandler handler) override
    {
        ++inspections;
        const auto facts = known[std::string(url.lastPathComponent())];
        mainQueue_.async([this, handler = std::move(handler), facts, ticket = ++last_] {
            if (cancelled_.count(ticket) == 0 && !isBusy)
                handler(facts);
        });
        return last_;
    }

    Ticket paint(const PictureWish& wish, PictureHandler handler) override
    {
        wishes.push_back(wish);
        if (paintProblem)
            handler(std::nullopt, paintProblem);
        else
            handler(pictureOf(wish), std::nullopt);
        return ++last_;
    }

    void cancel(Ticket ticket) override { cancelled_[ticket] = true; }

    std::map<std::string, ContentFacts> known;
    std::optional<ContentProblem> paintProblem;
    bool isBusy = false; ///< what is inspected has no answer
    int inspections = 0;
    std::vector<PictureWish> wishes;

private:
    [[nodiscard]] static ContentPicture pictureOf(const PictureWish& wish)
    {
        const auto part = wish.part.value_or(Rect{0, 0, 1, 1});
        const auto width = std::max(1, static_cast<int>(wish.width * part.width));
        const auto height = std::max(1, static_cast<int>(wish.height * part.height));
        const auto stride = std::size_t{4} * static_cast<std::size_t>(width);
        const auto size = stride * static_cast<std::size_t>(height);
        std::shared_ptr<std::byte> pixels(new std::byte[size], std::default_delete<std::byte[]>());
        std::memset(pixels.get(), 0x40 + wish.index % 0x80, size);
        return {pixels, width, height, static_cast<std::ptrdiff_t>(stride), wish.index >= 0 ? 40 : 0};
    }

    MainQueue& mainQueue_;
    Ticket last_ = 0;
    std::map<Ticket, bool> cancelled_;
};

} // namespace tessel
