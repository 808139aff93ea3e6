#pragma once

#include <optional>
#include <string>

namespace tessel {

/// Why a command was not carried out, for the user; none when it was.
using Refusal = std::optional<std::string>;

/// What a command answers.
struct Answer {
    Refusal refusal;
    std::string output; ///< printed before "ok"; whole lines

    [[nodiscard]] static Answer refused(std::string reason) { return {std::move(reason), {}}; }
    [[nodiscard]] static Answer printing(std::string output) { return {std::nullopt, std::move(output)}; }
};

} // namespace tessel
