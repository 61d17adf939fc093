#pragma once

#include "actions/PostCaptureMenuAction.h"

#include <QObject>

namespace snapvane {

/// Who acts on the keys that the key root view takes. Main thread.
class PostCaptureChoiceKeyHandling : public QObject {
    Q_OBJECT

public:
    /// Runs a choice.
    virtual void commit(PostCaptureMenuAction action) = 0;
    /// Discards the capture and closes.
    virtual void dismiss() = 0;
};

} // namespace snapvane
