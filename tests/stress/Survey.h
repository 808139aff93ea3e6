#pragma once

#include "platform/base/URL.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace tessel {

class Stage;

/// What is in a drive that nobody works with.
struct Survey {
    std::map<std::string, std::vector<URL>> places; ///< of each content, the documents that hold it
    std::vector<std::string> torn;                  ///< paths of files that are not whole, and why
    std::vector<std::string> leftovers;             ///< paths of what should have been cleared up
    std::size_t emptyFolders = 0;                   ///< hidden ones that somebody's removal of a folder has left
    std::size_t inCloudOnly = 0;
    std::size_t inTrash = 0;
    std::set<std::string> stored; ///< contents in the store, whether a document refers to them or not
};

[[nodiscard]] Survey surveyOf(const Stage&);

} // namespace tessel
