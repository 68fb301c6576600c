#pragma once

#include "platform/ui/cancelbutton.h"

#include <QDialog>

#include <array>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace controls {
class UpDown;
}
namespace ui {
class Prompter;
}

/// "Scheduled Event": edits the program's schedule record. It reads the
/// record when it opens and writes it on OK; Cancel sets the default
/// record; the title bar's close changes nothing.
class frmSchedule : public QDialog, public ui::CancelButton {
    Q_OBJECT

public:
    frmSchedule(ui::Prompter &prompter, QWidget *owner);

    void Form_Load();
    void cmdOK_Click();
    void cmdCancel_Click();
    const QPushButton *cancelButton() const override { return cmdCancel; }
    void optHourly_Click();
    void optDaily_Click();
    void optWeekly_Click();
    void optAllDay_Click();
    void optStart_Click();
    /// Ticks the day boxes from a value, which it uses up.
    void GetDays(int &intDays);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QLineEdit *timeBox(const char *name, const QString &text, QWidget *parent);
    controls::UpDown *timeSpin(const char *name, QLineEdit *box, QWidget *parent);
    void stepTime(QLineEdit *box, int quarters);
    std::array<bool, 7> dayBoxes() const;

    ui::Prompter &m_prompter;
    QRadioButton *optHourly, *optDaily, *optWeekly;
    QGroupBox *fraRun;
    QRadioButton *optEvery, *optAt;
    QLineEdit *txtHrs, *txtMin;
    QLabel *lblHrs, *lblMin;
    controls::UpDown *UpDownHrs, *UpDownMin;
    QLineEdit *DTPickerAT;
    controls::UpDown *UpDownAT;
    std::array<QCheckBox *, 7> m_days{};
    QGroupBox *fraOnly;
    QRadioButton *optAllDay, *optStart;
    QLineEdit *DTPickerStart, *DTPickerEnd;
    controls::UpDown *UpDownStart, *UpDownEnd;
    QLabel *lblEnd;
    QPushButton *cmdOK, *cmdCancel;
    /// Whether the option being clicked was selected when the press began.
    bool m_pressedSelected = false;
};
