#pragma once

#include <QIcon>
#include <QString>
#include <QVector>

namespace app::icons {

/// The tree's image list: index 1 to 21.
QIcon treeImage(int index);
/// All 21, the first being image 1.
QVector<QIcon> treeImageList();
/// A toolbar picture by its image key ("New", "Save", ...).
QIcon toolbarImage(const QString &key);
/// The product's picture for the splash window.
QIcon splashPicture();
/// The window icon.
QIcon appIcon();

} // namespace app::icons
