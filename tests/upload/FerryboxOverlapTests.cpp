// Uploads do not know of each other, do not hold up the program, and end with it.

#include "UploadFixture.h"

#include "support/ProcessMemory.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QScopeGuard>

#include <semaphore>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

using testing::answering;
using testing::FerryboxServer;
using testing::processEventsUntil;
using testing::RecordedRequest;

/// How an upload that the test does not wait for has ended.
struct Outcome {
    bool ended = false;
    QUrl link;
    QString failure;
};

QCoro::Task<> keep(QCoro::Task<QUrl> uploading, Outcome* outcome) {
    try {
        outcome->link = co_await uploading;
    } catch (const LocalizedError& error) {
        outcome->failure = error.localizedDescription();
    }
    outcome->ended = true;
}

class UploadOverlap : public testing::UploadTest {
protected:
    static constexpr char abandoned[] = "The upload was abandoned.";

    bool waitForPresigns(const FerryboxServer& server, std::size_t count = 1) {
        return processEventsUntil([&] { return server.presigns().size() == count; });
    }
    bool waitForPuts(const FerryboxServer& server) {
        return processEventsUntil([&] { return !server.puts().empty(); });
    }
};

} // namespace

TEST_F(UploadOverlap, SecondUploadOvertakesTheFirst) {
    // By the test, and at its end, should it fail before: the server waits for the answer.
    std::counting_semaphore<2> mayAnswer(0);
    const FerryboxServer slow({.presign = [&](const RecordedRequest&) {
        mayAnswer.acquire();
        return answering(403);
    }});
    const auto ending = qScopeGuard([&mayAnswer] { mayAnswer.release(); });
    const FerryboxServer quick;
    Outcome first;
    keep(startUpload(slow.baseURL()), &first);
    ASSERT_TRUE(waitForPresigns(slow));
    EXPECT_EQ(upload(quick), FerryboxServer::publicURL());
    EXPECT_FALSE(first.ended);
    mayAnswer.release();
    EXPECT_TRUE(processEventsUntil([&] { return first.ended; }));
    EXPECT_EQ(first.failure, u"Ferrybox presign failed (HTTP 403)."_s);
}

TEST_F(UploadOverlap, ManyAtOnceEachPutTheirOwn) {
    // More than the library opens connections to one host.
    constexpr int count = 12;
    FerryboxServer server({.presign = [&](const RecordedRequest& request) {
        const QByteArray number = request.header("X-API-Key").value();
        QUrl url = server.uploadURL();
        url.setPath(u"/bucket/"_s + QString::fromLatin1(number));
        QJsonObject answer = FerryboxServer::presignAnswer(url);
        answer[u"publicUrl"_s] = u"https://ferrybox.example/"_s + QString::fromLatin1(number);
        return answering(200, QJsonDocument(answer).toJson());
    }});
    std::vector<Outcome> outcomes(count);
    for (int i = 0; i < count; ++i) {
        key.key = QString::number(i);
        keep(startUpload(server.baseURL(), "picture " + QByteArray::number(i)),
             &outcomes.at(static_cast<std::size_t>(i)));
    }
    ASSERT_TRUE(processEventsUntil([&] { return std::ranges::all_of(outcomes, &Outcome::ended); }));
    for (int i = 0; i < count; ++i) {
        EXPECT_EQ(outcomes.at(static_cast<std::size_t>(i)).link,
                  QUrl(u"https://ferrybox.example/%1"_s.arg(i)));
    }
    const auto puts = server.puts();
    ASSERT_EQ(puts.size(), static_cast<std::size_t>(count));
    for (const RecordedRequest& put : puts) {
        EXPECT_TRUE(put.target().startsWith("/bucket/" + put.body.mid(8) + '?'));
    }
}

TEST_F(UploadOverlap, MainThreadGoesOnMeanwhile) {
    const testing::HttpPlan late = {
        .steps = {{.kind = testing::HttpStep::Kind::Pause, .time = std::chrono::milliseconds(400)},
                  {.bytes = testing::httpAnswer(403)}}};
    const FerryboxServer server({.presign = always(late)});
    int turns = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&turns] { ++turns; });
    timer.start(10);
    failureText(server);
    EXPECT_GE(turns, 15);
}

TEST_F(UploadOverlap, EndOfTheSessionAbandonsAPresign) {
    FerryboxServer server({.presign = always(testing::stalling())});
    Outcome outcome;
    keep(startUpload(server.baseURL()), &outcome);
    ASSERT_TRUE(waitForPresigns(server));
    QElapsedTimer clock;
    clock.start();
    session.reset();
    EXPECT_TRUE(processEventsUntil([&] { return outcome.ended; }));
    EXPECT_LT(clock.elapsed(), 2000);
    EXPECT_EQ(outcome.failure, QLatin1String(abandoned));
    EXPECT_TRUE(processEventsUntil([&] { return server.server().openConnectionCount() == 0; }));
}

TEST_F(UploadOverlap, EndOfTheSessionAbandonsAPut) {
    testing::HttpPlan half = testing::stalling();
    half.bodyBytesToRead = 100'000;
    FerryboxServer server({.put = always(half)});
    Outcome outcome;
    keep(startUpload(server.baseURL(), QByteArray(24 * 1024 * 1024, 'x')), &outcome);
    ASSERT_TRUE(waitForPuts(server));
    session.reset();
    EXPECT_TRUE(processEventsUntil([&] { return outcome.ended; }));
    EXPECT_EQ(outcome.failure, QLatin1String(abandoned));
    EXPECT_TRUE(processEventsUntil([&] { return server.server().openConnectionCount() == 0; }));
}

TEST_F(UploadOverlap, EndOfTheSessionAbandonsAllOfThem) {
    const FerryboxServer server({.presign = always(testing::stalling())});
    std::vector<Outcome> outcomes(3);
    for (Outcome& outcome : outcomes) {
        keep(startUpload(server.baseURL()), &outcome);
    }
    ASSERT_TRUE(waitForPresigns(server, outcomes.size()));
    session.reset();
    EXPECT_TRUE(processEventsUntil([&] { return std::ranges::all_of(outcomes, &Outcome::ended); }));
    for (const Outcome& outcome : outcomes) {
        EXPECT_EQ(outcome.failure, QLatin1String(abandoned));
    }
}

TEST_F(UploadOverlap, KeyThatComesAfterTheEndOfTheSessionIsNotSent) {
    FerryboxServer server;
    key.held = true;
    Outcome outcome;
    keep(startUpload(server.baseURL()), &outcome);
    session.reset();
    key.release();
    EXPECT_TRUE(processEventsUntil([&] { return outcome.ended; }));
    EXPECT_EQ(outcome.failure, QLatin1String(abandoned));
    EXPECT_EQ(server.server().connectionCount(), 0);
}

} // namespace snapvane
