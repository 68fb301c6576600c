#include "bench/benchstore.h"

#include "app/frmmain.h"
#include "app/program.h"

#include "platform/controls/ssdbgrid.h"
#include "platform/mapi/profiles.h"
#include "platform/mapi/tags.h"
#include "platform/os/userfolders.h"
#include "platform/store/database.h"
#include "platform/store/generate.h"
#include "platform/ui/scriptedprompter.h"

#include <QCoreApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QEvent>
#include <QSqlRecord>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/resource.h>
#include <vector>

namespace bench {

QString benchStore(int argc, char *argv[], const QTemporaryDir &dir)
{
    store::GenerateOptions o;
    o.stores = 4;
    o.folders = 20000;
    o.agents = 5000;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--folders") == 0 && i + 1 < argc)
            o.folders = std::atoi(argv[++i]);
        else if (std::strcmp(argv[i], "--agents") == 0 && i + 1 < argc)
            o.agents = std::atoi(argv[++i]);
        else
            return QString::fromLocal8Bit(argv[i]);
    }
    o.hidden = o.folders / 10;
    o.messages = o.folders;
    const QString path = dir.filePath(QStringLiteral("bench.db"));
    QElapsedTimer t;
    t.start();
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

double loadAverage()
{
    double load = 0;
    return getloadavg(&load, 1) == 1 ? load : 0;
}

double sqlPassMs(const store::Database &db, const QString &user)
{
    const std::vector<std::pair<QString, QVariantList>> passes = {
        {QStringLiteral("SELECT f.id, f.store, f.parent, f.entry_id, f.name, COALESCE(a.access, f.access),"
                        " f.event_source FROM folders f"
                        " LEFT JOIN folder_access a ON a.folder = f.id AND a.user = ?"),
         {user}},
        {QStringLiteral("SELECT folder, class FROM messages WHERE hidden = 1"), {}},
        {QStringLiteral("SELECT m.folder, m.entry_id, m.subject, h.value FROM messages m"
                        " LEFT JOIN fields h ON h.message = m.id AND h.tag = ?"
                        " WHERE m.hidden = 1 AND m.class = ?"),
         {mapi::tagKey(mapi::PR_HANDLER), mapi::kBindingClass}}};
    std::vector<double> times;
    for (int run = 0; run < 5; ++run) {
        QElapsedTimer t;
        t.start();
        for (const auto &[sql, values] : passes) {
            QSqlQuery q = db.run(sql, values);
            const int columns = q.record().count();
            while (q.next())
                for (int c = 0; c < columns; ++c)
                    q.value(c);
        }
        times.push_back(static_cast<double>(t.nsecsElapsed()) / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times.at(times.size() / 2);
}

frmMain *startOnBenchStore(ui::ScriptedPrompter &prompter, app::Program &program, const QString &storePath)
{
    useBenchProfile(prompter, storePath);
    if (!app::Main(program))
        return nullptr;
    QCoreApplication::processEvents();
    return program.gfrmMain;
}

} // namespace bench
