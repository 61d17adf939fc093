// The action of uploading, with the real client.

#include "UploadFixture.h"

#include "actions/FerryboxUploadCaptureAction.h"
#include "platform/null/NullPlatform.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

using testing::FerryboxServer;

class UploadAction : public testing::UploadTest {
protected:
    static CaptureResult capture() {
        CaptureResult result;
        result.pngData = pictureBytes();
        result.capturedAt = QDateTime(QDate(2025, 3, 2), QTime(14, 3, 9));
        return result;
    }
    std::optional<QString> perform(const FerryboxServer& server) {
        FerryboxUploadService service(server.baseURL(), *session, key.loader());
        FerryboxUploadCaptureAction action(service, pasteboard);
        return await(action.perform(capture()));
    }

    null::NullPasteboard pasteboard;
};

} // namespace

TEST_F(UploadAction, PutsTheLinkOnTheClipboard) {
    const FerryboxServer server;
    EXPECT_EQ(perform(server), u"Link copied"_s);
    ASSERT_EQ(pasteboard.writes.size(), 1U);
    EXPECT_EQ(pasteboard.writes[0].text, FerryboxServer::publicURL().toString());
    EXPECT_EQ(pasteboard.writes[0].url, FerryboxServer::publicURL());
    EXPECT_EQ(pasteboard.writes[0].png, std::nullopt);
}

TEST_F(UploadAction, NamesTheFileAfterItsTime) {
    const FerryboxServer server;
    perform(server);
    EXPECT_EQ(QJsonDocument::fromJson(server.presigns().at(0).body).object()[u"filename"_s],
              QJsonValue(u"Snapvane 2025-03-02 14.03.09.png"_s));
}

TEST_F(UploadAction, FailureLeavesTheClipboardAlone) {
    const FerryboxServer server({.put = always(testing::answering(500))});
    EXPECT_THROW(perform(server), FerryboxUploadError);
    EXPECT_TRUE(pasteboard.writes.empty());
}

} // namespace snapvane
