#include <gmock/gmock.h>

#include <vector>

#include "tests/contract/queue_worlds.h"

namespace pintle {
namespace {

using QueueWorlds = ::testing::Types<VirtualWorld, QtWorld>;

}  // namespace
}  // namespace pintle

#include "tests/contract/main_queue_contract.h"
