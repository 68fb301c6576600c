#pragma once

#include <QComboBox>
#include <QListWidget>

namespace controls {

/// The drive list: on this system the mount points, the root first. `Drive`
/// is the mount point shown; setting it to a path shows the mount point
/// that holds that path.
class DriveListBox : public QComboBox {
    Q_OBJECT
    Q_PROPERTY(QString Drive READ Drive WRITE setDrive)

public:
    explicit DriveListBox(QWidget *parent = nullptr);

    QString Drive() const { return currentText(); }
    void setDrive(const QString &path);

Q_SIGNALS:
    /// The user or the code chose another drive.
    void Change();
};

/// The folder list: the folder `Path` with its parents above it and its
/// subfolders below, as a walk through the folders. A double click (or
/// Enter) on an entry opens it. A folder that can't be read shows one
/// entry that says so, and the list stays usable.
class DirListBox : public QListWidget {
    Q_OBJECT
    Q_PROPERTY(QString Path READ Path WRITE setPath)

public:
    explicit DirListBox(QWidget *parent = nullptr);

    QString Path() const { return m_path; }
    /// Moves to an existing folder; raises (error 76, path not found) for
    /// one that isn't there, and the list stays where it was.
    void setPath(const QString &path);

    /// The words of the entry shown in a folder that can't be read.
    static QString unreadableText();

Q_SIGNALS:
    void Change();

private:
    void fill();

    QString m_path;
};

} // namespace controls
