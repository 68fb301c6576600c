#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>

namespace registry {

using HKEY = int64_t;

/// Root keys, by their classic numbers.
inline constexpr HKEY HKEY_CLASSES_ROOT = 0x80000000LL;
inline constexpr HKEY HKEY_CURRENT_USER = 0x80000001LL;
inline constexpr HKEY HKEY_LOCAL_MACHINE = 0x80000002LL;

inline constexpr uint32_t REG_NONE = 0;
inline constexpr uint32_t REG_SZ = 1;
inline constexpr uint32_t REG_BINARY = 3;
inline constexpr uint32_t REG_DWORD = 4;

inline constexpr long ERROR_SUCCESS = 0;
inline constexpr long ERROR_FILE_NOT_FOUND = 2;
inline constexpr long ERROR_ACCESS_DENIED = 5;
inline constexpr long ERROR_INVALID_HANDLE = 6;
inline constexpr long ERROR_MORE_DATA = 234;
inline constexpr long ERROR_NO_MORE_ITEMS = 259;
inline constexpr long ERROR_BADDB = 1009;

/// The registry of this machine and user: keys under three roots, each with
/// named values of a type and raw bytes, kept in an SQLite file of our own
/// ($XDG_CONFIG_HOME/sorrelin/registry.db). Key and value names ignore
/// case, as the classic registry does; key paths are separated by "\".
/// Handles are small numbers that stand for one key each until closed.
/// Two programs may write at once: every write is one transaction. The
/// calls mirror the classic registry functions and give their return codes;
/// none raises. An object belongs to the thread that made it (its SQL
/// connection does); another thread opens a Registry of its own.
class Registry {
public:
    /// The registry of the current user's configuration folder, opened on
    /// first use (and filled with the desktop's defaults when first made).
    /// The folder is the one of that first use, for the life of the process.
    static Registry &system();

    /// A registry in a file of the caller's choice (tests, tools).
    explicit Registry(const QString &path);
    ~Registry();
    Registry(const Registry &) = delete;
    Registry &operator=(const Registry &) = delete;

    long RegOpenKeyEx(HKEY root, const QString &subKey, HKEY *result);
    long RegCreateKeyEx(HKEY root, const QString &subKey, HKEY *result);
    long RegCloseKey(HKEY key);
    /// With `data` null, gives only the type and size. With `data`, reads at
    /// most `*size` bytes; ERROR_MORE_DATA when the value is longer.
    long RegQueryValueEx(HKEY key, const QString &name, uint32_t *type, QByteArray *data, uint32_t *size);
    long RegSetValueEx(HKEY key, const QString &name, uint32_t type, const QByteArray &data);
    long RegDeleteValue(HKEY key, const QString &name);
    /// Deletes the key `subKey` below a key, with its values; a key that has
    /// subkeys of its own stays (ERROR_ACCESS_DENIED).
    long RegDeleteKey(HKEY key, const QString &subKey);
    /// The name of the subkey at `index` (from 0, in name order) of a key;
    /// ERROR_NO_MORE_ITEMS past the last.
    long RegEnumKeyEx(HKEY key, uint32_t index, QString *name);

    const QString &path() const;

    /// Whether the file could be opened and read; when not, every call
    /// gives ERROR_BADDB.
    bool isOpen() const;

    /// What happened to the system registry's file when it was opened: empty
    /// when nothing was wrong; else, for people, the damaged file that was
    /// moved aside for a fresh one, or why the file can't be used.
    static QString systemNote();

private:
    class Impl;
    std::unique_ptr<Impl> d;
};

} // namespace registry
