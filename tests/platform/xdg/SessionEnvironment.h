#pragma once

#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <memory>

namespace snapvane::testing {

/// The session that the tests of this program stand on: a bus of its own, and settings in a file
/// below the private home folder. The bus knows how to start the desktops' services, but all that
/// starting them does is to leave a mark. Main thread.
class SessionEnvironment : public ::testing::Environment {
public:
    void SetUp() override;
    void TearDown() override;

    /// True when the bus was asked to start the service at some time.
    static bool wasStarted(const QString& service);
    /// Lets the bus start a service, and waits until it has done so.
    static void letTheBusStartAnother();

private:
    std::unique_ptr<PrivateBus> m_bus;
};

} // namespace snapvane::testing
