#include "base/notification_center.h"

#include <gtest/gtest.h>

#include <string>

namespace pintle {
namespace {

TEST(NotificationCenter, DeliversTheObjectToObserversOfTheNameOnly) {
    NotificationCenter center;
    double received = 0;
    int other = 0;
    const auto one =
        center.observe("cursorScaleChanged", [&](const std::any& o) { received = std::any_cast<double>(o); });
    const auto two = center.observe("cursorScaleChanged2", [&](const std::any&) { ++other; });
    center.post("cursorScaleChanged", 1.5);
    EXPECT_EQ(received, 1.5);
    EXPECT_EQ(other, 0);
}

TEST(NotificationCenter, AnEndedSubscriptionReceivesNothingEvenWhenEndedDuringThePost) {
    NotificationCenter center;
    int calls = 0;
    Subscription second;
    const auto first = center.observe("n", [&](const std::any&) { second.end(); });
    second = center.observe("n", [&](const std::any&) { ++calls; });
    center.post("n");
    EXPECT_EQ(calls, 0);
}

TEST(NotificationCenter, ASubscriptionMayOutliveTheCenter) {
    Subscription handle;
    {
        NotificationCenter center;
        handle = center.observe("n", [](const std::any&) {});
    }
    handle.end();
}

}  // namespace
}  // namespace pintle
