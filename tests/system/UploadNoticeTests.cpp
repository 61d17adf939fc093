// What comes of a capture when the program can upload: notice, log, clipboard, file and server.

#include "ClipboardOwner.h"
#include "UploadSuite.h"
#include "Wait.h"

#include <QJsonDocument>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

const QString linkCopied = u"Link copied"_s;
const QString imageCopied = u"Image copied"_s;
const QString saved = uR"(Saved to Snapvane \d{4}-\d\d-\d\d \d\d\.\d\d\.\d\d\.png)"_s;
const QString dot = u" \u00b7 "_s;
const QString noFolder = u"Snapvane: Not a directory"_s;
const QString refused = uR"(Ferrybox presign failed \(HTTP 403\)\.)"_s;
const QString notTaken = uR"(Ferrybox upload failed\.)"_s;
const QString noLink = uR"(Ferrybox returned an invalid link\.)"_s;
const QString unexpected = uR"(Unexpected response from Ferrybox\.)"_s;

enum class Fault { None, Presign, Put, Link, NoHttp };

struct Case {
    const char* name;
    const char* actions;
    Fault fault = Fault::None;
    bool folderBlocked = false;
    /// The notice that stays, as a regular expression.
    QString notice;
    /// What the log says of failures, in order.
    QStringList failures;
    bool linkOnClipboard = false;
    bool imageOnClipboard = false;
};

void PrintTo(const Case& row, std::ostream* stream) {
    *stream << row.name;
}

const QString upload = u"Upload failed: "_s;
const QString save = u"Save failed: "_s;

const Case cases[] = {
    {"Copy", "copyToClipboard", Fault::None, false, imageCopied, {}, false, true},
    {"Upload", "uploadFerrybox", Fault::None, false, linkCopied, {}, true, false},
    {"UploadCopy",
     "copyToClipboard, uploadFerrybox",
     Fault::None,
     false,
     linkCopied + dot + imageCopied,
     {},
     true,
     true},
    {"Save", "saveToFolder", Fault::None, false, saved, {}, false, false},
    {"UploadSave",
     "saveToFolder, uploadFerrybox",
     Fault::None,
     false,
     linkCopied + dot + saved,
     {},
     true,
     false},
    {"UploadSaveCopy",
     "copyToClipboard, saveToFolder, uploadFerrybox",
     Fault::None,
     false,
     linkCopied + dot + saved + dot + imageCopied,
     {},
     true,
     true},
    {"UploadFails", "uploadFerrybox", Fault::Presign, false, refused, {upload + refused}},
    {"UploadFailsCopy",
     "copyToClipboard, uploadFerrybox",
     Fault::Presign,
     false,
     imageCopied,
     {upload + refused},
     false,
     true},
    {"UploadFailsSave",
     "saveToFolder, uploadFerrybox",
     Fault::Put,
     false,
     saved,
     {upload + notTaken}},
    {"UploadAndSaveFail",
     "saveToFolder, uploadFerrybox",
     Fault::Put,
     true,
     noFolder,
     {upload + notTaken, save + noFolder}},
    {"SaveFailsUpload",
     "saveToFolder, uploadFerrybox",
     Fault::None,
     true,
     linkCopied,
     {save + noFolder},
     true,
     false},
    {"SaveFailsUploadCopy",
     "copyToClipboard, saveToFolder, uploadFerrybox",
     Fault::None,
     true,
     linkCopied + dot + imageCopied,
     {save + noFolder},
     true,
     true},
    {"SaveFailsCopy",
     "copyToClipboard, saveToFolder",
     Fault::None,
     true,
     imageCopied,
     {save + noFolder},
     false,
     true},
    {"NoLink", "uploadFerrybox", Fault::Link, false, noLink, {upload + noLink}},
    {"NoHttp", "uploadFerrybox", Fault::NoHttp, false, unexpected, {upload + unexpected}},
};

FerryboxServer::Faults faultsFor(Fault fault, FerryboxServer::Handler withoutLink) {
    const auto always = [](const HttpPlan& plan) {
        return [plan](const RecordedRequest&) { return plan; };
    };
    switch (fault) {
    case Fault::None:
        return {};
    case Fault::Presign:
        return {.presign = always(answering(403))};
    case Fault::Put:
        return {.put = always(answering(500))};
    case Fault::Link:
        return {.presign = std::move(withoutLink)};
    case Fault::NoHttp:
        return {.presign = always(stalling("SSH-2.0-OpenSSH_9.2\r\n"))};
    }
    return {};
}

/// What the category that reports failed steps has logged.
QStringList loggedFailures(const QString& log) {
    const QString start = u"[AfterCaptureBatch] error: "_s;
    QStringList texts;
    for (const QString& line : log.split(u'\n')) {
        if (line.startsWith(start)) {
            texts << line.mid(start.size());
        }
    }
    return texts;
}

class UploadNotices : public UploadSuite, public ::testing::WithParamInterface<Case> {
protected:
    void startServiceWithItsFault() {
        startService(faultsFor(GetParam().fault, [this](const RecordedRequest&) {
            QJsonObject answer = FerryboxServer::presignAnswer(service().uploadURL());
            answer[u"publicUrl"_s] = QString();
            return answering(200, QJsonDocument(answer).toJson());
        }));
    }

    void expectFailures() {
        const QStringList texts = loggedFailures(agent().log());
        const QStringList& expected = GetParam().failures;
        ASSERT_EQ(texts.size(), expected.size()) << texts.join(u'\n').toStdString();
        for (qsizetype i = 0; i < texts.size(); ++i) {
            const QRegularExpression text(QRegularExpression::anchoredPattern(expected[i]));
            EXPECT_TRUE(text.match(texts[i]).hasMatch()) << texts[i].toStdString();
        }
    }

    void expectClipboard() {
        const auto text = clipboard().read("UTF8_STRING");
        const auto link = QByteArray(FerryboxServer::publicURL().toEncoded());
        EXPECT_EQ(text, GetParam().linkOnClipboard ? std::optional(link) : std::nullopt);
        EXPECT_EQ(clipboard().read("image/png").has_value(), GetParam().imageOnClipboard);
    }
};

TEST_P(UploadNotices, TellWhatBecameOfTheCapture) {
    const Case& row = GetParam();
    if (row.folderBlocked) {
        desktop().folders().write(u"home/Pictures/Snapvane"_s, "not a folder");
    }
    startServiceWithItsFault();
    const ClipboardOwner other(desktop().display());
    startLoopbackAgent(row.actions);
    select(area);
    EXPECT_TRUE(waitForText(row.notice)) << shownTexts().join(u'\n').toStdString();
    expectFailures();
    const bool isAsked = QByteArray(row.actions).contains("upload");
    EXPECT_EQ(service().presigns().size(), isAsked ? 1U : 0U);
    if (row.linkOnClipboard || row.imageOnClipboard) {
        EXPECT_FALSE(other.owns());
        expectClipboard();
    } else {
        EXPECT_TRUE(other.owns());
    }
    const bool isSaved = QByteArray(row.actions).contains("save") && !row.folderBlocked;
    EXPECT_EQ(agent().savedPictures().size(), isSaved ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(EveryOutcome, UploadNotices, ::testing::ValuesIn(cases),
                         [](const auto& row) { return std::string(row.param.name); });

class UploadWithoutKey : public UploadSuite {
protected:
    static void SetUpTestSuite() { startDesktopWithEmptyKeyring(); }
};

TEST_F(UploadWithoutKey, AsksForTheKeyAndSendsNothing) {
    startService();
    startLoopbackAgent("uploadFerrybox");
    select(area);
    EXPECT_TRUE(waitForText(uR"(Ferrybox API key is not set\. Add it in Settings\.)"_s));
    EXPECT_EQ(service().server().connectionCount(), 0);
}

class UploadWithoutService : public UploadSuite {};

TEST_F(UploadWithoutService, SaysSo) {
    startLoopbackAgent("uploadFerrybox");
    select(area);
    EXPECT_TRUE(waitForText(u"Connection refused"_s));
    EXPECT_EQ(loggedFailures(agent().log()), QStringList(upload + u"Connection refused"_s));
}

} // namespace

} // namespace snapvane::testing
