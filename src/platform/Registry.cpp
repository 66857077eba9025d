#include "platform/Registry.h"

#include "runtime/BoundedRead.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QSettings>
#include <QStandardPaths>

#include <cstdio>

namespace corvane {
namespace {

constexpr long long SettingsFileLimit = 1 << 20;

QString groupOf(const QString& key)
{
    QString group = key;
    group.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return group;
}

// QSettings over either the native registry or an INI file per hive. Off Windows the machine
// hive may lie under a system folder too (written there by an administrator for every user of
// the computer): it is read where this folder's own file holds no value, and never written here.
class SettingsRegistry final : public Registry {
public:
    SettingsRegistry(QString folder, QString systemFolder)
        : folder_(std::move(folder))
        , systemFolder_(std::move(systemFolder))
    {
    }

    bool keyExists(Hive hive, const QString& key) override
    {
        for (const QString& folder : foldersOf(hive)) {
            auto s = open(hive, folder);
            s->beginGroup(groupOf(key));
            if (!s->childKeys().isEmpty() || !s->childGroups().isEmpty())
                return true;
        }
        return false;
    }

    QString readText(Hive hive, const QString& key, const QString& name) override
    {
        for (const QString& folder : foldersOf(hive)) {
            auto s = open(hive, folder);
            const QString path = groupOf(key) + QLatin1Char('/') + name;
            if (s->contains(path))
                return s->value(path).toString();
        }
        return {};
    }

    bool createKey(Hive hive, const QString& key) override
    {
        // An INI file holds no empty groups: there the key comes with its first value, and what
        // is asked here is whether that value could be written.
        auto s = open(hive);
        s->beginGroup(groupOf(key));
        s->sync();
        return s->isWritable() && s->status() == QSettings::NoError;
    }

    bool writeText(Hive hive, const QString& key, const QString& name, const QString& value) override
    {
        return write(hive, key, name, value);
    }

    bool writeNumber(Hive hive, const QString& key, const QString& name, std::int32_t value) override
    {
        return write(hive, key, name, static_cast<int>(value));
    }

private:
    QStringList foldersOf(Hive hive) const
    {
        QStringList folders{folder_};
        if (hive == Hive::Machine && !systemFolder_.isEmpty() && systemFolder_ != folder_)
            folders << systemFolder_;
        return folders;
    }

    std::unique_ptr<QSettings> open(Hive hive) { return open(hive, folder_); }
    std::unique_ptr<QSettings> open(Hive hive, const QString& folder)
    {
#ifdef Q_OS_WIN
        (void)folder;
        const QString root
            = hive == Hive::Machine ? QStringLiteral("HKEY_LOCAL_MACHINE") : QStringLiteral("HKEY_CURRENT_USER");
        return std::make_unique<QSettings>(root, QSettings::Registry32Format);
#else
        const QString file = QDir(folder)
                                 .filePath(hive == Hive::Machine ? QStringLiteral("machine.ini") : QStringLiteral("user.ini"));
        // A settings file is small: what is no regular file (a pipe would hold the program up)
        // or is far larger than any the program writes is not read, and the hive reads empty.
        BoundedRead check = readBoundedFile(file.toLocal8Bit().toStdString(), SettingsFileLimit);
        if (QFileInfo(file).isSymLink()) // a link planted there is neither read nor written through
            check = {{}, "it is a symbolic link", false};
        if (!check.refusal.empty() && !check.missing) {
            static QSet<QString> told;
            if (!told.contains(file)) {
                told.insert(file);
                std::fprintf(stderr, "The settings file %s is not read: %s.\n", qPrintable(file), check.refusal.c_str());
            }
            // Nothing can be read there and nothing written: no file lies below a device.
            return std::make_unique<QSettings>(QStringLiteral("/dev/null/settings.ini"), QSettings::IniFormat);
        }
        return std::make_unique<QSettings>(file, QSettings::IniFormat);
#endif
    }

    bool write(Hive hive, const QString& key, const QString& name, const QVariant& value)
    {
        auto s = open(hive);
        if (!s->isWritable())
            return false;
        s->setValue(groupOf(key) + QLatin1Char('/') + name, value);
        s->sync();
        return s->status() == QSettings::NoError;
    }

    QString folder_;
    QString systemFolder_;
};

} // namespace

std::unique_ptr<Registry> openSystemRegistry(const QString& folder, const QString& systemFolder)
{
    // The machine-wide folder is read by default only where the user's own settings are the
    // system's usual ones, never beside a folder a test or a demo chose.
    const bool usual = folder.isEmpty() && qEnvironmentVariableIsEmpty("CORVANE_REGISTRY_DIR");
    return std::make_unique<SettingsRegistry>(
        folder.isEmpty() ? registryFolder() : folder, usual && systemFolder.isNull() ? systemRegistryFolder() : systemFolder);
}

QString systemRegistryFolder()
{
#ifdef Q_OS_WIN
    return {};
#else
    // The first of the system's configuration folders (XDG_CONFIG_DIRS, /etc/xdg by default).
    const QStringList folders = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    const QString own = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    for (const QString& folder : folders)
        if (folder != own)
            return folder + QStringLiteral("/CorvaneRemote");
    return QStringLiteral("/etc/xdg/CorvaneRemote");
#endif
}

QString registryFolder()
{
    const QString dir = qEnvironmentVariable("CORVANE_REGISTRY_DIR");
    if (!dir.isEmpty())
        return dir;
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/CorvaneRemote");
}

} // namespace corvane
