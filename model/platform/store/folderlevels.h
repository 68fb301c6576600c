#pragma once

#include <QString>

namespace store {

class Database;

/// The deepest nesting of folders that the program takes, a store's top
/// folders being level 1: the folder tree shows no deeper folder, and dumps
/// and fixtures hold no deeper one. (A fixture's reader takes at most 1,024
/// nested lists and objects, two for each folder level and a few more for a
/// folder's messages.)
inline constexpr int kMaxFolderLevels = 500;

/// How many levels of folders a store file holds below its stores' root
/// folders; 0 when it holds none. SQLite walks the levels, so that no depth
/// costs this program's stack.
int folderLevels(const Database &db);

/// The words said where deeper folders are left out or refused.
QString folderLevelsText();

} // namespace store
