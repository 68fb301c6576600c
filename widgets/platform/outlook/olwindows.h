#pragma once

#include <QDialog>
#include <QStringList>
#include <QWidget>

namespace outlook {

/// One row of a folder window: what the mail client lists for an item.
struct ItemRow {
    QString subject;
    QString from;
    QString received;
    QString messageClass;
};

/// The mail client's window on one folder: its caption is the folder's name
/// and its grid `Items` lists the folder's items.
class ExplorerWindow : public QWidget {
    Q_OBJECT

public:
    ExplorerWindow(const QString &folderName, const QString &folderPath, const QList<ItemRow> &items);

    const QString &folderPath() const { return m_path; }

private:
    QString m_path;
};

/// What the folder properties dialog shows.
struct FolderFacts {
    QString name;
    QString path;
    int items = 0;
    int hiddenItems = 0;
    int subfolders = 0;
    int access = 0;
    QString eventSourceHost; ///< empty: the folder has no event source
};

/// The mail client's folder properties dialog.
class FolderPropertiesDialog : public QDialog {
    Q_OBJECT

public:
    FolderPropertiesDialog(const FolderFacts &facts, QWidget *parent = nullptr);
};

/// The access bits in words: "read, modify, ...", or "none".
QString accessText(int access);

} // namespace outlook
