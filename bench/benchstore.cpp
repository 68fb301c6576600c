#include "bench/benchstore.h"

#include "platform/controls/ssdbgrid.h"
#include "platform/mapi/profiles.h"
#include "platform/os/userfolders.h"
#include "platform/store/generate.h"
#include "platform/ui/scriptedprompter.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QEvent>
#include <QTimer>

#include <cstdio>
#include <sys/resource.h>

namespace bench {

QString benchStore(int argc, char *argv[], const QTemporaryDir &dir)
{
    if (argc > 1)
        return QString::fromLocal8Bit(argv[1]);
    const QString path = dir.filePath(QStringLiteral("bench.db"));
    QElapsedTimer t;
    t.start();
    store::GenerateOptions o;
    o.stores = 4;
    o.folders = 20000;
    o.agents = 5000;
    o.hidden = 2000;
    o.messages = 20000;
    store::generateStore(o, path);
    std::printf("generated a store of %d folders and %d agents in %lld ms\n", o.folders, o.agents,
                t.elapsed());
    return path;
}

void prepareEnvironment(const QTemporaryDir &dir)
{
    os::redirectUserFolders(dir.path());
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

void useBenchProfile(ui::ScriptedPrompter &prompter, const QString &storePath)
{
    mapi::writeProfile(mapi::Profile{QStringLiteral("Bench"), QStringLiteral("Alice Admin"), storePath});
    prompter.setDefaultProfile(QStringLiteral("Bench"));
}

bool ShowWatch::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show && watched->objectName() == m_name) {
        elapsed = m_timer.nsecsElapsed() / 1e6;
        auto *form = static_cast<QDialog *>(watched);
        rows = form->findChild<controls::SSDBGrid *>()->Rows();
        QTimer::singleShot(0, form, &QDialog::close);
    }
    return false;
}

long peakMemoryMB()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

} // namespace bench
