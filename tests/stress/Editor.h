#pragma once

#include "tests/stress/Actor.h"

namespace tessel {

/// A program that knows nothing of the drive: it reads documents, and saves new ones and those that it has read, with
/// the kernel's calls alone.
class Editor final : public Actor {
public:
    using Actor::Actor;

    void recover() override;

private:
    void operateOnce() override;
    void createDocument();
    void saveDocument();
    void readSomething();
};

} // namespace tessel
