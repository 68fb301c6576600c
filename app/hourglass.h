#pragma once

/// The hourglass over the whole screen. There is no counting: the first
/// false ends it, so a caller switches it off on all its paths.
void SetHourglass(bool on);
