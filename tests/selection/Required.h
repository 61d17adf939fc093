#pragma once

#include <optional>
#include <stdexcept>

namespace snapvane::testing {

/// The value, which the test cannot do without: where there is none the test fails by an exception.
template <typename Value> const Value& required(const std::optional<Value>& value) {
    if (!value) {
        throw std::logic_error("a value is missing");
    }
    return *value;
}
// Nothing may refer into a value that is about to go.
template <typename Value> const Value& required(const std::optional<Value>&& value) = delete;

} // namespace snapvane::testing
