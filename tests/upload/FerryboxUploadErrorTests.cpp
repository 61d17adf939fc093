#include "upload/FerryboxUploadError.h"

#include "actions/ErrorText.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace snapvane {

namespace {

using Kind = FerryboxUploadError::Kind;

struct Row {
    const char* name;
    FerryboxUploadError error;
    Kind kind;
    int status;
    const char* text;
};

void PrintTo(const Row& row, std::ostream* stream) {
    *stream << row.name;
}

const Row rows[] = {
    {"PresignFailed", FerryboxUploadError::presignFailed(401), Kind::PresignFailed, 401,
     "Ferrybox presign failed (HTTP 401)."},
    {"PresignFailedInFourDigits", FerryboxUploadError::presignFailed(1234), Kind::PresignFailed,
     1234, "Ferrybox presign failed (HTTP 1234)."},
    {"MissingApiKey", FerryboxUploadError::missingAPIKey(), Kind::MissingApiKey, 0,
     "Ferrybox API key is not set. Add it in Settings."},
    {"BadResponse", FerryboxUploadError::badResponse(), Kind::BadResponse, 0,
     "Unexpected response from Ferrybox."},
    {"UploadFailed", FerryboxUploadError::uploadFailed(), Kind::UploadFailed, 0,
     "Ferrybox upload failed."},
    {"InvalidPublicUrl", FerryboxUploadError::invalidPublicURL(), Kind::InvalidPublicUrl, 0,
     "Ferrybox returned an invalid link."},
};

class UploadErrors : public ::testing::TestWithParam<Row> {};

} // namespace

TEST_P(UploadErrors, SayWhatIsWrong) {
    EXPECT_EQ(GetParam().error.localizedDescription(), QLatin1String(GetParam().text));
    EXPECT_STREQ(GetParam().error.what(), GetParam().text);
}

TEST_P(UploadErrors, KeepTheirKindAndStatus) {
    EXPECT_EQ(GetParam().error.kind(), GetParam().kind);
    EXPECT_EQ(GetParam().error.status(), GetParam().status);
}

TEST_P(UploadErrors, AreErrorsForTheUser) {
    try {
        throw FerryboxUploadError(GetParam().error);
    } catch (...) {
        EXPECT_EQ(currentErrorText(), QLatin1String(GetParam().text));
    }
}

INSTANTIATE_TEST_SUITE_P(All, UploadErrors, ::testing::ValuesIn(rows),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace snapvane
