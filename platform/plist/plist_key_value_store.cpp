#include "platform/plist/plist_key_value_store.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "base/lifetime.h"
#include "base/signal.h"
#include "platform/posix/shared_file.h"

namespace pintle {
namespace {

namespace fs = std::filesystem;
using std::chrono::nanoseconds;

constexpr nanoseconds kSyncInterval = std::chrono::seconds(1);
constexpr nanoseconds kFirstConfirm = std::chrono::seconds(1);
constexpr nanoseconds kLastConfirm = std::chrono::minutes(1);

class PlistKeyValueStore : public KeyValueStore {
  public:
    PlistKeyValueStore(fs::path file, PropertyListCoder& coder, Log& log, MainQueue& queue,
                       BackgroundTasks& tasks, BringToDisk sync)
        : path_(std::move(file)),
          coder_(coder),
          log_(log),
          queue_(queue),
          tasks_(tasks),
          sync_(std::move(sync)) {
        const fs::path target = behindLinks(path_);
        Subscription lock;
        // Nothing is made before the first write: a folder that is absent has no file either.
        if (std::error_code error; fs::exists(target.parent_path(), error)) lock = lockFile(target);
        if (lock) removeLeftovers(target);
        refresh(target, Intent::read);
    }
    ~PlistKeyValueStore() override { PlistKeyValueStore::synchronize(); }

    std::optional<PropertyValue> object(const std::string& key) const override {
        if (const auto found = domain_.find(key); found != domain_.end()) return found->second;
        if (const auto found = defaults_.find(key); found != defaults_.end()) return found->second;
        return std::nullopt;
    }
    void set(const std::string& key, PropertyValue value) override { change({{key, std::move(value)}}); }
    void remove(const std::string& key) override { change({{key, std::nullopt}}); }
    void registerDefaults(const PropertyDictionary& defaults) override {
        for (const auto& [key, value] : defaults) defaults_.insert_or_assign(key, value);
    }
    void removeDomain() override {
        Changes removals;
        for (const auto& entry : domain_) removals.emplace(entry.first, std::nullopt);
        removeAll_ = true;
        change(removals);
    }
    Subscription observe(std::string key, std::function<void()> changed) override {
        return changes_.observe(
            [key = std::move(key), changed = std::move(changed)](const std::string& which) {
                if (which == key) changed();
            });
    }
    void synchronize() override {
        if (!pending_.empty() || removeAll_) write();
        if (!dirty_) return;
        dirty_ = false;
        syncTimer_.end();
        report(sync_(behindLinks(path_)));
        lastSync_ = queue_.now();
    }

  private:
    /// Absent: the key is removed.
    using Changes = std::map<std::string, std::optional<PropertyValue>>;
    enum class Intent { read, write };

    void change(const Changes& changes) {
        if (standInFile(changes)) return;
        const PropertyDictionary before = domain_;
        for (const auto& [key, value] : changes) {
            if (value)
                domain_.insert_or_assign(key, *value);
            else
                domain_.erase(key);
            pending_.insert_or_assign(key, value);
        }
        write();
        announce(before);
    }

    /// Whether the file already has these values, and nobody has replaced it since it was read. Each write
    /// encodes and replaces the whole file, however large it has become.
    bool standInFile(const Changes& changes) const {
        if (!pending_.empty() || removeAll_ || !stamp_) return false;
        const bool same = std::ranges::all_of(changes, [this](const auto& each) {
            const auto found = domain_.find(each.first);
            return found == domain_.end() ? !each.second : each.second && found->second == *each.second;
        });
        return same && *stamp_ == stampOf(behindLinks(path_));
    }

    /// Notifies the observers of every key whose answer differs, other processes' keys included.
    void announce(const PropertyDictionary& before) {
        std::vector<std::string> different;
        const auto answer = [this](const PropertyDictionary& domain,
                                   const std::string& key) -> const PropertyValue* {
            if (const auto found = domain.find(key); found != domain.end()) return &found->second;
            if (const auto found = defaults_.find(key); found != defaults_.end()) return &found->second;
            return nullptr;
        };
        const auto compare = [&](const std::string& key) {
            const auto* old = answer(before, key);
            const auto* now = answer(domain_, key);
            if ((old == nullptr) != (now == nullptr) || (old && !(*old == *now))) different.push_back(key);
        };
        for (const auto& entry : before) compare(entry.first);
        for (const auto& entry : domain_)
            if (!before.contains(entry.first)) compare(entry.first);
        for (const auto& key : different) changes_.emit(key);
    }

    /// Brings what is pending into the file. On a failure it stays pending.
    void write() {
        const fs::path target = behindLinks(path_);
        // Whoever did not let go of it in time once is not waited for again.
        const Subscription lock = lockFile(target, confirmTimer_ ? LockWait::none : LockWait::halfASecond);
        if (lock)
            confirmTimer_.end();
        else if (!confirmTimer_)
            confirmLater();
        writeTo(target, static_cast<bool>(lock));
    }

    /// What was written without the lock may be lost to one who held it: that one had read the file before
    /// and replaces it afterwards. So it stays pending until it stands there under the lock.
    void confirmLater(nanoseconds wait = kFirstConfirm) {
        confirmTimer_ = queue_.after(wait, [this, wait] {
            const fs::path target = behindLinks(path_);
            const Subscription lock = lockFile(target, LockWait::none);
            if (!lock) {
                confirmLater(std::min(wait * 2, kLastConfirm));
                return;
            }
            confirmTimer_.end();
            if (pending_.empty() && !removeAll_) return;
            const PropertyDictionary before = domain_;
            writeTo(target, true);
            announce(before);
        });
    }

    void writeTo(const fs::path& target, bool isLocked) {
        if (!refresh(target, Intent::write)) return;
        PropertyDictionary list = domain_;
        auto bytes = coder_.encode(list, PropertyListFormat::xml);
        if (bytes) {
            unwritable_.clear();
        } else {
            leaveOutUnwritable(list);
            bytes = coder_.encode(list, PropertyListFormat::xml);
        }
        if (!bytes) {
            complain("preferences cannot be encoded");
            return;
        }
        const auto written = replaceFile(target, *bytes);
        if (!written) {
            complain(written.error().description);
            return;
        }
        stamp_ = written.value();
        if (isLocked) {
            std::erase_if(pending_, [this](const auto& entry) { return !unwritable_.contains(entry.first); });
            removeAll_ = false;
        }
        complained_ = false;
        dirty_ = true;
        scheduleSync();
    }

    /// Brings `domain_` up to date with the file, with the pending changes on top. False when the file must
    /// not be replaced.
    bool refresh(const fs::path& target, Intent intent) {
        if (intent == Intent::write && stamp_ && *stamp_ == stampOf(target)) return true;
        const FileContent content = readWholeFile(target);
        switch (content.outcome) {
            case FileContent::Outcome::absent:
                // Here nobody has written: what is in memory is the newest there is.
                stamp_.reset();
                return true;
            case FileContent::Outcome::failed:
                complain("cannot read " + target.string() + ": " + content.reason);
                return false;
            case FileContent::Outcome::unreadable:
                if (intent == Intent::read) {
                    complain("cannot read " + target.string() + ": " + content.reason);
                    return false;
                }
                return setAside(target, content.reason);
            case FileContent::Outcome::read:
                break;
        }
        auto value = coder_.decode(content.bytes);
        const auto* list = value ? value->as<PropertyDictionary>() : nullptr;
        if (!list) return setAside(target, "it is not a property list of preferences");
        domain_ = removeAll_ ? PropertyDictionary() : *list;
        for (const auto& [key, change] : pending_) {
            if (change)
                domain_.insert_or_assign(key, *change);
            else
                domain_.erase(key);
        }
        stamp_ = content.stamp;
        return true;
    }

    bool setAside(const fs::path& target, const std::string& reason) {
        stamp_.reset();
        const auto aside = putAside(target);
        if (!aside) {
            complain(fmt::format("{} is damaged ({}) and stays as it is: {}", target.string(), reason,
                                 aside.error().description));
            return false;
        }
        log_.system(fmt::format("[KeyValueStore] {} could not be used ({}); it was put aside as {}",
                                target.string(), reason, aside.value().string()));
        return true;
    }

    /// Values without a form in the file live in memory only; they must not keep the others from it.
    void leaveOutUnwritable(PropertyDictionary& list) {
        const auto known = std::exchange(unwritable_, {});
        std::erase_if(list, [&](const auto& entry) {
            const PropertyDictionary alone{entry};
            if (coder_.encode(alone, PropertyListFormat::xml)) return false;
            unwritable_.insert(entry.first);
            if (known.contains(entry.first)) return true;
            log_.system(fmt::format("[KeyValueStore] the value of \"{}\" cannot be stored", entry.first));
            return true;
        });
    }

    /// One line for a failure that goes on, not one for each try.
    void complain(const std::string& what) {
        if (std::exchange(complained_, true)) return;
        log_.system("[KeyValueStore] " + what + "; preferences are kept in memory");
    }

    void scheduleSync() {
        if (syncTimer_ || syncing_) return;
        const nanoseconds wait = lastSync_ ? *lastSync_ + kSyncInterval - queue_.now() : nanoseconds{0};
        syncTimer_ = queue_.after(std::max(wait, nanoseconds{0}), [this] {
            syncTimer_.end();
            if (!dirty_) return;
            dirty_ = false;
            syncing_ = true;
            lastSync_ = queue_.now();
            runInBackground(
                tasks_, queue_, lifetime_, Priority::utility,
                [sync = sync_, target = behindLinks(path_)] { return sync(target); },
                [this](bool done) {
                    syncing_ = false;
                    report(done);
                    if (dirty_) scheduleSync();
                });
        });
    }

    void report(bool synchronized) {
        if (synchronized || std::exchange(syncComplained_, true)) return;
        log_.system("[KeyValueStore] " + path_.string() + " could not be brought onto the disk");
    }

    const fs::path path_;
    PropertyListCoder& coder_;
    Log& log_;
    MainQueue& queue_;
    BackgroundTasks& tasks_;
    const BringToDisk sync_;

    PropertyDictionary domain_;
    PropertyDictionary defaults_;
    /// Written here and not yet in the file.
    Changes pending_;
    /// Keys whose values have no form in the file.
    std::set<std::string> unwritable_;
    /// The whole domain is to go before the pending changes.
    bool removeAll_ = false;
    /// Of the file that `domain_` agrees with; absent while there is none.
    std::optional<FileStamp> stamp_;
    bool complained_ = false;
    bool syncComplained_ = false;
    /// Something was renamed into place since the last time the disk was asked.
    bool dirty_ = false;
    bool syncing_ = false;
    std::optional<nanoseconds> lastSync_;
    Signal<const std::string&> changes_;
    Timer syncTimer_;
    /// Runs while something was written without the lock.
    Timer confirmTimer_;
    Lifetime lifetime_;
};

}  // namespace

std::unique_ptr<KeyValueStore> makePlistKeyValueStore(fs::path file, PropertyListCoder& coder, Log& log,
                                                      MainQueue& queue, BackgroundTasks& tasks) {
    return makePlistKeyValueStore(std::move(file), coder, log, queue, tasks, bringToDisk);
}

std::unique_ptr<KeyValueStore> makePlistKeyValueStore(fs::path file, PropertyListCoder& coder, Log& log,
                                                      MainQueue& queue, BackgroundTasks& tasks,
                                                      BringToDisk bringToDisk) {
    return std::make_unique<PlistKeyValueStore>(std::move(file), coder, log, queue, tasks,
                                                std::move(bringToDisk));
}

}  // namespace pintle
