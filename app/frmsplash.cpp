#include "app/frmsplash.h"

#include "app/images.h"
#include "app/version.h"

#include <QGuiApplication>
#include <QLabel>
#include <QScreen>

frmSplash::frmSplash(QWidget *parent) : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("frmSplash"));
    // 6900 by 4176 twips.
    setFixedSize(460, 278);
    setAutoFillBackground(true);
    QPalette p = palette();
    p.setColor(QPalette::Window, QColor(0xF4, 0xF1, 0xE8));
    setPalette(p);

    auto *image = new QLabel(this);
    image->setObjectName(QStringLiteral("Image1"));
    image->setPixmap(app::images::splashPicture().pixmap(96, 96));
    image->setGeometry(24, 40, 96, 96);

    auto *name = new QLabel(QStringLiteral("Sorrelin for Microsoft Exchange"), this);
    name->setObjectName(QStringLiteral("Label2"));
    QFont big = name->font();
    big.setPointSizeF(big.pointSizeF() * 1.6);
    big.setBold(true);
    name->setFont(big);
    name->setGeometry(140, 60, 300, 40);
    name->setWordWrap(true);

    lblVersion = new QLabel(this);
    lblVersion->setObjectName(QStringLiteral("lblVersion"));
    lblVersion->setGeometry(140, 110, 300, 24);

    if (const QScreen *screen = QGuiApplication::primaryScreen())
        move(screen->geometry().center() - rect().center());
    Form_Load();
}

void frmSplash::Form_Load()
{
    lblVersion->setText(app::versionText());
}
