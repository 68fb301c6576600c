#include "dialogs/formbuild.h"

#include <QLabel>
#include <QPushButton>

namespace dialogs {

QPushButton *button(const char *name, const QString &caption, QWidget *parent)
{
    auto *b = new QPushButton(caption, parent);
    b->setObjectName(QString::fromLatin1(name));
    b->setAutoDefault(false);
    return b;
}

QLabel *label(const char *name, const QString &caption, QWidget *parent)
{
    auto *l = new QLabel(caption, parent);
    l->setObjectName(QString::fromLatin1(name));
    return l;
}

void okCancel(QWidget *dialog, QPushButton *&ok, QPushButton *&cancel)
{
    ok = button("cmdOK", QStringLiteral("OK"), dialog);
    ok->setDefault(true);
    cancel = button("cmdCancel", QStringLiteral("Cancel"), dialog);
}

} // namespace dialogs
