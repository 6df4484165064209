#include <gmock/gmock.h>

#include <memory>
#include <vector>

#include "platform/fake/fake_key_value_store.h"
#include "platform/fake/fake_log.h"
#include "platform/fake/virtual_scheduler.h"
#include "platform/plist/plist_coder.h"
#include "platform/plist/plist_key_value_store.h"
#include "tests/support/temporary_folder.h"

namespace pintle {
namespace {

class FakeDomain {
  public:
    std::unique_ptr<KeyValueStore> open() { return std::make_unique<FakeKeyValueStore>(shared_); }

  private:
    std::shared_ptr<PropertyDictionary> shared_ = std::make_shared<PropertyDictionary>();
};

class FileDomain {
  public:
    std::unique_ptr<KeyValueStore> open() {
        return makePlistKeyValueStore(folder_.path() / "config" / "com.pintle.app.plist", *coder_, log_,
                                      scheduler_.mainQueue(), scheduler_.backgroundTasks());
    }

  private:
    TemporaryFolder folder_;
    std::unique_ptr<PropertyListCoder> coder_ = makePlistCoder();
    FakeLog log_;
    VirtualScheduler scheduler_;
};

using KeyValueDomains = ::testing::Types<FakeDomain, FileDomain>;

}  // namespace
}  // namespace pintle

#include "tests/contract/key_value_store_contract.h"
