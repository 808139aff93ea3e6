#pragma once

#include "platform/base/Platform.h"
#include "platform/linux/files/UnfinishedWork.h"
#include "tests/stress/Actor.h"
#include "tests/stress/WatchedDeletion.h"

namespace tessel {

/// A process that works with the drive as this program does: everything through its platform.
class Member : public Actor {
public:
    /// Starts the platform.
    Member(const Part&, const Stage&, int ledger);

protected:
    void removeItem();
    void tagItem();
    void evictDocument();
    void readDocument();
    void identifyDocument();

private:
    void tellIntent(const URL&, FileKind);

    std::unique_ptr<LinuxPlatform> platform_;
    WatchedCoordination coordination_;
    WatchedFileManager files_;
    const platform::Scope scope_;
    const platform::Scope scopeOfFiles_;
    const platform::Scope scopeOfCoordination_;
};

/// A person who looks through the drive and arranges it, by what the program calls: quicker than through a console, and
/// with tags, eviction and the trash, which that has no words for.
class Browser final : public Member {
public:
    using Member::Member;

private:
    void operateOnce() override;
    void makeFolder();
    void renameItem();
    void renameCase();
    void moveItem(std::size_t from, std::size_t to);
    void moveWithin();
    void moveBetween();
    void moveAcross();
    void trashItem();
    void move(const char* what, const Item&, const URL& to);
};

/// What brings changes from other devices: new documents, new content, and content that is not needed here.
class Agent final : public Member {
public:
    Agent(const Part& part, const Stage& stage, int ledger)
        : Member(part, stage, ledger), unfinished_(stage.unfinished())
    {
    }

    void recover() override;

private:
    void operateOnce() override;
    void createDocument();
    void saveDocument();

    const UnfinishedWork unfinished_;
};

} // namespace tessel
