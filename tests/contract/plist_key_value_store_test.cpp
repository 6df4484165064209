// The preference file: damage, links, other processes, full disks and the pace of the disk.
#include "platform/plist/plist_key_value_store.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <chrono>
#include <memory>
#include <vector>

#include "platform/fake/fake_log.h"
#include "platform/fake/virtual_scheduler.h"
#include "platform/plist/plist_coder.h"
#include "tests/contract/child_process.h"
#include "tests/support/full_disk.h"
#include "tests/support/temporary_folder.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using ::testing::HasSubstr;

class PreferenceFile : public ::testing::Test {
  protected:
    std::unique_ptr<KeyValueStore> open() { return openAt(file_); }
    std::unique_ptr<KeyValueStore> openAt(const fs::path& file) {
        return makePlistKeyValueStore(file, *coder_, log_, scheduler_.mainQueue(),
                                      scheduler_.backgroundTasks(), [this](const fs::path& path) {
                                          synced_.push_back(path);
                                          return syncWorks_;
                                      });
    }
    /// The file as anyone reads it.
    PropertyDictionary stored() { return storedAt(file_); }
    PropertyDictionary storedAt(const fs::path& file) {
        const std::string bytes = contentOf(file);
        const auto value =
            coder_->decode({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
        const auto* list = value ? value->as<PropertyDictionary>() : nullptr;
        EXPECT_TRUE(list) << "no list in " << file;
        return list ? *list : PropertyDictionary();
    }
    void write(const PropertyDictionary& list) {
        writeFile(file_, coder_->encode(list, PropertyListFormat::xml).value());
    }
    /// Names in the folder of the file, without the lock.
    std::vector<std::string> names() {
        std::vector<std::string> found;
        for (const auto& entry : fs::directory_iterator(folder_.path()))
            if (entry.path().extension() != ".lock") found.push_back(entry.path().filename().string());
        std::sort(found.begin(), found.end());
        return found;
    }
    std::size_t linesWith(const std::string& part) const {
        std::size_t count = 0;
        for (const auto& line : log_.systemLines)
            if (line.find(part) != std::string::npos) ++count;
        return count;
    }

    TemporaryFolder folder_;
    const fs::path file_ = folder_.path() / "com.pintle.app.plist";
    std::unique_ptr<PropertyListCoder> coder_ = makePlistCoder();
    FakeLog log_;
    VirtualScheduler scheduler_;
    std::vector<fs::path> synced_;
    bool syncWorks_ = true;
};

TEST_F(PreferenceFile, IsAnXmlListForItsOwnerAloneInFoldersMadeOnTheFirstWrite) {
    const fs::path deep = folder_.path() / "home" / ".config" / "com.pintle.app.plist";
    const auto store = openAt(deep);
    EXPECT_FALSE(fs::exists(folder_.path() / "home"));
    store->set("cursorScale", 1.5);
    EXPECT_THAT(contentOf(deep), HasSubstr("<key>cursorScale</key>"));
    EXPECT_THAT(contentOf(deep), HasSubstr("<?xml version=\"1.0\""));
    struct stat status = {};
    ASSERT_EQ(::stat(deep.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    ASSERT_EQ(::stat(deep.parent_path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0700U);
    EXPECT_TRUE(log_.systemLines.empty());
}

TEST_F(PreferenceFile, KeysThatNobodyHereKnowsAreKept) {
    write({{"someone else's", PropertyArray{1, PropertyDate{5}}}, {"cursorScale", 1.0}});
    open()->set("cursorScale", 2.0);
    EXPECT_EQ(stored(), (PropertyDictionary{{"someone else's", PropertyArray{1, PropertyDate{5}}},
                                            {"cursorScale", 2.0}}));
}

TEST_F(PreferenceFile, ABinaryListIsReadAsWell) {
    writeFile(file_, coder_->encode(PropertyDictionary{{"a", 1}}, PropertyListFormat::binary).value());
    const auto store = open();
    EXPECT_EQ(store->object("a"), PropertyValue(1));
    store->set("b", 2);
    EXPECT_EQ(stored(), (PropertyDictionary{{"a", 1}, {"b", 2}}));
}

TEST_F(PreferenceFile, ADamagedFileIsPutAsideAndReported) {
    writeFile(file_, std::string_view("<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>cur"));
    const std::string damaged = contentOf(file_);
    const auto store = open();
    EXPECT_THAT(names(), ::testing::ElementsAre("com.pintle.app.plist.damaged-1"));
    EXPECT_EQ(contentOf(file_.string() + ".damaged-1"), damaged);
    EXPECT_EQ(linesWith("put aside as " + file_.string() + ".damaged-1"), 1U);
    EXPECT_FALSE(store->object("cursorScale"));
    store->set("cursorScale", 1.0);
    EXPECT_EQ(stored(), (PropertyDictionary{{"cursorScale", 1.0}}));
    EXPECT_EQ(contentOf(file_.string() + ".damaged-1"), damaged);
}

TEST_F(PreferenceFile, ASecondDamagedFileDoesNotReplaceTheFirst) {
    for (const std::string_view text : {"first", "second", ""}) {
        writeFile(file_, text);
        open();
    }
    EXPECT_EQ(contentOf(file_.string() + ".damaged-1"), "first");
    EXPECT_EQ(contentOf(file_.string() + ".damaged-2"), "second");
    EXPECT_EQ(contentOf(file_.string() + ".damaged-3"), "");
    EXPECT_EQ(log_.systemLines.size(), 3U);
}

TEST_F(PreferenceFile, AListThatIsNoDictionaryIsDamaged) {
    writeFile(file_, coder_->encode(PropertyArray{1}, PropertyListFormat::xml).value());
    open();
    EXPECT_TRUE(fs::exists(file_.string() + ".damaged-1"));
}

TEST_F(PreferenceFile, AFileDamagedWhileTheStoreIsOpenIsPutAsideAndNothingIsLost) {
    const auto store = open();
    store->set("a", 1);
    writeFile(file_, std::string_view("garbage by someone else"));
    store->set("b", 2);
    EXPECT_EQ(contentOf(file_.string() + ".damaged-1"), "garbage by someone else");
    EXPECT_EQ(stored(), (PropertyDictionary{{"a", 1}, {"b", 2}}));
}

TEST_F(PreferenceFile, SomethingUnreadableIsLeftUntilAWriteAndThenPutAsideWhole) {
    fs::create_directories(file_ / "inside");
    const auto store = open();
    EXPECT_TRUE(fs::is_directory(file_));
    EXPECT_EQ(linesWith("cannot read " + file_.string()), 1U);
    store->set("a", 1);
    EXPECT_TRUE(fs::is_directory(file_.string() + ".damaged-1/inside"));
    EXPECT_EQ(stored(), (PropertyDictionary{{"a", 1}}));
}

TEST_F(PreferenceFile, APipeUnderItsNameDoesNotHang) {
    ASSERT_EQ(::mkfifo(file_.c_str(), 0600), 0);
    const auto store = open();
    store->set("a", 1);
    EXPECT_EQ(stored(), (PropertyDictionary{{"a", 1}}));
}

TEST_F(PreferenceFile, WhatCannotBePutAsideIsNotOverwritten) {
    // A name so long that no other can be made from it.
    const fs::path file = folder_.path() / std::string(250, 'p');
    writeFile(file, std::string_view("damaged"));
    const auto store = openAt(file);
    store->set("a", 1);
    store->set("b", 2);
    store->synchronize();
    EXPECT_EQ(contentOf(file), "damaged");
    EXPECT_EQ(store->object("a"), PropertyValue(1));
    EXPECT_EQ(store->object("b"), PropertyValue(2));
    EXPECT_EQ(log_.systemLines.size(), 1U);
}

TEST_F(PreferenceFile, ALinkIsKeptAndItsTargetWritten) {
    const fs::path target = folder_.path() / "dotfiles" / "pintle.plist";
    fs::create_directories(target.parent_path());
    fs::create_directories(folder_.path() / "config");
    const fs::path link = folder_.path() / "config" / "com.pintle.app.plist";
    fs::create_symlink("../dotfiles/hop", link);
    fs::create_symlink("pintle.plist", folder_.path() / "dotfiles" / "hop");
    // The target is absent at first.
    openAt(link)->set("a", 1);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_FALSE(fs::is_symlink(target));
    EXPECT_EQ(storedAt(target), (PropertyDictionary{{"a", 1}}));
    openAt(link)->set("b", 2);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(storedAt(target), (PropertyDictionary{{"a", 1}, {"b", 2}}));
}

TEST_F(PreferenceFile, ADamagedTargetOfALinkIsPutAsideAndTheLinkStays) {
    const fs::path target = folder_.path() / "target.plist";
    writeFile(target, std::string_view("damaged"));
    fs::create_symlink("target.plist", file_);
    open()->set("a", 1);
    EXPECT_TRUE(fs::is_symlink(file_));
    EXPECT_EQ(stored(), (PropertyDictionary{{"a", 1}}));
    EXPECT_EQ(contentOf(folder_.path() / "target.plist.damaged-1"), "damaged");
}

TEST_F(PreferenceFile, TwoStoresOfOneFileKeepEachOthersKeys) {
    const auto first = open();
    const auto second = open();
    first->set("a", 1);
    second->set("b", 2);
    first->set("c", 3);
    first->remove("b");
    EXPECT_EQ(stored(), (PropertyDictionary{{"a", 1}, {"c", 3}}));
    EXPECT_EQ(first->object("b"), std::nullopt);
}

TEST_F(PreferenceFile, AnObserverIsNotifiedOfAnotherStoresChangeWithTheNextWrite) {
    const auto first = open();
    const auto second = open();
    int calls = 0;
    const Subscription observer = first->observe("theme", [&] { ++calls; });
    second->set("theme", "bibata");
    EXPECT_EQ(calls, 0);
    first->set("other", 1);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(first->object("theme"), PropertyValue("bibata"));
}

TEST_F(PreferenceFile, RemovingTheDomainRemovesWhatAnotherStoreWroteToo) {
    const auto first = open();
    const auto second = open();
    second->set("theirs", 1);
    first->removeDomain();
    EXPECT_TRUE(stored().empty());
}

TEST_F(PreferenceFile, AFileThatWasDeletedComesBackWithWhatIsInMemory) {
    const auto store = open();
    store->set("a", 1);
    fs::remove(file_);
    store->set("b", 2);
    EXPECT_EQ(stored(), (PropertyDictionary{{"a", 1}, {"b", 2}}));
}

TEST_F(PreferenceFile, TwoProcessesThatWriteAtOnceKeepBothKeys) {
    ChildProcess first({"write", file_.string(), "first", "150"});
    ChildProcess second({"write", file_.string(), "second", "150"});
    EXPECT_EQ(first.wait(), 0);
    EXPECT_EQ(second.wait(), 0);
    EXPECT_EQ(stored(), (PropertyDictionary{{"first", 150}, {"second", 150}}));
    EXPECT_THAT(names(), ::testing::ElementsAre("com.pintle.app.plist"));
}

TEST_F(PreferenceFile, AProcessKilledWhileItWritesLeavesAWholeFile) {
    for (int round = 0; round < 12; ++round) {
        ChildProcess writer({"write", file_.string(), "counter", "0"});
        ASSERT_TRUE(writer.started());
        // Well into its loop, at a place that differs from round to round.
        const auto deadline = std::chrono::steady_clock::now() + 20s;
        const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(20 + 7 * round);
        while ((!fs::exists(file_) || stored().count("counter") == 0 ||
                std::chrono::steady_clock::now() < until) &&
               std::chrono::steady_clock::now() < deadline) {
        }
        writer.signal(SIGKILL);
        writer.wait();
        const auto list = stored();
        ASSERT_TRUE(list.contains("counter ballast"));
        ASSERT_EQ(list.at("counter ballast").as<PropertyArray>()->size(), 500U);
    }
    // What the killed ones left beside it goes with the next start.
    open();
    EXPECT_THAT(names(), ::testing::ElementsAre("com.pintle.app.plist"));
    EXPECT_TRUE(log_.systemLines.empty());
}

TEST_F(PreferenceFile, AStoppedProcessThatHoldsTheLockDoesNotStopThisOne) {
    const auto store = open();
    store->set("a", 1);
    const int lock = ::open((folder_.path() / ".com.pintle.app.plist.lock").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_GE(lock, 0);
    ASSERT_EQ(::flock(lock, LOCK_EX), 0);
    store->set("b", 2);
    EXPECT_EQ(stored(), (PropertyDictionary{{"a", 1}, {"b", 2}}));
    ::close(lock);
}

TEST_F(PreferenceFile, WhatWasWrittenWithoutTheLockSurvivesTheOneThatHeldIt) {
    const auto store = open();
    store->set("a", 1);
    const int lock = ::open((folder_.path() / ".com.pintle.app.plist.lock").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(::flock(lock, LOCK_EX), 0);
    store->set("b", 2);
    store->set("c", 3);
    scheduler_.advance(3s);
    // It had read the file before, and now replaces it.
    write({{"a", 1}, {"other", "value"}});
    ::close(lock);
    scheduler_.advance(10s);
    EXPECT_EQ(stored(), (PropertyDictionary{{"a", 1}, {"b", 2}, {"c", 3}, {"other", "value"}}));
    EXPECT_EQ(store->object("other"), PropertyValue("value"));
    // From here on the file is anyone's again.
    write({{"a", 1}});
    scheduler_.advance(3s);
    EXPECT_EQ(stored(), (PropertyDictionary{{"a", 1}}));
}

TEST_F(PreferenceFile, ALockThatIsNotGivenBackIsWaitedForOnce) {
    const auto store = open();
    store->set("a", 1);
    const int lock = ::open((folder_.path() / ".com.pintle.app.plist.lock").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(::flock(lock, LOCK_EX), 0);
    store->set("b", 0);
    const auto start = std::chrono::steady_clock::now();
    for (int i = 1; i <= 4; ++i) store->set("b", i);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 500ms);
    ::close(lock);
}

TEST_F(PreferenceFile, AFullDiskKeepsTheOldFileAndTheValueIsWrittenLater) {
    const auto store = open();
    store->set("a", 1);
    const std::string before = contentOf(file_);
    int calls = 0;
    const Subscription observer = store->observe("b", [&] { ++calls; });
    {
        const FullDisk full(100);
        store->set("b", 2);
        store->set("c", 3);
        store->remove("a");
    }
    EXPECT_EQ(contentOf(file_), before);
    EXPECT_THAT(names(), ::testing::ElementsAre("com.pintle.app.plist"));
    EXPECT_EQ(log_.systemLines.size(), 1U);
    EXPECT_EQ(linesWith("cannot write"), 1U);
    EXPECT_EQ(store->object("b"), PropertyValue(2));
    EXPECT_EQ(calls, 1);
    store->set("d", 4);
    EXPECT_EQ(stored(), (PropertyDictionary{{"b", 2}, {"c", 3}, {"d", 4}}));
    {
        const FullDisk full(100);
        store->set("e", 5);
    }
    EXPECT_EQ(log_.systemLines.size(), 2U);
    store->synchronize();
    EXPECT_EQ(stored().count("e"), 1U);
}

TEST_F(PreferenceFile, AValueThatCannotBeStoredDoesNotKeepTheOthersOut) {
    const auto store = open();
    store->set("bad", "\x01");
    store->set("good", 1);
    store->set("good", 2);
    EXPECT_EQ(stored(), (PropertyDictionary{{"good", 2}}));
    EXPECT_EQ(store->object("bad"), PropertyValue("\x01"));
    EXPECT_EQ(linesWith("\"bad\""), 1U);
    store->set("bad", "better");
    EXPECT_EQ(stored(), (PropertyDictionary{{"good", 2}, {"bad", "better"}}));
}

TEST_F(PreferenceFile, AValueThatStandsInTheFileIsNotWrittenAgain) {
    write({{"a", 1}, {"stranger", "kept"}});
    const auto store = open();
    struct stat before {};
    ASSERT_EQ(::stat(file_.c_str(), &before), 0);
    store->set("a", 1);
    store->remove("nowhere");
    struct stat after {};
    ASSERT_EQ(::stat(file_.c_str(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino);
    scheduler_.advance(1min);
    EXPECT_TRUE(synced_.empty());
    store->set("a", 2);
    EXPECT_EQ(stored(), (PropertyDictionary{{"a", 2}, {"stranger", "kept"}}));
    store->set("a", 1);
    EXPECT_EQ(stored(), (PropertyDictionary{{"a", 1}, {"stranger", "kept"}}));
}

TEST_F(PreferenceFile, AValueThatAnotherStoreReplacedIsWrittenAgain) {
    const auto store = open();
    store->set("a", 1);
    open()->set("a", 2);
    store->set("a", 1);
    EXPECT_EQ(stored(), (PropertyDictionary{{"a", 1}}));
}

TEST_F(PreferenceFile, TheDiskIsAskedAtMostOnceASecond) {
    const auto store = open();
    // Ten seconds, a write every 10 ms.
    for (int i = 0; i < 1000; ++i) {
        store->set("n", i);
        scheduler_.advance(10ms);
    }
    EXPECT_GE(synced_.size(), 9U);
    EXPECT_LE(synced_.size(), 11U);
    // Nothing more to bring there: the disk rests after the last one.
    scheduler_.advance(2s);
    const auto rested = synced_.size();
    scheduler_.advance(60s);
    EXPECT_EQ(synced_.size(), rested);
    EXPECT_EQ(synced_.front(), file_);
}

TEST_F(PreferenceFile, AWriteDuringASlowSynchronisationIsBroughtToTheDiskAfterIt) {
    const auto store = open();
    store->set("a", 1);
    scheduler_.holdBackground(true);
    scheduler_.advance(5s);
    store->set("b", 2);
    scheduler_.advance(5s);
    EXPECT_EQ(scheduler_.pendingBackground(), 1U);
    scheduler_.holdBackground(false);
    scheduler_.advance(5s);
    EXPECT_EQ(synced_.size(), 2U);
}

TEST_F(PreferenceFile, TheEndBringsTheRestToTheDiskAndOnlyIfThereIsSome) {
    auto store = open();
    store->set("a", 1);
    store.reset();
    EXPECT_EQ(synced_.size(), 1U);
    scheduler_.advance(10s);
    EXPECT_EQ(synced_.size(), 1U);
    open();
    EXPECT_EQ(synced_.size(), 1U);
}

TEST_F(PreferenceFile, SynchronizeBringsItToTheDiskAtOnce) {
    const auto store = open();
    store->set("a", 1);
    EXPECT_TRUE(synced_.empty());
    store->synchronize();
    EXPECT_EQ(synced_.size(), 1U);
    scheduler_.advance(10s);
    EXPECT_EQ(synced_.size(), 1U);
}

TEST_F(PreferenceFile, ADiskThatFailsIsReportedOnce) {
    syncWorks_ = false;
    const auto store = open();
    for (int i = 0; i < 5; ++i) {
        store->set("a", i);
        scheduler_.advance(2s);
    }
    EXPECT_EQ(linesWith("could not be brought onto the disk"), 1U);
}

TEST_F(PreferenceFile, TheRealSynchronisationWorks) {
    {
        const auto store = makePlistKeyValueStore(file_, *coder_, log_, scheduler_.mainQueue(),
                                                  scheduler_.backgroundTasks());
        store->set("a", 1);
        scheduler_.advance(2s);
        store->set("a", 2);
    }
    EXPECT_EQ(stored(), (PropertyDictionary{{"a", 2}}));
    EXPECT_TRUE(log_.systemLines.empty());
}

}  // namespace
}  // namespace pintle
