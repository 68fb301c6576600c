#pragma once

#include <QString>

class frmMain;

namespace catalogue {

/// Writes the agent list to a comma-separated file in UTF-8, replacing one that is
/// there: the header, then a line for each agent of the main window's tree
/// as the walk finds it. Raises the first failure, the file's or the walk's;
/// what was written until then stays in the file. `status` is the status
/// bar's words for the walk's progress.
void exportAgentList(frmMain &main, const QString &fileName, const QString &status);

} // namespace catalogue
