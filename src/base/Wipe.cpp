#include "base/Wipe.h"

#include <cstring>

namespace snapvane {

namespace {

template <typename Text> void overwriteAndClear(Text& text) {
    auto& buffer = text.data_ptr();
    // No block of its own: a literal, or memory of somebody else.
    if (buffer.isMutable()) {
        // The whole block: shortened text leaves its end behind.
        explicit_bzero(buffer.data() - buffer.freeSpaceAtBegin(),
                       sizeof(*buffer.data()) *
                           static_cast<std::size_t>(buffer.constAllocatedCapacity()));
    }
    text.clear();
}

} // namespace

void wipe(QString& text) {
    overwriteAndClear(text);
}

void wipe(QByteArray& bytes) {
    overwriteAndClear(bytes);
}

bool isOnlyOwner(const QString& text) {
    return text.isDetached();
}

} // namespace snapvane
