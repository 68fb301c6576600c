#include "agents/frmschedule.h"

#include "agents/schedule.h"
#include "app/settingstext.h"
#include "platform/controls/sstree.h"
#include "platform/controls/updown.h"
#include "platform/ui/prompter.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace {

const QString kTimeTip = QStringLiteral("Use + or - on num keypad for large change; mouse for small");

/// Names a new control and puts it where it goes on its parent.
template <class Control> Control *placed(Control *control, const char *name, const QRect &where)
{
    control->setObjectName(QString::fromLatin1(name));
    control->setGeometry(where);
    return control;
}

} // namespace

frmSchedule::frmSchedule(ui::Prompter &prompter, QWidget *owner)
    : QDialog(owner, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint), m_prompter(prompter)
{
    setObjectName(QStringLiteral("frmSchedule"));
    setWindowTitle(QStringLiteral("Scheduled Event"));
    setFixedSize(420, 330);
    setModal(true);

    auto *label = new QLabel(QStringLiteral("Schedule:"), this);
    label->setObjectName(QStringLiteral("Label1"));
    label->setGeometry(12, 12, 70, 20);
    const auto option = [](const char *name, const char *caption, QWidget *parent, int x, int y) {
        auto *o = new QRadioButton(QString::fromLatin1(caption), parent);
        o->setObjectName(QString::fromLatin1(name));
        o->move(x, y);
        return o;
    };
    optHourly = option("optHourly", "H&ourly", this, 90, 10);
    optDaily = option("optDaily", "Da&ily", this, 180, 10);
    optWeekly = option("optWeekly", "&Weekly", this, 270, 10);

    fraRun = new QGroupBox(QStringLiteral("Run Event"), this);
    fraRun->setObjectName(QStringLiteral("fraRun"));
    fraRun->setGeometry(10, 40, 400, 130);
    optEvery = option("optEvery", "E&very:", fraRun, 10, 24);
    txtHrs = placed(new QLineEdit(QStringLiteral("1"), fraRun), "txtHrs", {90, 22, 36, 22});
    UpDownHrs = placed(new controls::UpDown(fraRun), "UpDownHrs", {127, 22, 16, 22});
    UpDownHrs->setBuddy(txtHrs, 1, 23, 1);
    lblHrs = placed(new QLabel(QStringLiteral("hrs"), fraRun), "lblHrs", {148, 24, 30, 20});
    txtMin = placed(new QLineEdit(QStringLiteral("0"), fraRun), "txtMin", {180, 22, 36, 22});
    UpDownMin = placed(new controls::UpDown(fraRun), "UpDownMin", {217, 22, 16, 22});
    UpDownMin->setBuddy(txtMin, 0, 45, 15);
    lblMin = placed(new QLabel(QStringLiteral("min"), fraRun), "lblMin", {238, 24, 30, 20});
    optAt = option("optAt", "&At:", fraRun, 10, 56);
    optAt->setEnabled(false);
    DTPickerAT = timeBox("DTPickerAT", QStringLiteral("12:00 AM"), fraRun);
    DTPickerAT->setGeometry(90, 54, 80, 22);
    UpDownAT = timeSpin("UpDownAT", DTPickerAT, fraRun);
    UpDownAT->setGeometry(171, 54, 16, 22);
    DTPickerAT->setEnabled(false);
    UpDownAT->setEnabled(false);
    const char *const days[7][2] = {{"chkMon", "&Mon"},   {"chkTues", "Tu&es"}, {"chkWed", "We&d"},
                                    {"chkThur", "Th&ur"}, {"chkFri", "&Fri"},   {"chkSat", "Sa&t"},
                                    {"chkSun", "&Sun"}};
    for (int i = 0; i < 7; ++i) {
        auto *box = new QCheckBox(QString::fromLatin1(days[i][1]), fraRun);
        box->setObjectName(QString::fromLatin1(days[i][0]));
        box->setChecked(true);
        box->setEnabled(false);
        box->move(10 + i * 55, 92);
        m_days[i] = box;
    }

    fraOnly = new QGroupBox(QStringLiteral("Only during the following hours"), this);
    fraOnly->setObjectName(QStringLiteral("fraOnly"));
    fraOnly->setGeometry(10, 180, 400, 100);
    optAllDay = option("optAllDay", "A&ll Day", fraOnly, 10, 24);
    optStart = option("optStart", "Sta&rt:", fraOnly, 10, 60);
    DTPickerStart = timeBox("DTPickerStart", QStringLiteral("6:00 AM"), fraOnly);
    DTPickerStart->setGeometry(90, 58, 80, 22);
    UpDownStart = timeSpin("UpDownStart", DTPickerStart, fraOnly);
    UpDownStart->setGeometry(171, 58, 16, 22);
    lblEnd = new QLabel(QStringLiteral("E&nd:"), fraOnly);
    lblEnd->setObjectName(QStringLiteral("lblEnd"));
    lblEnd->setGeometry(200, 60, 40, 20);
    DTPickerEnd = timeBox("DTPickerEnd", QStringLiteral("6:00 PM"), fraOnly);
    DTPickerEnd->setGeometry(240, 58, 80, 22);
    lblEnd->setBuddy(DTPickerEnd); // shows its access key, which goes to the box
    UpDownEnd = timeSpin("UpDownEnd", DTPickerEnd, fraOnly);
    UpDownEnd->setGeometry(321, 58, 16, 22);
    for (QWidget *w : {static_cast<QWidget *>(DTPickerStart), static_cast<QWidget *>(UpDownStart),
                       static_cast<QWidget *>(DTPickerEnd), static_cast<QWidget *>(UpDownEnd)})
        w->setEnabled(false);

    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setGeometry(220, 292, 88, 26);
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setGeometry(318, 292, 88, 26);

    // Design state: hourly, every 1 hrs 0 min, all day.
    optHourly->setChecked(true);
    optEvery->setChecked(true);
    optAllDay->setChecked(true);

    // An option's handler runs when it becomes selected, by code or by the
    // user, and on a click on it while it is selected already.
    const auto onSelect = [this](QRadioButton *o, void (frmSchedule::*handler)()) {
        connect(o, &QRadioButton::toggled, this, [this, handler](bool on) {
            if (on)
                (this->*handler)();
        });
        connect(o, &QRadioButton::pressed, this, [this, o] { m_pressedSelected = o->isChecked(); });
        connect(o, &QRadioButton::clicked, this, [this, handler] {
            if (m_pressedSelected)
                (this->*handler)();
        });
    };
    onSelect(optHourly, &frmSchedule::optHourly_Click);
    onSelect(optDaily, &frmSchedule::optDaily_Click);
    onSelect(optWeekly, &frmSchedule::optWeekly_Click);
    onSelect(optAllDay, &frmSchedule::optAllDay_Click);
    onSelect(optStart, &frmSchedule::optStart_Click);
    connect(cmdOK, &QPushButton::clicked, this, &frmSchedule::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmSchedule::cmdCancel_Click);
    Form_Load();
}

QLineEdit *frmSchedule::timeBox(const char *name, const QString &text, QWidget *parent)
{
    auto *box = new QLineEdit(text, parent);
    box->setObjectName(QString::fromLatin1(name));
    box->setReadOnly(true);
    box->setToolTip(kTimeTip);
    box->installEventFilter(this);
    return box;
}

controls::UpDown *frmSchedule::timeSpin(const char *name, QLineEdit *box, QWidget *parent)
{
    auto *spin = new controls::UpDown(parent);
    spin->setObjectName(QString::fromLatin1(name));
    connect(spin, &controls::UpDown::UpClick, this, [this, box] { stepTime(box, 1); });
    connect(spin, &controls::UpDown::DownClick, this, [this, box] { stepTime(box, -1); });
    return spin;
}

void frmSchedule::stepTime(QLineEdit *box, int quarters)
{
    const QTime time = agents::parseBoxTime(box->text());
    if (time.isValid())
        box->setText(agents::formatStepTime(agents::stepTime(time, quarters)));
}

bool frmSchedule::eventFilter(QObject *watched, QEvent *event)
{
    // The keypad's plus and minus step a time box like its spin control.
    if (event->type() == QEvent::KeyPress &&
        (watched == DTPickerAT || watched == DTPickerStart || watched == DTPickerEnd)) {
        const int code = controls::vbKeyCode(static_cast<QKeyEvent *>(event));
        if (code == 107 || code == 109) {
            stepTime(static_cast<QLineEdit *>(watched), code == 107 ? 1 : -1);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmSchedule::keyPressEvent(QKeyEvent *event)
{
    // Esc is a click on Cancel.
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        cmdCancel->click();
        return;
    }
    QDialog::keyPressEvent(event);
}

void frmSchedule::GetDays(int &intDays)
{
    const std::array<bool, 7> ticked = agents::daysToBoxes(intDays);
    for (int i = 0; i < 7; ++i)
        m_days[i]->setChecked(ticked[i]);
    intDays = 0;
}

void frmSchedule::Form_Load()
{
    const agents::udtSchedule &s = agents::schedule();
    switch (s.Type) {
    case 0:
        optHourly->setChecked(true);
        optAllDay->setChecked(true);
        break;
    case 1:
        optHourly->setChecked(true);
        txtHrs->setText(QString::number(agents::intervalHours(s.interval)));
        txtMin->setText(QString::number(agents::intervalMinutes(s.interval)));
        if (agents::isAllDay(s.StartTime, s.EndTime)) {
            optAllDay->setChecked(true);
            DTPickerStart->setText(QStringLiteral("12:00 AM"));
            DTPickerEnd->setText(QStringLiteral("11:59 PM"));
        } else {
            optStart->setChecked(true);
            DTPickerStart->setText(agents::formatBoxTime(s.StartTime));
            DTPickerEnd->setText(agents::formatBoxTime(s.EndTime));
        }
        break;
    case 2:
        optDaily->setChecked(true);
        DTPickerAT->setText(agents::formatBoxTime(s.At));
        break;
    case 3: {
        optWeekly->setChecked(true);
        int days = s.Days;
        GetDays(days);
        DTPickerAT->setText(agents::formatBoxTime(s.At));
        break;
    }
    default:
        break;
    }
}

void frmSchedule::optHourly_Click()
{
    if (!optHourly->isChecked())
        return;
    for (QWidget *w : {static_cast<QWidget *>(DTPickerStart), static_cast<QWidget *>(UpDownStart),
                       static_cast<QWidget *>(DTPickerEnd), static_cast<QWidget *>(UpDownEnd)})
        w->setEnabled(false);
    for (QWidget *w :
         {static_cast<QWidget *>(fraOnly), static_cast<QWidget *>(optStart),
          static_cast<QWidget *>(optAllDay), static_cast<QWidget *>(lblEnd), static_cast<QWidget *>(optEvery),
          static_cast<QWidget *>(lblHrs), static_cast<QWidget *>(lblMin), static_cast<QWidget *>(txtHrs),
          static_cast<QWidget *>(txtMin), static_cast<QWidget *>(UpDownHrs),
          static_cast<QWidget *>(UpDownMin)})
        w->setEnabled(true);
    optEvery->setChecked(true);
    for (QWidget *w : {static_cast<QWidget *>(optAt), static_cast<QWidget *>(DTPickerAT),
                       static_cast<QWidget *>(UpDownAT)})
        w->setEnabled(false);
    fraRun->setEnabled(true);
    for (QCheckBox *box : m_days)
        box->setEnabled(false);
}

namespace {
/// What Daily and Weekly share: the run at a time, no window, no interval.
void runAtTime(QList<QWidget *> off, QList<QWidget *> on, QRadioButton *optEvery, QRadioButton *optAt)
{
    for (QWidget *w : off)
        w->setEnabled(false);
    for (QWidget *w : on)
        w->setEnabled(true);
    // Clearing the one means selecting the other in the same frame.
    optEvery->setAutoExclusive(false);
    optEvery->setChecked(false);
    optEvery->setAutoExclusive(true);
    optAt->setChecked(true);
}
} // namespace

void frmSchedule::optDaily_Click()
{
    if (!optDaily->isChecked())
        return;
    runAtTime({DTPickerStart, UpDownStart, DTPickerEnd, UpDownEnd, fraOnly,   optStart,  optAllDay, lblEnd,
               optEvery,      lblHrs,      lblMin,      txtHrs,    txtMin,    UpDownHrs, UpDownMin, m_days[0],
               m_days[1],     m_days[2],   m_days[3],   m_days[4], m_days[5], m_days[6]},
              {optAt, DTPickerAT, UpDownAT, fraRun}, optEvery, optAt);
}

void frmSchedule::optWeekly_Click()
{
    if (!optWeekly->isChecked())
        return;
    runAtTime({DTPickerStart, UpDownStart, DTPickerEnd, UpDownEnd, fraOnly, optStart, optAllDay, lblEnd,
               optEvery, lblHrs, lblMin, txtHrs, txtMin, UpDownHrs, UpDownMin},
              {optAt, DTPickerAT, UpDownAT, fraRun, m_days[0], m_days[1], m_days[2], m_days[3], m_days[4],
               m_days[5], m_days[6]},
              optEvery, optAt);
}

void frmSchedule::optStart_Click()
{
    const bool on = optStart->isChecked();
    for (QWidget *w : {static_cast<QWidget *>(DTPickerStart), static_cast<QWidget *>(UpDownStart),
                       static_cast<QWidget *>(DTPickerEnd), static_cast<QWidget *>(UpDownEnd)})
        w->setEnabled(on);
}

void frmSchedule::optAllDay_Click()
{
    const bool on = !optAllDay->isChecked();
    for (QWidget *w : {static_cast<QWidget *>(DTPickerStart), static_cast<QWidget *>(UpDownStart),
                       static_cast<QWidget *>(DTPickerEnd), static_cast<QWidget *>(UpDownEnd)})
        w->setEnabled(on);
}

std::array<bool, 7> frmSchedule::dayBoxes() const
{
    std::array<bool, 7> boxes{};
    for (int i = 0; i < 7; ++i)
        boxes[i] = m_days[i]->isChecked();
    return boxes;
}

void frmSchedule::cmdOK_Click()
{
    agents::udtSchedule &s = agents::schedule();
    if (optHourly->isChecked()) {
        s.Type = 1;
        const QTime start = agents::parseBoxTime(DTPickerStart->text());
        const QTime end = agents::parseBoxTime(DTPickerEnd->text());
        const agents::IntervalResult r =
            agents::intervalRule(app::leadingNumber(txtHrs->text()), app::leadingNumber(txtMin->text()),
                                 optAllDay->isChecked(), agents::windowMinutes(start, end));
        if (r.adjusted)
            m_prompter.msgBox(agents::adjustmentMessage(), ui::Buttons::OK, ui::Icon::Information, 1,
                              QString());
        s.interval = static_cast<int16_t>(r.interval);
        if (optAllDay->isChecked()) {
            s.StartTime = QTime(0, 0);
            s.EndTime = QTime(23, 59);
        } else {
            if (start.isValid())
                s.StartTime = start;
            if (end.isValid())
                s.EndTime = end;
        }
    }
    if (optDaily->isChecked()) {
        s.Type = 2;
        if (const QTime at = agents::parseBoxTime(DTPickerAT->text()); at.isValid())
            s.At = at;
    }
    if (optWeekly->isChecked()) {
        s.Type = 3;
        s.Days = agents::daysFromBoxes(dayBoxes());
        if (const QTime at = agents::parseBoxTime(DTPickerAT->text()); at.isValid())
            s.At = at;
    }
    accept();
}

void frmSchedule::cmdCancel_Click()
{
    agents::schedule() = agents::defaultSchedule();
    reject();
}
