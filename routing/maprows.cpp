#include "routing/maprows.h"

#include "app/hourglass.h"
#include "platform/com/routine.h"
#include "platform/controls/ssdbgrid.h"
#include "platform/routing/map.h"

namespace routing {

QString mapRowString(int index, const MapRow &row)
{
    int count = 0;
    QStringList args;
    row.GetArgs(count, args);
    QString text;
    for (int j = 0; j < count; ++j)
        text += args.value(j) + QLatin1Char('\t');
    if (!text.isEmpty())
        text.chop(1);
    return QStringLiteral("%1\t%2\t%3\t%4\t%5")
        .arg(QString::number(index + 1), row.ActivityID(), row.Action(), row.Flags(), text);
}

void fillMapGrid(const Map &map, controls::SSDBGrid &grid)
{
    SetHourglass(true);
    com::ResumeNext routine;
    const int count = routine.value([&] { return map.RowCount(); }, 0);
    for (int i = 0; i < count; ++i) {
        const QString row = routine.value([&] { return mapRowString(i, map.Row(i)); },
                                          QString::number(i + 1) + QStringLiteral("\t\t\t\t"));
        grid.AddItem(row);
    }
    SetHourglass(false);
}

} // namespace routing
