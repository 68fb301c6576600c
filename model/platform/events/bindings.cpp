#include "platform/events/bindings.h"

#include "platform/events/authors.h"
#include "platform/events/bindingdata.h"
#include "platform/events/errors.h"
#include "platform/events/schedule.h"
#include "platform/store/agentchanges.h"

#include <QVector>

#include <algorithm>
#include <optional>

namespace events {

struct Bindings::Data {
    mapi::StatePtr state;
    SourceRef source;
    std::optional<QVector<Binding>> loaded;
};

Bindings::Bindings(mapi::StatePtr state, SourceRef source) : d(std::make_shared<Data>())
{
    d->state = std::move(state);
    d->source = std::move(source);
}

void Bindings::load() const
{
    if (d->loaded)
        return;
    QVector<Binding> list;
    QSqlQuery &q = d->state->run(
        QStringLiteral(
            "SELECT id, COALESCE(message, ''), COALESCE(state_message, ''), name, active, event_mask,"
            " handler_class, sched_type, sched_interval, sched_start, sched_end, sched_days, sched_at"
            " FROM bindings WHERE folder = ? ORDER BY id"),
        {d->source.folder});
    while (q.next()) {
        auto b = std::make_shared<BindingData>();
        b->state = d->state;
        b->source = d->source;
        b->row = q.value(0).toLongLong();
        b->entryId = q.value(1).toString();
        b->stateId = q.value(2).toString();
        b->name = q.value(3).toString();
        b->active = q.value(4).toInt() != 0;
        b->mask = static_cast<int16_t>(q.value(5).toInt());
        b->handler = q.value(6).toString();
        b->schedule.type = static_cast<int16_t>(q.value(7).toInt());
        b->schedule.interval = static_cast<int16_t>(q.value(8).toInt());
        b->schedule.start = timeOfMinutes(q.value(9).toInt());
        b->schedule.end = timeOfMinutes(q.value(10).toInt());
        b->schedule.days = static_cast<int16_t>(q.value(11).toInt());
        b->schedule.at = timeOfMinutes(q.value(12).toInt());
        list.append(Binding(std::move(b)));
    }
    d->loaded = std::move(list);
}

int Bindings::Count() const
{
    load();
    return static_cast<int>(d->loaded->size());
}

Binding Bindings::Item(int index) const
{
    load();
    if (index < 1 || index > d->loaded->size())
        throw eventsError(com::err::SubscriptOutOfRange, QStringLiteral("Subscript out of range"));
    return d->loaded->at(index - 1);
}

Binding Bindings::Add()
{
    d->state->check();
    load();
    auto b = std::make_shared<BindingData>();
    b->state = d->state;
    b->source = d->source;
    d->loaded->append(Binding(b));
    return Binding(std::move(b));
}

void Bindings::Remove(const Binding &binding)
{
    checkAuthor(d->state, d->source.host);
    load();
    const BindingData &b = *binding.data();
    if (b.row != 0) {
        const store::AgentImage before = store::agentImage(d->state->statements(), b.entryId);
        QSqlQuery &q = d->state->run(QStringLiteral("DELETE FROM bindings WHERE id = ? AND folder = ?"),
                                     {b.row, d->source.folder});
        if (q.numRowsAffected() == 0)
            throw eventsError(com::err::NotFound,
                              QStringLiteral("The binding \"%1\" is not in this folder.").arg(b.name));
        store::raiseAgentChange(d->state->statements(), b.entryId, d->state->user, store::ChangeKind::Deleted,
                                before);
    }
    const auto gone = std::remove_if(d->loaded->begin(), d->loaded->end(), [&](const Binding &item) {
        return item.data() == binding.data() || (b.row != 0 && item.data()->row == b.row);
    });
    if (gone == d->loaded->end() && b.row == 0)
        throw eventsError(com::err::NotFound,
                          QStringLiteral("The binding \"%1\" is not in this folder.").arg(b.name));
    d->loaded->erase(gone, d->loaded->end());
}

} // namespace events
