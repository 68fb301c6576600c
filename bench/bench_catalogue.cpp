// Times the installed-agents list (the walk over every agent and its shown
// window) and the export of the agent list to a file, on a large store;
// prints the peak memory.
//   bench_catalogue [STORE.db]
#include "app/frmmain.h"
#include "app/program.h"
#include "bench/benchstore.h"
#include "platform/controls/ssdbgrid.h"
#include "platform/mapi/profiles.h"
#include "platform/ui/scriptedprompter.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

namespace {

/// Notes the time at which the list's window shows, and closes it.
class ListWatch : public QObject {
public:
    explicit ListWatch(const QElapsedTimer &timer) : m_timer(timer) {}
    double elapsed = 0;
    int rows = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show && watched->objectName() == QLatin1String("frmScripts")) {
            elapsed = m_timer.nsecsElapsed() / 1e6;
            auto *form = static_cast<QDialog *>(watched);
            rows = form->findChild<controls::SSDBGrid *>()->Rows();
            QTimer::singleShot(0, form, &QDialog::close);
        }
        return false;
    }

private:
    const QElapsedTimer &m_timer;
};

} // namespace

int main(int argc, char *argv[])
{
    QTemporaryDir dir;
    bench::prepareEnvironment(dir);
    QApplication app(argc, argv);
    const QString path = bench::benchStore(argc, argv, dir);
    mapi::writeProfile(mapi::Profile{QStringLiteral("Bench"), QStringLiteral("Alice Admin"), path});
    ui::ScriptedPrompter prompter;
    prompter.setDefaultProfile(QStringLiteral("Bench"));
    app::Program program(prompter);
    if (!app::Main(program))
        return 1;
    QCoreApplication::processEvents();
    frmMain &main = *program.gfrmMain;

    // The list: from the command to its window on the screen, which is then
    // closed as a user would.
    QElapsedTimer t;
    ListWatch watch(t);
    app.installEventFilter(&watch);
    t.start();
    main.mnuFileInstalledAgents_Click();
    app.removeEventFilter(&watch);

    const QString csv = dir.filePath(QStringLiteral("agents.csv"));
    prompter.enqueue(QStringLiteral("Yes"));
    prompter.enqueue(QStringLiteral("file:") + csv);
    t.restart();
    main.mnuFileExport_Click();
    const double exported = t.nsecsElapsed() / 1e6;

    std::printf(
        "agents listed: %d\ninstalled agents, walk and window: %.0f ms\nexport: %.0f ms (%lld bytes)\n"
        "peak memory: %ld MB\n",
        watch.rows, watch.elapsed, exported, static_cast<long long>(QFileInfo(csv).size()),
        bench::peakMemoryMB());
    main.close();
    return 0;
}
