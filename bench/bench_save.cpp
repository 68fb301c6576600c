// Times saving an agent's script from the script pane, as File > Save does
// it (the check of the agent's change number and every write that goes with
// it included), N times over on a large store; prints the median and the
// machine's load average before and after.
//   bench_save [STORE.db | --folders N --agents M] [--saves N]
#include "app/frmmain.h"
#include "app/program.h"
#include "bench/benchstore.h"
#include "platform/mapi/session.h"
#include "platform/mapi/tags.h"
#include "platform/store/database.h"
#include "platform/ui/scriptedprompter.h"
#include "scripts/scriptpane.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

/// A script of some 4 KB, its comment numbered so that each save changes it.
QString script(int n)
{
    QString text = QStringLiteral("<SCRIPT RunAt=Server Language=VBScript>\r\n' save %1\r\n").arg(n);
    for (int line = 0; line < 80; ++line)
        text += QStringLiteral("    strLine = \"line %1 of the agent's routine\"\r\n").arg(line);
    return text + QStringLiteral("</SCRIPT>\r\n");
}

} // namespace

int main(int argc, char *argv[])
{
    int saves = 50;
    std::vector<char *> args;
    for (int i = 0; i < argc; ++i) {
        if (i + 1 < argc && QByteArray(argv[i]) == "--saves") {
            saves = std::max(1, QByteArray(argv[++i]).toInt());
            continue;
        }
        args.push_back(argv[i]);
    }
    int count = static_cast<int>(args.size());
    QTemporaryDir dir;
    bench::prepareEnvironment(dir);
    QApplication app(count, args.data());
    const QString path = bench::benchStore(count, args.data(), dir);
    ui::ScriptedPrompter prompter;
    app::Program program(prompter);
    frmMain *form = bench::startOnBenchStore(prompter, program, path);
    if (!form)
        return 1;
    program.gstrSaveChangesMode = QStringLiteral("save");

    // The first agent of the user's own mailbox, as if clicked in the tree.
    const mapi::StatePtr state = program.gobjSession->MAPIOBJECT();
    QSqlQuery agent = state->db->run(
        QStringLiteral("SELECT b.message, s.store_id FROM bindings b JOIN folders f ON f.id = b.folder"
                       " JOIN stores s ON s.id = f.store ORDER BY s.seq, b.id"));
    if (!agent.next()) {
        std::printf("the store holds no agent\n");
        return 1;
    }
    form->strEntryID = agent.value(0).toString();
    form->strStoreID = agent.value(1).toString();
    agent.finish();

    const double loadBefore = bench::loadAverage();
    std::vector<double> times;
    for (int n = 1; n <= saves; ++n) {
        form->txtPreview->setText(script(n));
        form->blnDirty = true;
        QElapsedTimer t;
        t.start();
        const bool saved = form->SaveScript();
        times.push_back(t.nsecsElapsed() / 1e6);
        if (!saved || form->blnDirty) {
            const QList<ui::PromptRecord> prompts = prompter.takePrompts();
            std::printf("save %d failed: %s\n", n,
                        qPrintable(prompts.isEmpty() ? QString() : prompts.last().text));
            return 1;
        }
    }
    // The last save is the store's script.
    const QByteArray stored =
        state->db
            ->scalar(QStringLiteral("SELECT f.value FROM fields f JOIN messages m ON m.id = f.message"
                                    " WHERE m.entry_id = ? AND f.tag = ?"),
                     {form->strEntryID, mapi::tagKey(mapi::PR_SCRIPT)})
            .toByteArray();
    if (!stored.contains(QStringLiteral("' save %1\r\n").arg(saves).toLatin1())) {
        std::printf("the store does not hold the last save\n");
        return 1;
    }
    std::sort(times.begin(), times.end());
    std::printf("saved one script %d times: median %.2f ms, fastest %.2f ms, slowest %.2f ms\n"
                "load average: %.2f before, %.2f after\n",
                saves, times.at(times.size() / 2), times.front(), times.back(), loadBefore,
                bench::loadAverage());
    form->close();
    return 0;
}
