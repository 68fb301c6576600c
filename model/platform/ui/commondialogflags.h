#pragma once

namespace ui {

/// The common dialog's flags that the dialogs here honour (the classic
/// numbers, as the program sets them).
inline constexpr int kOverwritePrompt = 0x2;  ///< save: ask before replacing a file
inline constexpr int kHideReadOnly = 0x4;     ///< no read-only box (ours never has one)
inline constexpr int kFileMustExist = 0x1000; ///< open: only a file that exists

} // namespace ui
