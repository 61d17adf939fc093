// snapvane_test_prompter accept PASSWORD | refuse | ignore: the desktop's password window, played
// by a program. Its first line of output is its name on the bus, which GNOME_KEYRING_TEST_PROMPTER
// is to give to the keyring's daemon; then it writes "open" and "closed" as the window would open
// and close. It runs until it is ended.

#define GCR_API_SUBJECT_TO_CHANGE
#include <gcr/gcr-base.h>

#include <climits>
#include <cstdio>
#include <string_view>
#include <unistd.h>

namespace {

/// More than any test asks for.
constexpr int prompts = 100;

bool expect(std::string_view answer, const char* password) {
    if (answer == "ignore") {
        gcr_mock_prompter_set_delay_msec(INT_MAX);
    } else if (answer != "refuse" && (answer != "accept" || password == nullptr)) {
        return false;
    }
    for (int i = 0; i < prompts; ++i) {
        if (answer == "accept") {
            gcr_mock_prompter_expect_password_ok(password, nullptr);
        } else {
            gcr_mock_prompter_expect_password_cancel();
        }
    }
    return true;
}

} // namespace

int main(int count, char** arguments) {
    const char* const name = gcr_mock_prompter_start();
    if (count < 2 || !expect(arguments[1], count > 2 ? arguments[2] : nullptr)) {
        std::fprintf(stderr, "usage: snapvane_test_prompter accept PASSWORD | refuse | ignore\n");
        return 2;
    }
    std::puts(name);
    std::fflush(stdout);
    constexpr unsigned int interval = 5'000;
    bool wasOpen = false;
    for (;;) {
        usleep(interval);
        const bool isOpen = gcr_mock_prompter_is_prompting() != FALSE;
        if (isOpen != wasOpen) {
            std::puts(isOpen ? "open" : "closed");
            std::fflush(stdout);
        }
        wasOpen = isOpen;
    }
}
