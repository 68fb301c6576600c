#include "routing/frmmessages.h"

#include "app/frmmain.h"
#include "app/hourglass.h"
#include "app/program.h"
#include "catalogue/reportwindow.h"
#include "platform/com/routine.h"
#include "platform/mapi/session.h"
#include "platform/routing/tracking.h"
#include "routing/frmtracking.h"
#include "routing/objectref.h"

#include <QPointer>
#include <QPushButton>

namespace routing {

namespace {

constexpr int kSubject = 0;
constexpr int kRui = 3;
constexpr int kCurrentRow = 5;
constexpr int kId = 6;
constexpr int kStoreId = 7;
constexpr int kF11 = 122;

void SSDBGrid1_InitColumnProps(controls::SSDBGrid &grid)
{
    grid.setColumns({QStringLiteral("Subject"), QStringLiteral("From"), QStringLiteral("Received"),
                     QStringLiteral("RUI"), QStringLiteral("Status"), QStringLiteral("Current Row"),
                     QString(), QString()},
                    {4657, 3200, 2921, 1080, 1693, 2159, 0, 0});
}

/// The map of the current row's message, titled with its subject and RUI,
/// and its current row when `withRow`.
void showMap(const catalogue::ReportWindow &form, frmMain &main, bool withRow)
{
    const controls::SSDBGrid &grid = *form.SSDBGrid1;
    const int row = grid.Row();
    QString caption = grid.cellText(row, kSubject) + QStringLiteral(" - RUI ") + grid.cellText(row, kRui);
    if (withRow)
        caption += QStringLiteral(" - Current Row ") + grid.cellText(row, kCurrentRow);
    main.DisplayMap(grid.cellText(row, kId), grid.cellText(row, kStoreId), caption);
}

void SSDBGrid1_KeyUp(const catalogue::ReportWindow &form, frmMain &main, int keyCode)
{
    if (keyCode != kF11)
        return;
    if (form.SSDBGrid1->SelBookmarks().isEmpty()) {
        main.prompter().msgBox(QStringLiteral("Please select a process instance message."), ui::Buttons::OK,
                               ui::Icon::Information, 1, QString());
        return;
    }
    showMap(form, main, false);
}

/// Blanks off both ends; other white space stays.
QString trimBlanks(const QString &text)
{
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && text.at(first) == QLatin1Char(' '))
        ++first;
    while (last > first && text.at(last - 1) == QLatin1Char(' '))
        --last;
    return text.mid(first, last - first);
}

void cmdTracking_click(const catalogue::ReportWindow &messages, frmMain &main)
{
    SetHourglass(true);
    com::ResumeNext routine;
    const controls::SSDBGrid &grid = *messages.SSDBGrid1;
    const int row = grid.Row();
    std::optional<mapi::Message> message;
    routine.step([&] {
        message =
            main.program().gobjSession->GetMessage(grid.cellText(row, kId), grid.cellText(row, kStoreId));
    });
    Tracking tracking;
    const int count = routine.value(
        [&] {
            tracking.attach(objectRef(message));
            return tracking.RecordCount();
        },
        0);
    const QPointer<catalogue::ReportWindow> form = newFrmTracking(main);
    int approve = 0;
    int reject = 0;
    for (int i = 1; i <= count; ++i) {
        routine.step([&] {
            const TrackingRecord record = tracking.Record(i);
            QString status = trimBlanks(record.Status);
            if (status.isEmpty())
                status = QStringLiteral("No response");
            if (status == QLatin1String("Approve"))
                ++approve;
            if (status == QLatin1String("Reject"))
                ++reject;
            form->SSDBGrid1->AddItem(record.Name + QLatin1Char('\t') + status + QLatin1Char('\t') +
                                     record.Time);
        });
    }
    routine.step([&] { form->setWindowTitle(QStringLiteral("Tracking - ") + objectRef(message).Subject()); });
    setTotals(*form, approve, reject);
    form->strFolderPath = messages.strFolderPath;
    SetHourglass(false);
    form->exec();
}

} // namespace

catalogue::ReportWindow *newFrmMessages(frmMain &main)
{
    auto *form = new catalogue::ReportWindow(catalogue::frmMessagesSetup(), main, &main);
    SSDBGrid1_InitColumnProps(*form->SSDBGrid1);
    const auto map = [form, &main] { showMap(*form, main, true); };
    QObject::connect(form->button(QStringLiteral("cmdMap")), &QPushButton::clicked, form, map);
    QObject::connect(form->SSDBGrid1, &controls::SSDBGrid::DblClick, form, map);
    QObject::connect(form->SSDBGrid1, &controls::SSDBGrid::KeyUp, form,
                     [form, &main](int keyCode, int) { SSDBGrid1_KeyUp(*form, main, keyCode); });
    QObject::connect(form->button(QStringLiteral("cmdTracking")), &QPushButton::clicked, form,
                     [form, &main] { cmdTracking_click(*form, main); });
    return form;
}

} // namespace routing
