// Prints, for each argument, what the kit finds on this device under that name, one a line.
// "pause": goes on once there is a line on standard input.
#include "Parloquin/Manager/EncryptManager.h"
#include "Parloquin/Platform/Device.h"
#include "Parloquin/Platform/InfoDictionary.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>

#include <cstdio>

using namespace parloquin;
using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    QCoreApplication::setOrganizationDomain(qEnvironmentVariable("PROBE_DOMAIN"));
    const QHash<QString, QString (*)()> finders { { u"identifier"_s, Device::identifierForVendor },
        { u"version"_s, Device::systemVersion }, { u"name"_s, Device::name },
        { u"encrypted"_s, [] {
             const EncryptManager &keys = EncryptManager::shared();
             const QString text = keys.encrypt({}).value_or(QString());
             return keys.decrypt(text.toLatin1()) == "{}" ? text : QString();
         } } };
    const auto arguments = QCoreApplication::arguments().mid(1);
    for (const QString &name : arguments) {
        if (name == u"pause"_s) {
            std::fflush(stdout);
            std::getchar();
            continue;
        }
        const auto find = finders.value(name);
        const QString value = find ? find() : infoDictionaryText(name).value_or(u"(absent)"_s);
        std::puts(value.toUtf8().constData());
    }
}
