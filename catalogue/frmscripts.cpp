#include "catalogue/frmscripts.h"

#include "app/frmmain.h"
#include "catalogue/reportwindow.h"

#include <QPointer>
#include <QPushButton>

namespace catalogue {

namespace {

constexpr int kFolderColumn = 1;
constexpr int kFirstFlag = 8;
constexpr int kLastFlag = 11;
constexpr int kEntryIdColumn = 12;

void SSDBGrid1_InitColumnProps(controls::SSDBGrid &grid)
{
    const auto text = [](const char *caption, int width = -1) {
        return controls::GridColumn{QString::fromLatin1(caption), width, false};
    };
    const auto check = [](const char *caption) {
        return controls::GridColumn{QString::fromLatin1(caption), 900, true};
    };
    grid.setColumns({text("Name"), text("Folder", 1488), text("Server", 1000), text("Handler", 1200),
                     text("Created", 1700), text("Created By"), text("Last Modified", 1700),
                     text("Last Modified By"), check("New"), check("Update"), check("Delete"),
                     check("Scheduled"), text("Entry ID", 0)});
}

void SSDBGrid1_DblClick(ReportWindow &form, frmMain &main)
{
    const QString id = form.SSDBGrid1->cellText(form.SSDBGrid1->Row(), kEntryIdColumn);
    form.close();
    main.GotoNode(id);
}

void cmdGoTo_Click(ReportWindow &form, frmMain &main)
{
    if (form.SSDBGrid1->SelBookmarks().isEmpty()) {
        main.prompter().msgBox(QStringLiteral("You must select an agent in the grid."), ui::Buttons::OK,
                               ui::Icon::Information, 1, QString());
        return;
    }
    SSDBGrid1_DblClick(form, main);
}

} // namespace

ReportWindow *newFrmScripts(frmMain &main)
{
    auto *form = new ReportWindow(frmScriptsSetup(), main, &main);
    SSDBGrid1_InitColumnProps(*form->SSDBGrid1);
    QObject::connect(form->button(QStringLiteral("cmdGoTo")), &QPushButton::clicked, form,
                     [form, &main] { cmdGoTo_Click(*form, main); });
    QObject::connect(form->SSDBGrid1, &controls::SSDBGrid::DblClick, form,
                     [form, &main] { SSDBGrid1_DblClick(*form, main); });
    QObject::connect(form->SSDBGrid1, &controls::SSDBGrid::RowPrint, form,
                     [](int, int, QStringList &cells) { SSDBGrid1_RowPrint(cells); });
    return form;
}

void SSDBGrid1_RowPrint(QStringList &cells)
{
    QString folder = cells.value(kFolderColumn);
    const qsizetype length = folder.size();
    // 1-based positions: the first two characters are never touched, and the
    // end stays where it was before any blank went in.
    for (qsizetype i = 3; i <= length; ++i) {
        if (folder.at(i - 1) == QLatin1Char('\\')) {
            folder.insert(i - 1, QLatin1Char(' '));
            ++i;
        }
    }
    if (cells.size() > kFolderColumn)
        cells[kFolderColumn] = folder;
    for (int c = kFirstFlag; c <= kLastFlag && c < cells.size(); ++c)
        cells[c] =
            cells.at(c) == QLatin1String("0") || cells.at(c).isEmpty() ? QString() : QStringLiteral("X");
}

} // namespace catalogue
