#pragma once

#include <source_location>

namespace KeyboardShortcuts {

/// Everything that reads the keyboard, menus or the state of the module belongs to the main thread.
/// Elsewhere this stops the program, naming the place in the module.
void requireMainThread(std::source_location where = std::source_location::current());

/// True on the thread of the application object; also before there is one.
bool isMainThread();

} // namespace KeyboardShortcuts
