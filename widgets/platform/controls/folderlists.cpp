#include "platform/controls/folderlists.h"

#include "platform/com/comerror.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>
#include <QStyle>

namespace controls {

namespace {

constexpr int kPathRole = Qt::UserRole + 1;

QStringList mountPoints()
{
    QStringList points;
    for (const QStorageInfo &volume : QStorageInfo::mountedVolumes())
        if (volume.isValid() && volume.isReady())
            points.append(volume.rootPath());
    points.removeDuplicates();
    points.sort();
    return points;
}

} // namespace

DriveListBox::DriveListBox(QWidget *parent) : QComboBox(parent)
{
    addItems(mountPoints());
    connect(this, &QComboBox::currentIndexChanged, this, &DriveListBox::Change);
}

void DriveListBox::setDrive(const QString &path)
{
    // The longest mount point that holds the path.
    const QString clean = QDir::cleanPath(path);
    int best = -1;
    for (int i = 0; i < count(); ++i) {
        const QString point = itemText(i);
        const bool holds =
            clean == point || point == QLatin1String("/") || clean.startsWith(point + QLatin1Char('/'));
        if (holds && (best < 0 || point.size() > itemText(best).size()))
            best = i;
    }
    if (best >= 0)
        setCurrentIndex(best);
}

DirListBox::DirListBox(QWidget *parent) : QListWidget(parent)
{
    const auto open = [this](QListWidgetItem *item) {
        const QString path = item ? item->data(kPathRole).toString() : QString();
        if (!path.isEmpty())
            setPath(path);
    };
    connect(this, &QListWidget::itemActivated, this, open);
    setPath(QDir::rootPath());
}

QString DirListBox::unreadableText()
{
    return QStringLiteral("(This folder can't be read)");
}

void DirListBox::setPath(const QString &path)
{
    const QFileInfo info(path);
    if (path.isEmpty() || !info.isDir())
        throw com::ComError(76, QStringLiteral("Sorrelin"), QStringLiteral("Path not found"));
    m_path = QDir::cleanPath(info.absoluteFilePath());
    fill();
    Q_EMIT Change();
}

void DirListBox::fill()
{
    clear();
    // The parents, from the root down, then the folder itself.
    QStringList chain;
    for (QDir d(m_path);;) {
        chain.prepend(d.absolutePath());
        if (d.isRoot() || !d.cdUp())
            break;
    }
    for (int i = 0; i < chain.size(); ++i) {
        const QString name = i == 0 ? chain.at(i) : QFileInfo(chain.at(i)).fileName();
        auto *item = new QListWidgetItem(QString(i * 2, QLatin1Char(' ')) + name, this);
        item->setData(kPathRole, chain.at(i));
        item->setIcon(
            style()->standardIcon(i + 1 == chain.size() ? QStyle::SP_DirOpenIcon : QStyle::SP_DirIcon));
    }
    setCurrentRow(count() - 1);
    const QDir here(m_path);
    if (!here.isReadable()) {
        auto *item =
            new QListWidgetItem(QString(chain.size() * 2, QLatin1Char(' ')) + unreadableText(), this);
        item->setFlags(Qt::NoItemFlags);
        return;
    }
    const QString indent(chain.size() * 2, QLatin1Char(' '));
    for (const QFileInfo &sub :
         here.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase)) {
        auto *item = new QListWidgetItem(indent + sub.fileName(), this);
        item->setData(kPathRole, sub.absoluteFilePath());
        item->setIcon(style()->standardIcon(QStyle::SP_DirIcon));
    }
}

} // namespace controls
