#include "routing/frmtracking.h"

#include "app/frmmain.h"
#include "catalogue/reportwindow.h"

#include <QApplication>
#include <QLabel>
#include <QStyle>

#include <algorithm>
#include <array>

namespace routing {

namespace {

constexpr int kLabelHeight = 240;

QString labelText(const catalogue::ReportWindow &form, const QString &name)
{
    const QLabel *label = form.findChild<QLabel *>(name);
    return label ? label->text() : QString();
}

void SSDBGrid1_PrintInitialize(const catalogue::ReportWindow &form, controls::PrintInfo &info)
{
    info.pageHeader = QLatin1Char('\t') + form.windowTitle() + QStringLiteral(" - ") + form.strFolderPath;
    info.pageFooter = QStringLiteral("\tApprove: ") + labelText(form, QStringLiteral("lblApprove")) +
                      QStringLiteral(" - Reject: ") + labelText(form, QStringLiteral("lblReject"));
}

/// The totals' captions and numbers as wide and high as their text in the
/// desktop's font, in two rows below the grid, and the window high enough
/// for them and the icon: no text is cut, whatever the font's size.
void fitTotals(catalogue::ReportWindow &form, const std::array<QLabel *, 2> &first,
               const std::array<QLabel *, 2> &second)
{
    int captionWidth = 0, height = 0;
    for (const auto &row : {first, second}) {
        captionWidth = std::max({captionWidth, row[0]->width(), row[0]->sizeHint().width()});
        height =
            std::max({height, row[0]->height(), row[0]->sizeHint().height(), row[1]->sizeHint().height()});
    }
    int top = first[0]->y();
    for (const auto &row : {first, second}) {
        row[0]->setGeometry(row[0]->x(), top, captionWidth, height);
        const int numberLeft = qMax(row[1]->x(), row[0]->geometry().right() + 4);
        row[1]->setGeometry(numberLeft, top, qMax(row[1]->width(), row[1]->sizeHint().width()), height);
        top += height;
    }
    const QRect all = form.childrenRect();
    form.setFixedSize(form.size().expandedTo(QSize(all.right() + 1, all.bottom() + 1)));
}

} // namespace

catalogue::ReportWindow *newFrmTracking(frmMain &main)
{
    auto *form = new catalogue::ReportWindow(catalogue::frmTrackingSetup(), main, &main);
    form->SSDBGrid1->setColumns({QStringLiteral("Recipient"), QStringLiteral("Status"), QStringLiteral("At")},
                                {4995, 3493, 3704});
    QLabel *icon = form->addLabel(QStringLiteral("Image1"), QString(), 60, 3360, 480, 480);
    icon->setPixmap(QApplication::style()->standardIcon(QStyle::SP_MessageBoxInformation).pixmap(32, 32));
    QLabel *approve =
        form->addLabel(QStringLiteral("Label1"), QStringLiteral("Approve:"), 540, 3360, 735, kLabelHeight);
    QLabel *approved =
        form->addLabel(QStringLiteral("lblApprove"), QStringLiteral("0"), 1320, 3360, 600, kLabelHeight);
    QLabel *reject =
        form->addLabel(QStringLiteral("Label2"), QStringLiteral("Reject:"), 540, 3600, 735, kLabelHeight);
    QLabel *rejected =
        form->addLabel(QStringLiteral("lblReject"), QStringLiteral("0"), 1320, 3600, 600, kLabelHeight);
    fitTotals(*form, {approve, approved}, {reject, rejected});
    QObject::connect(form, &catalogue::ReportWindow::printInitialized, form,
                     [form](controls::PrintInfo &info) { SSDBGrid1_PrintInitialize(*form, info); });
    return form;
}

void setTotals(catalogue::ReportWindow &form, int approve, int reject)
{
    if (auto *label = form.findChild<QLabel *>(QStringLiteral("lblApprove")))
        label->setText(QString::number(approve));
    if (auto *label = form.findChild<QLabel *>(QStringLiteral("lblReject")))
        label->setText(QString::number(reject));
}

} // namespace routing
