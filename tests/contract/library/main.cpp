// Runs the tests inside one application object of the toolkit, without root's rights where asked to.
#include <grp.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <QCoreApplication>
#include <cstdlib>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    constexpr unsigned kNobody = 65534;
    // The real user stays, so that the suite can still make its archives and remove them.
    if (std::getenv("PINTLE_TEST_AS_NOBODY") && ::geteuid() == 0)
        if (::setgroups(0, nullptr) != 0 || ::setegid(kNobody) != 0 || ::seteuid(kNobody) != 0) return 2;
    QCoreApplication::setSetuidAllowed(true);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
