#pragma once

#include "agents/changeguard.h"

#include <QDialog>

#include <array>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class frmMain;

namespace agents {

/// The four event boxes, Scheduled, New, Update and Delete, as a mask read
/// back ticks them: each bit its own box, and a mask that isn't one of the
/// legal 0 to 15 none.
std::array<bool, 4> eventBoxes(int mask);

} // namespace agents

/// "Agent Properties": an agent's name, whether it is active, its events
/// and its schedule; in the new-agent mode it makes the agent from the
/// script file picked before.
class frmProperties : public QDialog {
    Q_OBJECT

public:
    explicit frmProperties(frmMain &main);

    bool blnDirty = false;
    bool blnName = false;
    bool blnNew = false;
    bool blnIsLoading = false;
    /// The agent's change as the dialog was filled (edit mode).
    agents::LoadedChange loadedChange;

    QLineEdit *txtAgentName;
    QCheckBox *chkActive;
    QGroupBox *Frame1;
    QCheckBox *chkScheduled, *chkNew, *chkUpdate, *chkDelete;
    QPushButton *cmdSchedule;
    QLabel *lblCreated, *lblCreatedBy, *lblModified, *lblModifiedBy, *lblServer, *lblAgent;

    /// Ticks the event boxes as the mask reads back.
    void showEvents(int mask);
    void Form_Load();
    void Form_Activate();
    void chkScheduled_Click();
    void cmdSchedule_Click();
    void cmdOK_Click();
    void cmdCancel_Click();

protected:
    void showEvent(QShowEvent *event) override;

private:
    void closingSteps();
    /// False when the user chose not to write over another program's change.
    bool saveChanges();

    frmMain &m_main;
    QPushButton *cmdOK, *cmdCancel;
};
