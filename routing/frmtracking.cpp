#include "routing/frmtracking.h"

#include "app/frmmain.h"
#include "catalogue/reportwindow.h"

#include <QApplication>
#include <QLabel>
#include <QStyle>

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
    info.pageHeader = QLatin1Char('\t') + form.windowTitle() + QStringLiteral(" - ") +
                      form.strFolderPath;
    info.pageFooter = QStringLiteral("\tApprove: ") + labelText(form, QStringLiteral("lblApprove")) +
                      QStringLiteral(" - Reject: ") + labelText(form, QStringLiteral("lblReject"));
}

} // namespace

catalogue::ReportWindow *newFrmTracking(frmMain &main)
{
    auto *form = new catalogue::ReportWindow(catalogue::frmTrackingSetup(), main, &main);
    form->SSDBGrid1->setColumns({QStringLiteral("Recipient"), QStringLiteral("Status"), QStringLiteral("At")},
                                {4995, 3493, 3704});
    QLabel *icon = form->addLabel(QStringLiteral("Image1"), QString(), 60, 3360, 480, 480);
    icon->setPixmap(QApplication::style()->standardIcon(QStyle::SP_MessageBoxInformation).pixmap(32, 32));
    form->addLabel(QStringLiteral("Label1"), QStringLiteral("Approve:"), 540, 3360, 735, kLabelHeight);
    form->addLabel(QStringLiteral("lblApprove"), QStringLiteral("0"), 1320, 3360, 600, kLabelHeight);
    form->addLabel(QStringLiteral("Label2"), QStringLiteral("Reject:"), 540, 3600, 735, kLabelHeight);
    form->addLabel(QStringLiteral("lblReject"), QStringLiteral("0"), 1320, 3600, 600, kLabelHeight);
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
