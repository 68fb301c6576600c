#include "routing/frmmap.h"

#include "app/frmmain.h"
#include "catalogue/reportwindow.h"

namespace routing {

namespace {

constexpr int kParameters = 7;
constexpr int kParameterWidth = 1969;

} // namespace

catalogue::ReportWindow *newFrmMap(frmMain &main)
{
    auto *form = new catalogue::ReportWindow(catalogue::frmMapSetup(), main, &main);
    QStringList captions{QStringLiteral("Row"), QStringLiteral("Activity ID"), QStringLiteral("Action"),
                         QStringLiteral("Flags")};
    QList<int> widths{1207, 1651, 3200, 1355};
    for (int i = 1; i <= kParameters; ++i) {
        captions << QStringLiteral("Parameter %1").arg(i);
        widths << kParameterWidth;
    }
    form->SSDBGrid1->setColumns(captions, widths);
    return form;
}

} // namespace routing
