#pragma once

#include <QIcon>
#include <QString>
#include <QStringList>
#include <QVector>

/// The program's pictures, SVG files in the program's resources: each scales
/// to any size and is read once, then shared.
namespace app::images {

/// The tree's image list, index 1 to 21; a null icon for any other index.
QIcon treeImage(int index);
/// All 21, the first being image 1.
QVector<QIcon> treeImageList();
/// A toolbar picture by its image key ("New", "Save", ...); a null icon for
/// a key it does not know. Keys are case-sensitive.
QIcon toolbarImage(const QString &key);
/// The keys `toolbarImage` knows.
QStringList toolbarKeys();
/// The product's picture for the splash and about windows.
QIcon splashPicture();
/// The window icon: the product's picture, cut down to a folder and a spark
/// below 48 px.
QIcon appIcon();

} // namespace app::images
