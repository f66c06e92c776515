// Prints, for each argument, what the kit finds on this device under that name, one a line.
// "pause": goes on once there is a line on standard input.
#include "Parloquin/Platform/Device.h"
#include "Parloquin/Platform/InfoDictionary.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>

#include <cstdio>

using namespace parloquin;

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    QCoreApplication::setOrganizationDomain(qEnvironmentVariable("PROBE_DOMAIN"));
    const auto arguments = QCoreApplication::arguments().mid(1);
    for (const QString &name : arguments) {
        QString value;
        if (name == QStringLiteral("pause")) {
            std::fflush(stdout);
            std::getchar();
            continue;
        }
        if (name == QStringLiteral("language"))
            value = Device::languageCode();
        else if (name == QStringLiteral("region"))
            value = Device::regionCode();
        else if (name == QStringLiteral("zone"))
            value = Device::timeZone();
        else if (name == QStringLiteral("identifier"))
            value = Device::identifierForVendor();
        else if (name == QStringLiteral("version"))
            value = Device::systemVersion();
        else if (name == QStringLiteral("name"))
            value = Device::name();
        else
            value = infoDictionaryText(name).value_or(QStringLiteral("(absent)"));
        std::puts(value.toUtf8().constData());
    }
}
