// Prints the shortcuts that GNOME's settings give away, a line of key code and modifiers each. The
// settings library reads its environment and its schemas once in a process: whoever wants to see
// other ones needs a process for each.

#include "platform/xdg/GnomeShortcuts.h"

#include "platform/xdg/UsKeys.h"

#include <iostream>

int main() {
    using namespace snapvane;
    for (const auto& [keyCode, modifiers] :
         testing::combinations(xdg::gnomeShortcuts(testing::usKeyOfSymbol))) {
        std::cout << keyCode << ' ' << modifiers << '\n';
    }
    return 0;
}
