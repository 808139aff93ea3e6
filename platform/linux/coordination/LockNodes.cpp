#include "platform/linux/coordination/LockNodes.h"

#include <algorithm>
#include <string_view>

namespace tessel {

namespace {

// FNV-1a (Fowler, Noll and Vo), with the last mixing step of SplitMix64 (Steele, Lea and Flood 2014).
class PathHash {
public:
    void add(std::string_view text)
    {
        for (const char character : text)
            state_ = (state_ ^ static_cast<unsigned char>(character)) * 0x100000001b3U;
    }

    [[nodiscard]] off_t place() const
    {
        constexpr auto kNodes = static_cast<std::uint64_t>((kLockNodesEnd - kFirstLockNode) / kLockNodeLength);
        auto mixed = (state_ ^ (state_ >> 30)) * 0xbf58476d1ce4e5b9U;
        mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111ebU;
        return kFirstLockNode + static_cast<off_t>((mixed ^ (mixed >> 31)) % kNodes) * kLockNodeLength;
    }

private:
    std::uint64_t state_ = 0xcbf29ce484222325U;
};

LockMode stronger(LockMode left, LockMode right)
{
    const bool oneReads = std::min(left, right) == LockMode::WritesBelow && std::max(left, right) == LockMode::Reads;
    return oneReads ? LockMode::Writes : std::max(left, right);
}

class Nodes {
public:
    void add(const AccessWish& wish)
    {
        PathHash hash;
        const std::string_view path = wish.path;
        for (std::size_t start = 0; start < path.size();) {
            const auto end = std::min(path.find('/', start + 1), path.size());
            hash.add(path.substr(start, end - start));
            addNode(hash.place(), path.substr(0, end), modeFor(wish, end == path.size()));
            start = end;
        }
    }

    std::vector<LockNode> take() { return std::move(nodes_); }

private:
    static LockMode modeFor(const AccessWish& wish, bool isItem)
    {
        if (isItem)
            return wish.writes ? LockMode::Writes : LockMode::Reads;
        return wish.writes ? LockMode::WritesBelow : LockMode::ReadsBelow;
    }

    void addNode(off_t place, std::string_view path, LockMode mode)
    {
        const auto known = std::ranges::find(nodes_, place, &LockNode::start);
        if (known == nodes_.end())
            nodes_.push_back({place, mode, std::string(path)});
        else
            known->mode = stronger(known->mode, mode);
    }

    std::vector<LockNode> nodes_;
};

} // namespace

std::vector<LockNode> lockNodesFor(const std::vector<AccessWish>& wishes)
{
    Nodes nodes;
    for (const auto& wish : wishes)
        nodes.add(wish);
    return nodes.take();
}

} // namespace tessel
