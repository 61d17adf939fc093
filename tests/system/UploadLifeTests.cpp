// Uploads that overlap or are cut short, and where the key is not.

#include "UploadSuite.h"
#include "Wait.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>

#include <atomic>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

class UploadLife : public UploadSuite {
protected:
    void TearDown() override {
        // The service does not end while it holds a request, which a failed test has left it with.
        mayAnswer = true;
        UploadSuite::TearDown();
    }

    void waitForPresigns(std::size_t count) {
        require("the presign request", [&] { return service().presigns().size() == count; });
    }

    // For what the service does on its own threads, until it ends in TearDown().
    std::atomic<bool> mayAnswer = false;
    std::atomic<int> asked = 0;
};

TEST_F(UploadLife, SecondCaptureDoesNotWaitForTheUploadOfTheFirst) {
    startService({.presign = [&](const RecordedRequest&) {
        const bool isFirst = ++asked == 1;
        while (isFirst && !mayAnswer) {
            pause(std::chrono::milliseconds(5));
        }
        QJsonObject answer = FerryboxServer::presignAnswer(service().uploadURL());
        answer[u"publicUrl"_s] =
            isFirst ? u"https://ferrybox.example/first"_s : u"https://ferrybox.example/second"_s;
        return answering(200, QJsonDocument(answer).toJson());
    }});
    startLoopbackAgent("uploadFerrybox");
    select(area);
    waitForPresigns(1);
    select({300, 300, 50, 40});
    EXPECT_TRUE(waitForText(u"Link copied"_s));
    EXPECT_EQ(clipboard().read("UTF8_STRING"), "https://ferrybox.example/second");
    waitForNoNotice();
    mayAnswer = true;
    EXPECT_TRUE(waitForText(u"Link copied"_s));
    EXPECT_EQ(clipboard().read("UTF8_STRING"), "https://ferrybox.example/first");
    ASSERT_EQ(service().puts().size(), 2U);
    EXPECT_EQ(QImage::fromData(service().puts()[0].body).size(), QSize(50, 40));
    EXPECT_EQ(QImage::fromData(service().puts()[1].body).size(), area.size());
}

TEST_F(UploadLife, QuittingDoesNotWaitForAServer) {
    startService({.presign = always(stalling())});
    startLoopbackAgent("uploadFerrybox");
    select(area);
    waitForPresigns(1);
    QElapsedTimer clock;
    clock.start();
    const ChildProcess::Exit exit = agent().terminate();
    EXPECT_LT(clock.elapsed(), 2500 * slowness());
    EXPECT_EQ(exit.signal, 0);
    EXPECT_EQ(exit.code, 0);
    EXPECT_TRUE(waitUntil([this] { return service().server().openConnectionCount() == 0; },
                          std::chrono::seconds(5)));
}

TEST_F(UploadLife, QuittingInAnUploadSavesThePictureStill) {
    HttpPlan half = stalling();
    half.bodyBytesToRead = 10;
    startService({.put = always(half)});
    startLoopbackAgent("saveToFolder, uploadFerrybox");
    select(area);
    require("the put request", [this] { return service().puts().size() == 1; });
    EXPECT_TRUE(agent().savedPictures().isEmpty());
    const ChildProcess::Exit exit = agent().terminate();
    EXPECT_EQ(exit.signal, 0);
    EXPECT_EQ(exit.code, 0);
    EXPECT_EQ(agent().savedPictures().size(), 1);
}

/// Every way in which the key might have been written down.
QByteArrayList spellings(const QByteArray& key) {
    const QString text = QString::fromLatin1(key);
    const QByteArray wide(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
    return {key, wide, key.toHex(), key.toBase64(QByteArray::OmitTrailingEquals).chopped(1)};
}

::testing::AssertionResult holdsNone(const QString& path, const QByteArrayList& spelled) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return ::testing::AssertionFailure() << "cannot read " << path.toStdString();
    }
    const QByteArray contents = file.readAll();
    for (const QByteArray& spelling : spelled) {
        if (contents.contains(spelling)) {
            return ::testing::AssertionFailure() << path.toStdString() << " holds the key";
        }
    }
    return ::testing::AssertionSuccess();
}

TEST_F(UploadLife, KeyIsWrittenDownNowhere) {
    const QByteArrayList spelled = spellings(key);
    const QString processFiles = u"/proc/%1/"_s;
    // One upload that succeeds, one that is refused, one that never ends.
    startService({.presign = [&](const RecordedRequest&) {
        switch (++asked) {
        case 1:
            return answering(
                200, QJsonDocument(FerryboxServer::presignAnswer(service().uploadURL())).toJson());
        case 2:
            return answering(403, key, "text/plain");
        default:
            return stalling();
        }
    }});
    startLoopbackAgent("copyToClipboard, saveToFolder, uploadFerrybox");
    for (std::size_t captures = 1; captures <= 3; ++captures) {
        // Another second, for another name.
        pause(std::chrono::milliseconds(1100));
        select(area);
        waitForPresigns(captures);
    }
    ASSERT_EQ(service().presigns()[2].header("X-API-Key"), key);
    EXPECT_TRUE(holdsNone(processFiles.arg(agent().id()) + u"cmdline"_s, spelled));
    EXPECT_TRUE(holdsNone(processFiles.arg(agent().id()) + u"environ"_s, spelled));
    EXPECT_FALSE(clipboard().read("UTF8_STRING").value_or(QByteArray()).contains(key));
    agent().terminate();

    int files = 0;
    for (QDirIterator found(desktop().folders().path({}),
                            QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                            QDirIterator::Subdirectories);
         found.hasNext(); ++files) {
        EXPECT_TRUE(holdsNone(found.next(), spelled));
    }
    // Preferences, pictures, logs and the keyring at least.
    EXPECT_GT(files, 6);
    for (const RecordedRequest& put : service().puts()) {
        EXPECT_FALSE((put.head + put.body).contains(key));
    }
}

TEST(KeySearch, FindsEverySpelling) {
    const QTemporaryDir folder;
    const QByteArray key = "a key to be found";
    for (const QByteArray& spelling : spellings(key)) {
        QFile file(folder.filePath(u"file"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("before " + spelling + " after");
        file.close();
        EXPECT_FALSE(holdsNone(file.fileName(), spellings(key)));
    }
    EXPECT_FALSE(holdsNone(folder.filePath(u"absent"_s), spellings(key)));
}

} // namespace

} // namespace snapvane::testing
