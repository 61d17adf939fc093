#include "actions/ErrorText.h"

#include "base/LocalizedError.h"
#include "base/Translation.h"

namespace snapvane {

namespace {

/// Empty for an exception that says nothing.
QString ownText() {
    try {
        throw;
    } catch (const LocalizedError& error) {
        return error.localizedDescription();
    } catch (const std::exception& error) {
        return QString::fromUtf8(error.what());
    } catch (...) {
        return {};
    }
}

} // namespace

QString currentErrorText() {
    const QString text = ownText();
    return text.isEmpty() ? translated("The operation could not be completed.") : text;
}

} // namespace snapvane
