#pragma once

namespace snapvane {

/// Starting the program when the user signs in. Main thread; changing it throws PlatformError.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    virtual void registerItem() = 0;
    virtual void unregisterItem() = 0;
    virtual bool isRegistered() const = 0;
};

} // namespace snapvane
