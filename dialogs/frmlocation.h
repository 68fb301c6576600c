#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

namespace controls {
class DirListBox;
class DriveListBox;
} // namespace controls

/// "Modify Location": picks the default folder for Save As. OK hands the
/// folder, in lower case, to the box `target` of the Options dialog; Cancel
/// leaves the box as it was.
class frmLocation : public QDialog {
    Q_OBJECT

public:
    frmLocation(QLineEdit &target, QWidget *owner);

    void Drive1_Change();
    void cmdOK_Click();
    void cmdCancel_Click();

    controls::DriveListBox *Drive1 = nullptr;
    controls::DirListBox *Dir1 = nullptr;

private:
    QLineEdit &m_target;
    QPushButton *cmdOK = nullptr;
    QPushButton *cmdCancel = nullptr;
};
