#pragma once

#include <unistd.h>

namespace snapvane::testing {

/// Makes the system refuse what it refuses to everybody but root, for as long as it lives: tests
/// that root runs meet permissions as well.
class OrdinaryUser {
public:
    OrdinaryUser() {
        if (m_before == 0) {
            m_changed = seteuid(s_nobody) == 0;
        }
    }
    ~OrdinaryUser() {
        if (m_changed) {
            [[maybe_unused]] const int result = seteuid(m_before);
        }
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    static constexpr uid_t s_nobody = 65534;

    uid_t m_before = geteuid();
    bool m_changed = false;
};

} // namespace snapvane::testing
