#pragma once

/// The program's entry: an agent without a main window.
namespace snapvane::SnapvaneApp {

/// Runs the program until it is asked to quit. Gives 0; 1 when it cannot run here. A second start
/// in the same session asks the first one to show its settings and gives 0 at once.
int run(int argc, char* argv[]);

} // namespace snapvane::SnapvaneApp
