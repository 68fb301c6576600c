#pragma once

#include "tests/support/testenv.h"

#include <QStringList>

namespace testsupport {

/// The key of the profile "Test", quoted for the driver's "reg" command.
inline const QString kTestProfileKey = QStringLiteral(
    "\"HKCU\\Software\\Microsoft\\Windows NT\\CurrentVersion\\Windows Messaging Subsystem\\Profiles\\Test\"");

/// The driver's lines that install the test script as `name` into `folders`
/// ("\Store\A | \Store\B"), answering the questions; the install goes last,
/// so that a caller may send it without waiting.
inline QStringList installLines(const QString &name, const QString &folders)
{
    return {QStringLiteral("tab frmMain SSTab1 1"),
            QStringLiteral("answer file:") + fixture(QStringLiteral("files/latin1.vbs")),
            QStringLiteral("answer text:") + name,
            QStringLiteral("press frmMain cmdScript"),
            QStringLiteral("press frmMain cmdFolder"),
            QStringLiteral("select frmFolder ") + folders,
            QStringLiteral("press frmFolder cmdOK"),
            QStringLiteral("press frmMain chkNew"),
            QStringLiteral("answer Yes"),
            QStringLiteral("answer OK"),
            QStringLiteral("press frmMain cmdInstall")};
}

/// The lines that delete the agent at the tree path `agent`; a message
/// after the question needs an answer queued after the question's.
inline QStringList removeLines(const QString &agent)
{
    return {QStringLiteral("click ") + agent, QStringLiteral("answer Yes"),
            QStringLiteral("menu mnuFileDelete")};
}

/// The lines that rename the agent at the tree path `agent` in its properties.
inline QStringList renameLines(const QString &agent, const QString &name)
{
    return {QStringLiteral("click ") + agent, QStringLiteral("menu mnuFileAgentProperties"),
            QStringLiteral("type frmProperties txtAgentName ") + name, QStringLiteral("answer Yes"),
            QStringLiteral("press frmProperties cmdOK")};
}

} // namespace testsupport
