#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

namespace app {
struct Program;
}

/// "About Sorrelin": the program's version, the profile in use, the mail
/// client's and the session's versions, and the way to the system
/// information program.
class frmAbout : public QDialog {
    Q_OBJECT

public:
    frmAbout(app::Program &program, QWidget *owner);

    void Form_Load();
    void cmdSysInfo_Click();

private:
    app::Program &m_program;
    QLabel *picIcon = nullptr;
    QLabel *lblTitle = nullptr;
    QLabel *lblVersion = nullptr;
    QLabel *lblProfile = nullptr;
    QLabel *lblCDOVersion = nullptr;
    QLabel *lblOLVersion = nullptr;
    QPushButton *cmdOK = nullptr;
    QPushButton *cmdSysInfo = nullptr;
};
