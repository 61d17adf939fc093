#pragma once

#include <QObject>

namespace snapvane {

/// Tells when the desktop has a place for tray icons. An icon made before there is one is never
/// shown, so it is made when the host is there and made again when the host comes back. Main
/// thread.
class TrayHost : public QObject {
    Q_OBJECT

public:
    virtual bool isPresent() const = 0;

Q_SIGNALS:
    void appeared();
    void disappeared();
};

} // namespace snapvane
