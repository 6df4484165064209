// All fakes of the platform, virtual time and temporary folders. A test builds from it the objects it needs.
#pragma once

#include "base/notification_center.h"
#include "platform/bundle.h"
#include "platform/fake/fake_hardware_cursor.h"
#include "platform/fake/fake_http_client.h"
#include "platform/fake/fake_image_service.h"
#include "platform/fake/fake_key_value_store.h"
#include "platform/fake/fake_log.h"
#include "platform/fake/fake_process.h"
#include "platform/fake/fake_process_runner.h"
#include "platform/fake/fake_property_list_coder.h"
#include "platform/fake/fake_window_server.h"
#include "platform/fake/fake_workspace.h"
#include "platform/fake/virtual_scheduler.h"
#include "tests/support/temporary_folder.h"

namespace pintle {

struct TestWorld {
    TemporaryFolder folder;
    UserDirectories directories{folder.path() / "share", folder.path() / "tmp", folder.path() / "home"};
    FakeLog log;
    VirtualScheduler scheduler;
    NotificationCenter notifications;
    FakeKeyValueStore store;
    FakeWindowServer windowServer;
    FakeHardwareCursor hardwareCursor;
    FakeWorkspace workspace;
    FakeImageService images;
    FakePropertyListCoder propertyLists;
    FakeProcessHints hints;
    FakeHttpClient http{scheduler.mainQueue()};
    FakeProcessRunner processes{scheduler.mainQueue()};

    std::filesystem::path themesDirectory() const {
        return directories.applicationSupport / "Pintle" / "Themes";
    }
};

}  // namespace pintle
