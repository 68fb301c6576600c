#pragma once

#include "platform/store/database.h"

#include <QHash>
#include <QSqlQuery>

#include <functional>

namespace store {

/// Runs one statement with its values bound in order and gives it, ready to
/// read. The program's session keeps each of its statements prepared, so
/// that the writes that go with every save cost little.
using RunStatement = std::function<QSqlQuery &(const QString &sql, const QVariantList &values)>;

/// Statements of one store, each prepared once for as long as this lives.
class Statements {
public:
    explicit Statements(const Database &db) : m_db(db) {}

    QSqlQuery &run(const QString &sql, const QVariantList &values)
    {
        auto it = m_queries.find(sql);
        if (it == m_queries.end())
            it = m_queries.insert(sql, m_db.prepare(sql));
        it->finish();
        for (const QVariant &v : values)
            it->addBindValue(v);
        m_db.exec(*it);
        return *it;
    }

    RunStatement runner()
    {
        return [this](const QString &sql, const QVariantList &values) -> QSqlQuery & {
            return run(sql, values);
        };
    }

private:
    const Database &m_db;
    QHash<QString, QSqlQuery> m_queries;
};

} // namespace store
