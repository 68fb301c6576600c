#pragma once

#include <QDialog>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTabWidget;
class frmMain;

namespace controls {
class SSDBCombo;
}

/// "Options": the save mode, the print dialogs, the Save As folder and the
/// editor, edited in memory. OK puts them in the program's settings, which
/// every command reads when it runs; Cancel keeps everything as it was.
class frmOptions : public QDialog {
    Q_OBJECT

public:
    explicit frmOptions(frmMain &owner);

    void Form_Load();
    void cmbEditor_CloseUp();
    void cmdFind_Click();
    void cmdModify_Click();
    void cmdOK_Click();
    void cmdCancel_Click();

    /// The form's help topic.
    static constexpr int HelpContextID = 1020;

    QLineEdit *txtLocation = nullptr;

private:
    QWidget *generalTab();
    QWidget *editorTab();

    frmMain &m_main;
    QTabWidget *SSTab1 = nullptr;
    QGroupBox *fraChange = nullptr;
    QRadioButton *optSave = nullptr;
    QRadioButton *optPrompt = nullptr;
    QRadioButton *optDiscard = nullptr;
    QCheckBox *chkPrintDialogs = nullptr;
    QLabel *Label1 = nullptr;
    QPushButton *cmdModify = nullptr;
    QLabel *lblEditor = nullptr;
    controls::SSDBCombo *cmbEditor = nullptr;
    QLabel *lblOther = nullptr;
    QLineEdit *txtOther = nullptr;
    QPushButton *cmdFind = nullptr;
    QPushButton *cmdOK = nullptr;
    QPushButton *cmdCancel = nullptr;
};
