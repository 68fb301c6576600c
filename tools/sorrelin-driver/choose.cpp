#include "tools/sorrelin-driver/choose.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QPointer>
#include <QTest>

namespace driver {

std::function<void()> chooseEntry(QObject *control, const QString &item, QString &error)
{
    auto *combo = qobject_cast<QComboBox *>(control);
    if (!combo) {
        error = QStringLiteral("no combo");
        return {};
    }
    if (!combo->isEnabled()) {
        error = QStringLiteral("%1 is disabled").arg(combo->objectName());
        return {};
    }
    const int index = combo->findText(item, Qt::MatchExactly);
    if (index < 0) {
        error = QStringLiteral("%1 has no entry %2").arg(combo->objectName(), item);
        return {};
    }
    return [combo = QPointer<QComboBox>(combo), index] {
        combo->window()->activateWindow();
        combo->setFocus(Qt::MouseFocusReason);
        combo->showPopup();
        QAbstractItemView *list = combo->view();
        const QModelIndex entry = combo->model()->index(index, combo->modelColumn(), combo->rootModelIndex());
        list->scrollTo(entry);
        // The pointer over the entry makes it current, as hovering does; the
        // click's release picks it and closes the list.
        list->setCurrentIndex(entry);
        const QPoint at = list->visualRect(entry).center();
        QTest::mousePress(list->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseRelease(list->viewport(), Qt::LeftButton, {}, at);
        if (combo && combo->view()->isVisible())
            combo->hidePopup();
    };
}

} // namespace driver
