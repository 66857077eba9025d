// The terminal's own settings and users from the command line: config, init-store, users.
#include "cli/Cli.h"

#include "cli/PasswordInput.h"
#include "platform/Latin1.h"
#include "runtime/Text.h"
#include "security/FirstStore.h"
#include "security/UserAdmin.h"
#include "session/ChangeRecord.h"
#include "shell/ConfigurationRules.h"
#include "shell/SessionMessages.h"

#include <QJsonArray>
#include <QJsonObject>

namespace corvane::cli {
namespace {

void saveSettings(Client& client, HostConfiguration& c)
{
    if (!saveConfiguration(c, client.logs(), client.session().changeActor())) {
        client.say(message::insufficientRights());
        Client::end(AccessRefused);
    }
}

int configShow(Client& client, HostConfiguration& c)
{
    if (client.options().json) {
        QJsonArray hosts;
        for (int n = 1; n <= HostCount; ++n) {
            const auto i = static_cast<std::size_t>(n);
            hosts.append(QJsonObject{{QStringLiteral("host"), n}, {QStringLiteral("name"), c.HostNames[i]},
                {QStringLiteral("address"), c.HostIPs[i]}, {QStringLiteral("socketPort"), c.SocketPorts[i]}});
        }
        client.printJson(QJsonObject{{QStringLiteral("hosts"), hosts}, {QStringLiteral("idleMinutes"), c.IdleMinutes},
            {QStringLiteral("lastHost"), c.Get_LastHostIPIndex().toInt()}});
        return Done;
    }
    for (int n = 1; n <= HostCount; ++n) {
        const auto i = static_cast<std::size_t>(n);
        client.print(QStringLiteral("Host %1  %2  %3  %4")
                         .arg(n)
                         .arg(c.HostNames[i].leftJustified(24), c.HostIPs[i].leftJustified(16))
                         .arg(c.SocketPorts[i]));
    }
    client.print(QStringLiteral("Idle Minutes  %1").arg(c.IdleMinutes));
    return Done;
}

// As the configuration form takes a port: corrected as it corrects it, refused as a duplicate.
int configSetHost(Client& client, HostConfiguration& c, const QStringList& args)
{
    const Options& o = client.options();
    o.allowOnly({"--name", "--address", "--socket-port", "--system"}, QStringLiteral("config set-host"));
    const auto name = o.value("--name");
    const auto address = o.value("--address");
    const auto socketPort = o.value("--socket-port");
    bool ok = false;
    const int n = args.value(0).toInt(&ok);
    if (args.size() != 1 || !ok || n < 1 || n > HostCount)
        throw UsageError{QStringLiteral("config set-host takes a host number from 1 to %1").arg(HostCount)};
    const auto i = static_cast<std::size_t>(n);
    if (name)
        c.HostNames[i] = *name;
    if (address)
        c.HostIPs[i] = *address;
    if (socketPort) {
        const std::string typed = toLatin1Bytes(*socketPort);
        if (typed.find_first_not_of("0123456789") != std::string::npos)
            throw UsageError{QStringLiteral("--socket-port takes digits only")};
        std::vector<std::string> others;
        for (int m = 1; m <= HostCount; ++m)
            if (m != n)
                others.push_back(std::to_string(c.SocketPorts[static_cast<std::size_t>(m)]));
        const FieldChange change = portFieldChanged(typed, others);
        if (change.duplicate) {
            client.say(message::duplicatePort(change.text));
            return Usage;
        }
        if (change.text != typed)
            client.say("The socket port reads " + change.text + ", as the configuration form corrects it.");
        c.SocketPorts[i] = std::stoi(change.text);
    }
    saveSettings(client, c);
    return Done;
}

int configSetIdle(Client& client, HostConfiguration& c, const QStringList& args)
{
    client.options().allowOnly({"--system"}, QStringLiteral("config set-idle"));
    const std::string typed = toLatin1Bytes(args.value(0));
    if (args.size() != 1 || typed.empty() || typed.find_first_not_of("0123456789") != std::string::npos)
        throw UsageError{QStringLiteral("config set-idle takes the minutes, 0 to 60")};
    const FieldChange change = idleFieldChanged(typed);
    if (change.text != typed)
        client.say("The idle minutes read " + change.text + ", as the configuration form corrects them.");
    c.IdleMinutes = static_cast<std::int16_t>(std::stoi(change.text));
    saveSettings(client, c);
    return Done;
}

// A right by its position or its short name: "All (everything ...)" is "all", "Comm Parameters"
// is "comm-parameters". Only the positions this program's rights list shows.
std::size_t rightsRow(const RightsList& rights, const QString& right)
{
    for (std::size_t row = 0; row < rights.rows.size(); ++row) {
        const RightsEntry& entry = rights.rows[row];
        if (right == QString::number(entry.RightIndex) || right.toLower() == fromLatin1Bytes(rightShortName(entry)))
            return row;
    }
    throw UsageError{QStringLiteral("\"%1\" is no right of this program's list").arg(right)};
}

std::vector<bool> heldRights(const UserEntry& user, const RightsList& rights)
{
    std::vector<bool> checked;
    for (const RightsEntry& entry : rights.rows)
        checked.push_back(user.Rights.at(static_cast<std::size_t>(entry.RightIndex)) == 1);
    return checked;
}

// A live user by name, as the change-user form compares names.
std::int16_t userNamed(Client& client, const QString& name)
{
    const std::string wanted = upperCase(trimBlanks(toLatin1Bytes(name)));
    UserStore& store = client.users();
    for (std::int16_t i = 0; i < store.count(); ++i) {
        const UserEntry& entry = store.users[static_cast<std::size_t>(i)];
        if (!entry.UserName.empty() && upperCase(entry.UserName) == wanted)
            return i;
    }
    throw UsageError{QStringLiteral("there is no user %1").arg(name)};
}

// Written to the store, then recorded: an entry without a name is a free one, so an add.
void saveUser(Client& client, std::int16_t index, const std::string& name, const std::string& password,
    const std::vector<bool>& checked)
{
    const UserEntry& entry = client.users().user(index);
    const std::optional<UserEntry> before = entry.UserName.empty() ? std::nullopt : std::optional(entry);
    UpdateUserInfo(client.users(), index, name, password, client.rights(), checked);
    client.users().Save_User_Record(index);
    client.recordLocalChange(change_kind::UserAdmin, userFields(before, entry, client.rights()));
}

int usersList(Client& client)
{
    client.options().allowOnly({}, QStringLiteral("users list"));
    UserStore& store = client.users();
    QJsonArray all;
    for (const UserEntry& user : store.users) {
        if (user.UserName.empty())
            continue;
        QJsonArray rights;
        QStringList names;
        for (const RightsEntry& entry : client.rights().rows)
            if (user.Rights.at(static_cast<std::size_t>(entry.RightIndex)) == 1) {
                rights.append(QJsonObject{{QStringLiteral("position"), entry.RightIndex},
                    {QStringLiteral("name"), fromLatin1Bytes(entry.Description)}});
                names << fromLatin1Bytes(entry.Description);
            }
        all.append(QJsonObject{{QStringLiteral("user"), fromLatin1Bytes(user.UserName)},
            {QStringLiteral("supervisor"), user.IsSupervisor == 1},
            {QStringLiteral("password"), !user.Password.empty()}, {QStringLiteral("rights"), rights}});
        if (!client.options().json)
            client.print(
                QStringLiteral("%1  %2%3  %4")
                    .arg(fromLatin1Bytes(user.UserName).leftJustified(20))
                    .arg(user.IsSupervisor == 1 ? QStringLiteral("supervisor, ") : QString())
                    .arg(user.Password.empty() ? QStringLiteral("no password") : QStringLiteral("password set"))
                    .arg(names.join(QStringLiteral(", "))));
    }
    if (client.options().json)
        client.printJson(all);
    return Done;
}

int usersAdd(Client& client, const QStringList& args)
{
    const Options& o = client.options();
    o.allowOnly({"--password", "--grant"}, QStringLiteral("users add"));
    const std::string password = toLatin1Bytes(o.value("--password").value_or(QString()));
    std::vector<bool> checked(client.rights().rows.size(), false);
    for (const QString& right : o.words("--grant"))
        checked[rightsRow(client.rights(), right)] = true;
    if (args.size() != 1)
        throw UsageError{QStringLiteral("users add takes one NAME")};
    const std::string name = toLatin1Bytes(args[0]);
    if (userNameTaken(client.users(), name)) {
        client.say("Entered user name already exists.  Please change.");
        return Usage;
    }
    std::optional<std::string> refused = refusedName(name);
    if (!refused)
        refused = refusedPassword(client.users(), Nobody, password, {}, false);
    if (refused) {
        client.say(*refused);
        return Usage;
    }
    saveUser(client, takeFreeEntry(client.users()), name, password, checked);
    return Done;
}

int usersPasswd(Client& client, const QStringList& args)
{
    const Options& o = client.options();
    o.allowOnly({"--new-password", "--no-password"}, QStringLiteral("users passwd"));
    const std::optional<QString> given = o.value("--new-password");
    // Removing a password is said in so many words, never an empty answer.
    const bool removal = o.has("--no-password");
    if (args.size() != 1 || (removal && given))
        throw UsageError{QStringLiteral("users passwd takes one NAME, and --new-password T or --no-password")};
    const std::int16_t index = userNamed(client, args[0]);
    UserStore& store = client.users();
    if (index == store.GuestIndex)
        throw UsageError{QStringLiteral("the guest's password cannot be changed")};
    // Without --new-password it is typed (twice, unseen) or piped in, so it is in no command line.
    std::string password;
    if (given) {
        password = toLatin1Bytes(*given);
    } else if (!removal) {
        const TypedPassword typed = readNewPassword();
        if (!typed.password) {
            client.say(typed.mismatch ? "Passwords Do Not Match" : "No new password was given.");
            return Usage;
        }
        password = *typed.password;
    }
    const UserEntry user = store.user(index);
    if (const auto refused = refusedPassword(store, index, password, user.Password, removal)) {
        client.say(*refused);
        if (*refused == PasswordKept)
            client.say("Remove a password with --no-password.");
        return Usage;
    }
    if (needsSupervisorPasswordWarning(store, false, password, user.Password)) {
        client.say(SupervisorPasswordWarning);
        if (!client.options().yes) {
            client.say("The password was not changed: answer Yes with --yes.");
            return Usage;
        }
    }
    saveUser(client, index, user.UserName, password, heldRights(user, client.rights()));
    return Done;
}

int usersGrant(Client& client, const QStringList& args, bool grant)
{
    client.options().allowOnly({}, grant ? QStringLiteral("users grant") : QStringLiteral("users revoke"));
    if (args.size() < 2)
        throw UsageError{QStringLiteral("users %1 takes a NAME and at least one RIGHT")
                             .arg(QLatin1String(grant ? "grant" : "revoke"))};
    const std::int16_t index = userNamed(client, args[0]);
    if (!userButtonsFor(client.users(), index).modify)
        throw UsageError{QStringLiteral("the rights of %1 cannot be changed").arg(args[0])};
    const UserEntry user = client.users().user(index);
    std::vector<bool> checked = heldRights(user, client.rights());
    for (qsizetype i = 1; i < args.size(); ++i)
        checked[rightsRow(client.rights(), args[i])] = grant;
    saveUser(client, index, user.UserName, user.Password, checked);
    return Done;
}

int usersDelete(Client& client, const QStringList& args)
{
    client.options().allowOnly({}, QStringLiteral("users delete"));
    if (args.size() != 1)
        throw UsageError{QStringLiteral("users delete takes one NAME")};
    const std::int16_t index = userNamed(client, args[0]);
    if (!userButtonsFor(client.users(), index).remove)
        throw UsageError{QStringLiteral("%1 cannot be deleted").arg(args[0])};
    UserEntry& user = client.users().user(index);
    client.say(deleteQuestion(user.UserName));
    if (!client.options().yes) {
        client.say("Nobody was deleted: answer Yes with --yes.");
        return Usage;
    }
    const UserEntry before = user;
    user.UserName.clear();
    client.users().Save_User_Record(index);
    client.recordLocalChange(change_kind::UserAdmin, userFields(before, std::nullopt, client.rights()));
    return Done;
}

} // namespace

int config(Client& client)
{
    QStringList args = client.options().arguments;
    const QString what = args.value(0);
    if (!args.isEmpty())
        args.removeFirst();
    if (what != QLatin1String("show") && what != QLatin1String("set-host") && what != QLatin1String("set-idle"))
        throw UsageError{QStringLiteral("config takes show, set-host or set-idle")};
    client.logIn();
    client.needRight(CommParmsRight);
    // --system: the hosts every user of this computer starts from (the system's configuration
    // folder), which a user's own settings stand before; written by an administrator only.
    std::unique_ptr<Registry> machineWide;
    std::optional<HostConfiguration> systemHosts;
    if (client.options().has("--system")) {
        const QString folder = systemRegistryFolder();
        if (folder.isEmpty())
            throw UsageError{QStringLiteral("--system: the hosts are machine-wide here already")};
        machineWide = openSystemRegistry(folder, QStringLiteral(""));
        systemHosts.emplace(*machineWide);
        systemHosts->load();
    }
    HostConfiguration& c = systemHosts ? *systemHosts : client.configuration();
    if (what == QLatin1String("show")) {
        client.options().allowOnly({"--system"}, QStringLiteral("config show"));
        return configShow(client, c);
    }
    if (what == QLatin1String("set-host"))
        return configSetHost(client, c, args);
    return configSetIdle(client, c, args);
}

int initStore(Client& client)
{
    if (!client.options().arguments.isEmpty())
        throw UsageError{QStringLiteral("init-store takes no arguments")};
    return createFirstUserStoreCommand("corvane-remote-cli", client.users().path, client.outputStream(), client.errorStream());
}

int users(Client& client)
{
    QStringList args = client.options().arguments;
    const QString what = args.value(0);
    if (!args.isEmpty())
        args.removeFirst();
    const auto run = [&]() -> int {
        if (what == QLatin1String("list"))
            return usersList(client);
        if (what == QLatin1String("add"))
            return usersAdd(client, args);
        if (what == QLatin1String("passwd"))
            return usersPasswd(client, args);
        if (what == QLatin1String("grant") || what == QLatin1String("revoke"))
            return usersGrant(client, args, what == QLatin1String("grant"));
        return usersDelete(client, args);
    };
    if (what != QLatin1String("list") && what != QLatin1String("add") && what != QLatin1String("passwd")
        && what != QLatin1String("grant") && what != QLatin1String("revoke") && what != QLatin1String("delete"))
        throw UsageError{QStringLiteral("users takes list, add, passwd, grant, revoke or delete")};
    client.logIn();
    client.needSupervisor();
    return run();
}

} // namespace corvane::cli
