// The four report windows: layout in twips before any resize, buttons,
// keys, print settings, Save As name and help context of each.
#include "catalogue/reportwindow.h"

namespace catalogue {

namespace {

ReportButton print(int left)
{
    return {QStringLiteral("cmdPrint"), QStringLiteral("&Print"), left};
}
ReportButton close()
{
    return {QStringLiteral("cmdClose"), QStringLiteral("Cl&ose"), 4620};
}
ReportButton help(int context = 0)
{
    return {QStringLiteral("cmdHelp"), QStringLiteral("&Help"), 5940, context};
}
ReportButton saveAs()
{
    return {QStringLiteral("cmdSaveAs"), QStringLiteral("&Save As..."), 1980};
}

} // namespace

const ReportSetup &frmScriptsSetup()
{
    static const ReportSetup setup{
        .formName = QStringLiteral("frmScripts"),
        .designCaption = QStringLiteral("Installed Agents"),
        .clientWidth = 7212,
        .clientHeight = 4344,
        .gridWidth = 7212,
        .gridHeight = 3792,
        .buttonTop = 3900,
        .buttons = {print(1980),
                    {QStringLiteral("cmdGoTo"), QStringLiteral("&Go To"), 3300},
                    close(),
                    help()},
        .resizes = true,
        .fontKeys = true,
        .helpContext = 1005,
    };
    return setup;
}

const ReportSetup &frmMapSetup()
{
    static const ReportSetup setup{
        .formName = QStringLiteral("frmMap"),
        .designCaption = QStringLiteral("Routing Map"),
        .clientWidth = 7236,
        .clientHeight = 3804,
        .gridWidth = 7222,
        .gridHeight = 3252,
        .buttonTop = 3360,
        .buttons = {saveAs(), print(3300), close(), help()},
        .resizes = true,
        .fontKeys = true,
        .printTitle = PrintTitle::GridCaption,
        .saveAsBase = QStringLiteral("Routing Map"),
        .helpContext = 1016,
    };
    return setup;
}

const ReportSetup &frmMessagesSetup()
{
    static const ReportSetup setup{
        .formName = QStringLiteral("frmMessages"),
        .designCaption = QStringLiteral("Messages"),
        .clientWidth = 7260,
        .clientHeight = 4368,
        .gridWidth = 7260,
        .gridHeight = 3792,
        .buttonTop = 3900,
        .buttons = {{QStringLiteral("cmdTracking"), QStringLiteral("&Tracking"), 660, 1026},
                    {QStringLiteral("cmdMap"), QStringLiteral("&Map"), 1980, 1016},
                    print(3300),
                    close(),
                    help(1014)},
        .printTitle = PrintTitle::GridCaption,
        .defaultButton = QStringLiteral("cmdTracking"),
        .helpContext = 1030,
    };
    return setup;
}

const ReportSetup &frmTrackingSetup()
{
    static const ReportSetup setup{
        .formName = QStringLiteral("frmTracking"),
        .designCaption = QStringLiteral("Tracking"),
        .clientWidth = 7248,
        .clientHeight = 3828,
        .gridWidth = 7272,
        .gridHeight = 3252,
        .buttonTop = 3360,
        .buttons = {saveAs(), print(3300), close(), help(1026)},
        .fontKeys = true,
        .printMargins = 1.5,
        .printSwitch12 = true,
        .saveAsBase = QStringLiteral("Vote Table"),
        .helpContext = 1026,
    };
    return setup;
}

} // namespace catalogue
