#pragma once

#include <QString>

class QLabel;
class QPushButton;
class QWidget;

/// Small makers for the dialogs' controls: each gets its name and caption.
namespace dialogs {

QPushButton *button(const char *name, const QString &caption, QWidget *parent);
QLabel *label(const char *name, const QString &caption, QWidget *parent);
/// The OK and Cancel pair below a dialog, OK the default button.
void okCancel(QWidget *dialog, QPushButton *&ok, QPushButton *&cancel);

} // namespace dialogs
