// Times installing one agent into 1,000 folders at once from the
// Installation tab, the refresh after it included, on a large store.
//   bench_install [STORE.db | --folders N --agents M]
#include "app/frmmain.h"
#include "app/program.h"
#include "bench/benchstore.h"
#include "navigation/nodekinds.h"
#include "platform/controls/ssdbgrid.h"
#include "platform/controls/sstree.h"
#include "platform/mapi/profiles.h"
#include "platform/ui/scriptedprompter.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>

#include <cstdio>

int main(int argc, char *argv[])
{
    QTemporaryDir dir;
    bench::prepareEnvironment(dir);
    QApplication app(argc, argv);
    const QString path = bench::benchStore(argc, argv, dir);
    const QString script = dir.filePath(QStringLiteral("agent.vbs"));
    QFile file(script);
    file.open(QIODevice::WriteOnly);
    file.write(
        "<SCRIPT RunAt=Server Language=VBScript>\r\nSub Folder_OnMessageCreated\r\nEnd Sub\r\n</SCRIPT>\r\n");
    file.close();
    mapi::writeProfile(mapi::Profile{QStringLiteral("Bench"), QStringLiteral("Alice Admin"), path});
    ui::ScriptedPrompter prompter;
    prompter.setDefaultProfile(QStringLiteral("Bench"));
    app::Program program(prompter);
    if (!app::Main(program))
        return 1;
    frmMain &form = *program.gfrmMain;

    // The first 1,000 folders the user may install in.
    int rows = 0;
    for (int i = 1; i <= form.treOutl->count() && rows < 1000; ++i) {
        QTreeWidgetItem *node = form.treOutl->nodeAt(i);
        const int image = controls::SSTree::image(node);
        if (image != navigation::kImageFolder && image != navigation::kImageFolderWithAgents)
            continue;
        form.SSDBTarget->AddItem(form.StripCurrentUser(controls::SSTree::fullPath(node)) + QLatin1Char('\t') +
                                 controls::SSTree::key(node) + QLatin1Char('\t') +
                                 controls::SSTree::tag(node));
        ++rows;
    }
    form.txtSource->setText(script);
    form.txtAgentName->setText(QStringLiteral("Bench Agent"));
    form.chkNew->setChecked(true);
    prompter.enqueue(QStringLiteral("Yes"));
    prompter.enqueue(QStringLiteral("OK"));
    QElapsedTimer t;
    t.start();
    form.cmdInstall_Click();
    const double ms = t.nsecsElapsed() / 1e6;
    const QList<ui::PromptRecord> prompts = prompter.takePrompts();
    std::printf("installed in %d folders with the refresh after it: %.0f ms (%.2f ms a folder)\n"
                "closing message: %s\npeak memory: %ld MB\n",
                rows, ms, ms / rows, qPrintable(prompts.isEmpty() ? QString() : prompts.last().text),
                bench::peakMemoryMB());
    form.close();
    return 0;
}
