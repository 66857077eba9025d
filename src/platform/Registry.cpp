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

// QSettings over either the native registry or an INI file per hive.
class SettingsRegistry final : public Registry {
public:
    explicit SettingsRegistry(QString folder)
        : folder_(std::move(folder))
    {
    }

    bool keyExists(Hive hive, const QString& key) override
    {
        auto s = open(hive);
        s->beginGroup(groupOf(key));
        return !s->childKeys().isEmpty() || !s->childGroups().isEmpty();
    }

    QString readText(Hive hive, const QString& key, const QString& name) override
    {
        auto s = open(hive);
        return s->value(groupOf(key) + QLatin1Char('/') + name).toString();
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
    std::unique_ptr<QSettings> open(Hive hive)
    {
#ifdef Q_OS_WIN
        const QString root
            = hive == Hive::Machine ? QStringLiteral("HKEY_LOCAL_MACHINE") : QStringLiteral("HKEY_CURRENT_USER");
        return std::make_unique<QSettings>(root, QSettings::Registry32Format);
#else
        const QString file = QDir(folder_)
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
};

} // namespace

std::unique_ptr<Registry> openSystemRegistry(const QString& folder)
{
    return std::make_unique<SettingsRegistry>(folder.isEmpty() ? registryFolder() : folder);
}

QString registryFolder()
{
    const QString dir = qEnvironmentVariable("CORVANE_REGISTRY_DIR");
    if (!dir.isEmpty())
        return dir;
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/CorvaneRemote");
}

} // namespace corvane
