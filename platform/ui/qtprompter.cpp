#include "platform/ui/qtprompter.h"

#include "platform/ui/profiledialog.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDialog>
#include <QInputDialog>
#include <QMessageBox>

namespace ui {

QString displayText(const QString &text)
{
    QString shown = text;
    shown.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    shown.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return shown;
}

QStringList qtNameFilters(const QString &filter)
{
    QStringList filters;
    const QStringList parts = filter.split(QLatin1Char('|'));
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts.at(i + 1);
        patterns.replace(QLatin1Char(';'), QLatin1Char(' '));
        patterns.replace(QLatin1String("*.*"), QLatin1String("*"));
        filters << parts.at(i) + QStringLiteral(" (") + patterns + QLatin1Char(')');
    }
    return filters;
}

Answer QtPrompter::msgBox(const QString &text, Buttons buttons, Icon icon, int defaultButton,
                          const QString &title)
{
    QMessageBox box(QApplication::activeWindow());
    box.setWindowTitle(title.isEmpty() ? QStringLiteral("Sorrelin") : title);
    box.setText(displayText(text));
    switch (icon) {
    case Icon::Stop:
        box.setIcon(QMessageBox::Critical);
        break;
    case Icon::Question:
        box.setIcon(QMessageBox::Question);
        break;
    case Icon::Exclamation:
        box.setIcon(QMessageBox::Warning);
        break;
    case Icon::Information:
        box.setIcon(QMessageBox::Information);
        break;
    case Icon::None:
        break;
    }
    QList<QMessageBox::StandardButton> order;
    switch (buttons) {
    case Buttons::OK:
        order = {QMessageBox::Ok};
        break;
    case Buttons::OKCancel:
        order = {QMessageBox::Ok, QMessageBox::Cancel};
        break;
    case Buttons::YesNo:
        order = {QMessageBox::Yes, QMessageBox::No};
        break;
    case Buttons::YesNoCancel:
        order = {QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel};
        break;
    }
    QMessageBox::StandardButtons set;
    for (auto b : order)
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
        return buttons == Buttons::YesNo ? Answer::No : Answer::OK;
    }
}

QString QtPrompter::inputBox(const QString &prompt, const QString &title, const QString &defaultText)
{
    bool ok = false;
    const QString text = QInputDialog::getText(QApplication::activeWindow(), title, prompt, QLineEdit::Normal,
                                               defaultText, &ok);
    return ok ? text : QString();
}

namespace {

bool fileDialog(CommonDialogState &state, QFileDialog::AcceptMode mode)
{
    QFileDialog dialog(QApplication::activeWindow(), state.dialogTitle, state.initDir);
    dialog.setAcceptMode(mode);
    dialog.setFileMode(mode == QFileDialog::AcceptOpen && (state.flags & 0x1000) ? QFileDialog::ExistingFile
                                                                                 : QFileDialog::AnyFile);
    // The program asks its own overwrite question.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    const QStringList filters = qtNameFilters(state.filter);
    if (!filters.isEmpty()) {
        dialog.setNameFilters(filters);
        dialog.selectNameFilter(filters.value(qMax(state.filterIndex, 1) - 1));
    }
    if (!state.fileName.isEmpty())
        dialog.selectFile(state.fileName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return false;
    state.fileName = QDir::toNativeSeparators(dialog.selectedFiles().constFirst());
    state.fileTitle = QFileInfo(state.fileName).fileName();
    state.filterIndex = static_cast<int>(filters.indexOf(dialog.selectedNameFilter())) + 1;
    return true;
}

} // namespace

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
    bool ok = false;
    const QFont chosen = QFontDialog::getFont(&ok, initial, QApplication::activeWindow());
    if (!ok)
        return false;
    state.fontName = chosen.family();
    state.fontSize = chosen.pointSizeF();
    state.fontBold = chosen.bold();
    state.fontItalic = chosen.italic();
    return true;
}

QString QtPrompter::chooseProfile(const ProfileChoice &choice)
{
    ProfileDialog dialog(choice);
    return dialog.exec() == QDialog::Accepted ? dialog.profile() : QString();
}

} // namespace ui
