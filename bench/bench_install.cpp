// Times installing one agent into 1,000 folders at once from the
// Installation tab, the refresh after it included, on a large store.
//   bench_install [STORE.db]
#include "app/frmmain.h"
#include "app/program.h"
#include "navigation/nodekinds.h"
#include "platform/controls/ssdbgrid.h"
#include "platform/controls/sstree.h"
#include "platform/mapi/profiles.h"
#include "platform/store/generate.h"
#include "platform/ui/scriptedprompter.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>

#include <cstdio>
#include <sys/resource.h>

int main(int argc, char *argv[])
{
    QTemporaryDir dir;
    for (const char *var : {"XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME"})
        qputenv(var, QFile::encodeName(dir.path()));
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QString path = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    if (path.isEmpty()) {
        path = dir.filePath(QStringLiteral("bench.db"));
        store::GenerateOptions o;
        o.stores = 4;
        o.folders = 20000;
        o.agents = 5000;
        o.hidden = 2000;
        o.messages = 20000;
        store::generateStore(o, path);
    }
    const QString script = dir.filePath(QStringLiteral("agent.vbs"));
    QFile file(script);
    file.open(QIODevice::WriteOnly);
    file.write("<SCRIPT RunAt=Server Language=VBScript>\r\nSub Folder_OnMessageCreated\r\nEnd Sub\r\n</SCRIPT>\r\n");
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
                                 controls::SSTree::key(node) + QLatin1Char('\t') + controls::SSTree::tag(node));
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
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("installed in %d folders with the refresh after it: %.0f ms (%.2f ms a folder)\n"
                "closing message: %s\npeak memory: %ld MB\n",
                rows, ms, ms / rows, qPrintable(prompts.isEmpty() ? QString() : prompts.last().text),
                usage.ru_maxrss / 1024);
    form.close();
    return 0;
}
