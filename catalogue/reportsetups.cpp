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
        QStringLiteral("frmScripts"),
        QStringLiteral("Installed Agents"),
        7212,
        4344,
        7212,
        3792,
        3900,
        {print(1980), {QStringLiteral("cmdGoTo"), QStringLiteral("&Go To"), 3300}, close(), help()},
        true,
        true,
        0.5,
        false,
        PrintTitle::FormCaption,
        QString(),
        QString(),
        1005,
    };
    return setup;
}

const ReportSetup &frmMapSetup()
{
    static const ReportSetup setup{
        QStringLiteral("frmMap"),
        QStringLiteral("Routing Map"),
        7236,
        3804,
        7222,
        3252,
        3360,
        {saveAs(), print(3300), close(), help()},
        true,
        true,
        0.5,
        false,
        PrintTitle::GridCaption,
        QStringLiteral("Routing Map"),
        QString(),
        1016,
    };
    return setup;
}

const ReportSetup &frmMessagesSetup()
{
    static const ReportSetup setup{
        QStringLiteral("frmMessages"),
        QStringLiteral("Messages"),
        7260,
        4368,
        7260,
        3792,
        3900,
        {{QStringLiteral("cmdTracking"), QStringLiteral("&Tracking"), 660, 1026},
         {QStringLiteral("cmdMap"), QStringLiteral("&Map"), 1980, 1016},
         print(3300),
         close(),
         help(1014)},
        false,
        false,
        0.5,
        false,
        PrintTitle::GridCaption,
        QString(),
        QStringLiteral("cmdTracking"),
        1030,
    };
    return setup;
}

const ReportSetup &frmTrackingSetup()
{
    static const ReportSetup setup{
        QStringLiteral("frmTracking"),
        QStringLiteral("Tracking"),
        7248,
        3828,
        7272,
        3252,
        3360,
        {saveAs(), print(3300), close(), help(1026)},
        false,
        true,
        1.5,
        true,
        PrintTitle::FormCaption,
        QStringLiteral("Vote Table"),
        QString(),
        1026,
    };
    return setup;
}

} // namespace catalogue
