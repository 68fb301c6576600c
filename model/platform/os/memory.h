#pragma once

namespace os {

/// Hands the memory that the program has freed back to the system, where
/// the C library would keep it for later use (as glibc does with freed
/// pages amid the heap), and from then on maps large blocks on their own so
/// that they go back when freed; elsewhere it does nothing. For after
/// dropping a large structure that is about to be built again.
void releaseFreedMemory();

} // namespace os
