#pragma once

#include "hud/AlertPresenter.h"

namespace snapvane {

/// Alerts as windows of their own. The program has no other window that they could belong to, so
/// they are brought to the front by themselves.
class ModalAlertPresenter : public AlertPresenter {
public:
    static ModalAlertPresenter& shared();

    int present(const Alert& alert) override;
};

} // namespace snapvane
