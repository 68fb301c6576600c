#include "platform/ui/qtprompter.h"

#include "platform/ui/commondialogflags.h"
#include "platform/ui/dialogtext.h"
#include "platform/ui/printchoice.h"
#include "platform/ui/profiledialog.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QFontDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QSortFilterProxyModel>

namespace ui {

namespace {

QMessageBox::Icon qtIcon(Icon icon)
{
    switch (icon) {
    case Icon::Stop:
        return QMessageBox::Critical;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::Exclamation:
        return QMessageBox::Warning;
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

/// The buttons of a box, left to right.
QList<QMessageBox::StandardButton> qtButtons(Buttons buttons)
{
    switch (buttons) {
    case Buttons::OK:
        return {QMessageBox::Ok};
    case Buttons::OKCancel:
        return {QMessageBox::Ok, QMessageBox::Cancel};
    case Buttons::YesNo:
        return {QMessageBox::Yes, QMessageBox::No};
    case Buttons::YesNoCancel:
        return {QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel};
    }
    return {QMessageBox::Ok};
}

/// Lists, while it is on, only the folders and the files that may be run.
class RunnableFiles : public QSortFilterProxyModel {
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    void setOn(bool on)
    {
        m_on = on;
        invalidateRowsFilter();
    }

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override
    {
        if (!m_on)
            return true;
        const QFileInfo file(
            sourceModel()->index(row, 0, parent).data(QFileSystemModel::FilePathRole).toString());
        return file.isDir() || file.isExecutable();
    }

private:
    bool m_on = false;
};

bool fileDialog(CommonDialogState &state, QFileDialog::AcceptMode mode)
{
    QFileDialog dialog(QApplication::activeWindow(), state.dialogTitle, state.initDir);
    dialog.setAcceptMode(mode);
    dialog.setFileMode(mode == QFileDialog::AcceptOpen && (state.flags & kFileMustExist)
                           ? QFileDialog::ExistingFile
                           : QFileDialog::AnyFile);
    // The program asks its own overwrite question unless the flags ask the dialog to.
    dialog.setOption(QFileDialog::DontConfirmOverwrite, !(state.flags & kOverwritePrompt));
    // The list shows the filter's own descriptions; the patterns in the
    // added parentheses do the filtering.
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    if (!state.defaultExt.isEmpty())
        dialog.setDefaultSuffix(state.defaultExt);
    const QStringList filters = qtNameFilters(state.filter);
    if (!filters.isEmpty()) {
        dialog.setNameFilters(filters);
        dialog.selectNameFilter(
            filters.value(qBound(1, state.filterIndex, static_cast<int>(filters.size())) - 1));
    }
    if (state.executableFilter > 0) {
        auto *runnable = new RunnableFiles(&dialog);
        dialog.setProxyModel(runnable);
        const auto follow = [runnable, filters, &state](const QString &nameFilter) {
            runnable->setOn(filterIndexOf(filters, nameFilter) == state.executableFilter);
        };
        QObject::connect(&dialog, &QFileDialog::filterSelected, runnable, follow);
        follow(dialog.selectedNameFilter());
    }
    if (!state.fileName.isEmpty())
        dialog.selectFile(state.fileName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return false;
    state.fileName = QDir::toNativeSeparators(dialog.selectedFiles().constFirst());
    state.fileTitle = QFileInfo(state.fileName).fileName();
    if (!filters.isEmpty())
        state.filterIndex = filterIndexOf(filters, dialog.selectedNameFilter());
    return true;
}

} // namespace

Answer QtPrompter::msgBox(const QString &text, Buttons buttons, Icon icon, int defaultButton,
                          const QString &title)
{
    return msgBoxDetail(text, QString(), buttons, icon, defaultButton, title);
}

Answer QtPrompter::msgBoxDetail(const QString &text, const QString &detail, Buttons buttons, Icon icon,
                                int defaultButton, const QString &title)
{
    QMessageBox box(QApplication::activeWindow());
    box.setInformativeText(displayText(detail));
    box.setWindowTitle(title.isEmpty() ? QStringLiteral("Sorrelin") : title);
    box.setText(displayText(text));
    box.setIcon(qtIcon(icon));
    const QList<QMessageBox::StandardButton> order = qtButtons(buttons);
    QMessageBox::StandardButtons set;
    for (const auto b : order)
        set |= b;
    box.setStandardButtons(set);
    box.setDefaultButton(order.value(qBound(1, defaultButton, static_cast<int>(order.size())) - 1));
    switch (box.exec()) {
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    case QMessageBox::Cancel:
        return Answer::Cancel;
    default:
        return Answer::OK;
    }
}

QString QtPrompter::inputBox(const QString &prompt, const QString &title, const QString &defaultText)
{
    QInputDialog dialog(QApplication::activeWindow());
    dialog.setWindowTitle(title.isEmpty() ? QStringLiteral("Sorrelin") : title);
    dialog.setLabelText(displayText(prompt));
    dialog.setTextValue(defaultText);
    return dialog.exec() == QDialog::Accepted ? dialog.textValue() : QString();
}

bool QtPrompter::showOpen(CommonDialogState &state)
{
    return fileDialog(state, QFileDialog::AcceptOpen);
}

bool QtPrompter::showSave(CommonDialogState &state)
{
    return fileDialog(state, QFileDialog::AcceptSave);
}

bool QtPrompter::showFont(CommonDialogState &state)
{
    QFont initial(state.fontName);
    if (state.fontSize > 0)
        initial.setPointSizeF(state.fontSize);
    initial.setBold(state.fontBold);
    initial.setItalic(state.fontItalic);
    QFontDialog dialog(initial, QApplication::activeWindow());
    if (dialog.exec() != QDialog::Accepted)
        return false;
    const QFont chosen = dialog.selectedFont();
    state.fontName = chosen.family();
    state.fontSize = chosen.pointSizeF();
    state.fontBold = chosen.bold();
    state.fontItalic = chosen.italic();
    return true;
}

QString QtPrompter::chooseProfile(const ProfileChoice &choice)
{
    ProfileDialog dialog(choice, *this, QApplication::activeWindow());
    return dialog.exec() == QDialog::Accepted ? dialog.profile() : QString();
}

bool QtPrompter::pageSetup(QPrinter &printer)
{
    QPageSetupDialog dialog(&printer, QApplication::activeWindow());
    return dialog.exec() == QDialog::Accepted;
}

bool QtPrompter::print(QPrinter &printer)
{
    QPrintDialog dialog(&printer, QApplication::activeWindow());
    return dialog.exec() == QDialog::Accepted;
}

bool QtPrompter::choosePrinter(QPrinter &printer, const QString &title)
{
    return printToDocuments(printer, title);
}

} // namespace ui
