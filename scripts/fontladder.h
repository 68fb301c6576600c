#pragma once

namespace scripts {

/// The pane's font size steps. Sizes are compared exactly, so a size such
/// as 9.5 from the font dialog takes the steps of 2.
double menuDecrease(double size, bool paneShown);
double menuIncrease(double size);
double keyDecrease(double size, bool paneShown);
double keyIncrease(double size, bool paneShown);

} // namespace scripts
