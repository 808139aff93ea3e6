#pragma once

#include "tests/stress/Ledger.h"
#include "tests/stress/Survey.h"

#include <map>
#include <string>
#include <vector>

namespace tessel {

/// What the ledger and a drive at rest do not agree on. Each finding is a line for people.
struct Verdict {
    std::map<std::string, std::vector<std::string>> findings; ///< by kind
    std::size_t contents = 0;                                 ///< that the ledger knows
    std::size_t found = 0;                                    ///< of these, in the drive
    std::size_t deleted = 0;                                  ///< deleted by somebody who knew them
    std::size_t superseded = 0;                               ///< by content that was made from them
    std::size_t undecided = 0; ///< in the hands of a process when it was killed, or deleted with a folder while an
                               ///< editor put it there: there or not, and both is right

    std::size_t emptyFolders = 0; ///< hidden ones: a folder that was being removed was renamed, and then the power went
    std::size_t inStoreAlone = 0; ///< behind a file that an editor put in the place of a document in the cloud

    [[nodiscard]] bool isSound() const { return findings.empty(); }
};

/// The rule. A content that was written is in one place, whole,
///
///   - unless somebody deleted it who had seen it, and was told that it is deleted: then it is in none;
///   - unless content took its place that was made from it: then it is in none;
///   - unless an editor displaced one of the two that there are while it is moved to another file system, in a move
///   that
///     was not made in the end: then it may be in one;
///   - while it may be in one place or none when its writer or deleter was killed at it, or when an editor, who asks
///     nobody, put it into a folder while that was being deleted;
///   - unless it is in the store, which an editor, who sees nothing of the cloud, can hide by a file of its own.
///
/// A content whose writer was told that it was not written is in none. No document was given an identifier that another
/// one had been given whose file, as it was then, was still there.
[[nodiscard]] Verdict judge(const std::vector<LedgerLine>&, const Survey&);

} // namespace tessel
