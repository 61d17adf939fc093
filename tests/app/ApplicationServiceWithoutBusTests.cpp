#include "app/ApplicationService.h"

#include "app/AppDelegateFixture.h"

namespace snapvane {

namespace {

using ApplicationServiceWithoutBusTest = testing::DelegateTest;

TEST_F(ApplicationServiceWithoutBusTest, TheProgramRunsAllTheSame) {
    // Named outright: the library would look for one in the usual places otherwise.
    qputenv("DBUS_SESSION_BUS_ADDRESS",
            ("unix:path=" + folder.filePath(QStringLiteral("no-bus")).toLocal8Bit()));
    {
        ApplicationService service(*delegate);
        EXPECT_EQ(service.claim(), ApplicationService::Claim::NoBus);
    }
    launch();
    delegate->beginCaptureFromMenu();
    EXPECT_TRUE(isSelecting());
}

} // namespace

} // namespace snapvane
