#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

namespace controls {
class SSTree;
}
namespace ui {
class Prompter;
}

/// The dialog in which the user picks the folders to install in: the folder
/// tree without agents. It is made once, hidden rather than closed, and so
/// keeps its selection and open nodes between uses.
class frmFolder : public QDialog {
    Q_OBJECT

public:
    frmFolder(ui::Prompter &prompter, QWidget *owner);

    controls::SSTree *treOutl = nullptr;
    QLabel *lblEntryID = nullptr;
    QLabel *lblStoreID = nullptr;

    void cmdOK_Click();
    void cmdCancel_Click();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    ui::Prompter &m_prompter;
    QPushButton *cmdOK = nullptr;
    QPushButton *cmdCancel = nullptr;
};
