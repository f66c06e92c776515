#include "Faults/SystemBus.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QString service = u"org.freedesktop.ModemManager1"_s;
const QString root = u"/org/freedesktop/ModemManager1"_s;
const QString modems = root + u"/Modem/"_s;
const QString sims = root + u"/SIM/"_s;
const QString mock = u"org.freedesktop.DBus.Mock."_s;
const QString manager = u"org.freedesktop.DBus.ObjectManager"_s;
const QString set = u"org.freedesktop.DBus.Properties.Set"_s;

std::vector<std::string> command(const QStringList &words)
{
    std::vector<std::string> command { "/usr/bin/env" }; // finds it
    for (const QString &word : words)
        command.push_back(word.toStdString());
    return command;
}

void gdbus(const QStringList &words)
{
    Process process(command(QStringList(u"gdbus"_s) + words));
    EXPECT_EQ(process.waitForEnd(), 0) << process.output();
}

void call(const QString &path, const QString &method, const QStringList &arguments)
{
    gdbus(QStringList { u"call"_s, u"--system"_s, u"--dest"_s, service, u"--object-path"_s, path,
              u"--method"_s, method }
        + arguments);
}

void add(const QString &path, const QString &interface, const QString &properties)
{
    call(root, mock + u"AddObject"_s, { path, service + interface, properties, u"@a(ssss) []"_s });
}

} // namespace

void SystemBus::start()
{
    const QString address = u"unix:path="_s + folder.filePath(u"bus"_s);
    m_bus.emplace(command({ u"dbus-daemon"_s, u"--session"_s, u"--nofork"_s, u"--print-address"_s,
        u"--address="_s + address }));
    EXPECT_NE(m_bus->waitForOutput("\n"), "");
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", address.toUtf8());
}

void SystemBus::startService(bool answers)
{
    QStringList words { u"/usr/bin/python3"_s, u"-m"_s, u"dbusmock"_s, u"--system"_s, service, root,
        u"org.example.Root"_s };
    if (answers)
        words.insert(4, u"--is-object-manager"_s);
    m_service.emplace(command(words));
    gdbus({ u"wait"_s, u"--system"_s, u"--timeout=20"_s, service });
    if (!answers)
        call(root, mock + u"AddMethod"_s,
            { manager, u"GetManagedObjects"_s, {}, u"a{oa{sa{sv}}}"_s,
                u"import time; time.sleep(60)"_s });
}

void SystemBus::addModem(int number)
{
    add(modems + QString::number(number), u".Modem"_s,
        u"{'Sim': <objectpath '%1%2'>}"_s.arg(sims).arg(number));
}

void SystemBus::addSim(int number, const QString &identifier)
{
    add(sims + QString::number(number), u".Sim"_s,
        u"{'OperatorIdentifier': <'%1'>, 'Imsi': <'%1123456789'>}"_s.arg(identifier));
}

void SystemBus::unlock(int sim, const QString &identifier)
{
    call(sims + QString::number(sim), set,
        { service + u".Sim"_s, u"OperatorIdentifier"_s, u"<'%1'>"_s.arg(identifier) });
}

void SystemBus::putIn(int modem, std::optional<int> sim)
{
    const QString path = sim ? sims + QString::number(*sim) : u"/"_s;
    call(modems + QString::number(modem), set,
        { service + u".Modem"_s, u"Sim"_s, u"<objectpath '%1'>"_s.arg(path) });
}

void SystemBus::tellOf(int modem)
{
    call(root, mock + u"EmitSignal"_s,
        { manager, u"InterfacesAdded"_s, u"oa{sa{sv}}"_s,
            u"[<objectpath '%1%2'>, <@a{sa{sv}} {}>]"_s.arg(modems).arg(modem) });
}
