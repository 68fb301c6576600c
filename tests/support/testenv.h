#pragma once

#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace testsupport {

/// A temporary home for one test: XDG folders, HOME and the temporary folder
/// all point into it, so that nothing of the user's is read or written.
class TestHome {
public:
    TestHome();
    ~TestHome();

    QString path() const { return m_dir.path(); }
    QString file(const QString &name) const { return m_dir.filePath(name); }

private:
    QTemporaryDir m_dir;
};

/// Makes at `path` an SQLite database of some other program (a table of
/// its own, none of a store's); false when it can't be made.
bool makeForeignDatabase(const QString &path);

/// Another program's hold on an SQLite store's write lock, from construction
/// until destruction: what the program meets while someone else writes.
class StoreWriteLock {
public:
    explicit StoreWriteLock(const QString &path);
    ~StoreWriteLock();
    StoreWriteLock(const StoreWriteLock &) = delete;
    StoreWriteLock &operator=(const StoreWriteLock &) = delete;

    bool held() const { return m_held; }

private:
    QString m_connection;
    bool m_held = false;
};

/// The source tree (for share/ and test fixtures).
QString sourceDir();

/// A path under tests/fixtures.
QString fixture(const QString &name);

} // namespace testsupport
