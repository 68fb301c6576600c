#pragma once

#include <QString>

namespace navigation {

/// A node's `Image` is its kind.
inline constexpr int kImageStore = 1;
inline constexpr int kImageRoot = 2;
inline constexpr int kImageFolder = 6;           ///< full rights, no agent
inline constexpr int kImageFolderWithAgents = 7; ///< full rights, agents below
inline constexpr int kImageNoRights = 18;
inline constexpr int kImageScriptAgent = 19; ///< 19 or more: an agent
inline constexpr int kImageRoutingAgent = 20;
inline constexpr int kImageOtherAgent = 21;

/// Whether a node lies under the public folders' favourites: its full path
/// contains the root's text followed by "\Public Folders\Favorites".
bool isUnderFavorites(const QString &fullPath, const QString &currentUser);

/// The root's text: "Current User: " and the user's name.
QString rootText(const QString &currentUser);

/// A full path without the root's text; the root's own path gives "".
QString stripCurrentUser(const QString &fullPath, const QString &currentUser);

} // namespace navigation
