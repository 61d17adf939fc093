// What nearly every file includes anyway; compiled once.
#pragma once

#include <QByteArray>
#include <QColor>
#include <QCoroFuture>
#include <QCoroTask>
#include <QDateTime>
#include <QImage>
#include <QObject>
#include <QPointer>
#include <QRegion>
#include <QString>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>
