#include "dialogs/sysinfo.h"

#include "platform/com/comerror.h"
#include "platform/os/commandline.h"
#include "platform/ui/prompter.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>

namespace dialogs {

namespace {

const QString kSysInfoKey = QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO");
const QString kSysInfoLocationKey = QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools Location");
constexpr uint32_t kBufferSize = 1024;

/// The program's name in the folder that the second key names.
const QString kSysInfoProgram = QStringLiteral("MSINFO32.EXE");

} // namespace

bool GetKeyValue(registry::Registry &reg, registry::HKEY root, const QString &keyName,
                 const QString &valueName, QString &value)
{
    registry::HKEY key = 0;
    if (reg.RegOpenKeyEx(root, keyName, &key) != registry::ERROR_SUCCESS)
        return false;
    uint32_t type = 0;
    uint32_t size = kBufferSize;
    QByteArray data;
    const long read = reg.RegQueryValueEx(key, valueName, &type, &data, &size);
    reg.RegCloseKey(key);
    if (read != registry::ERROR_SUCCESS)
        return false;
    data.truncate(size);
    if (data.endsWith('\0'))
        data.chop(1);
    value = type == registry::REG_SZ ? QString::fromUtf8(data) : QString();
    return true;
}

void StartSysInfo(registry::Registry &reg, ui::Prompter &prompter)
{
    try {
        QString program;
        if (!GetKeyValue(reg, registry::HKEY_LOCAL_MACHINE, kSysInfoKey, QStringLiteral("PATH"), program)) {
            QString folder;
            if (!GetKeyValue(reg, registry::HKEY_LOCAL_MACHINE, kSysInfoLocationKey, QStringLiteral("MSINFO"),
                             folder))
                throw com::ComError(53, QStringLiteral("Sorrelin"), QStringLiteral("File not found"));
            program = QDir(folder).filePath(kSysInfoProgram);
            if (!QFileInfo(program).isFile())
                throw com::ComError(53, QStringLiteral("Sorrelin"), QStringLiteral("File not found"));
            program = QLatin1Char('"') + program + QLatin1Char('"');
        }
        QStringList words = os::splitCommandLine(program);
        if (words.isEmpty() || !QProcess::startDetached(words.takeFirst(), words))
            throw com::ComError(53, QStringLiteral("Sorrelin"), QStringLiteral("File not found"));
    } catch (const com::ComError &) {
        prompter.msgBox(QStringLiteral("System Information Is Unavailable At This Time"), ui::Buttons::OK,
                        ui::Icon::None, 1, QString());
    }
}

} // namespace dialogs
