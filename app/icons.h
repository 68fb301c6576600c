#pragma once

#include <QIcon>
#include <QString>
#include <QVector>

/// The program's pictures, painted at run time. Every small icon carries
/// 16, 24 and 32 px pixmaps painted from one drawing, so it stays crisp on
/// high-density screens; each is made once and then shared.
namespace app::icons {

/// The tree's image list, index 1 to 21; a null icon for any other index.
QIcon treeImage(int index);
/// All 21, the first being image 1.
QVector<QIcon> treeImageList();
/// A toolbar picture by its image key ("New", "Save", ...); a null icon for
/// a key it does not know. Keys are case-sensitive.
QIcon toolbarImage(const QString &key);
/// The keys `toolbarImage` knows, in the order of its pictures.
QStringList toolbarKeys();
/// The product's picture for the splash and about windows: 96 by 96, with
/// 48 and 192 px versions.
QIcon splashPicture();
/// The window icon, from 16 to 256 px.
QIcon appIcon();

} // namespace app::icons
