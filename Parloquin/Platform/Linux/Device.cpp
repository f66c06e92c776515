#include "Parloquin/Platform/Device.h"

#include "Parloquin/Platform/Crypto.h"
#include "Parloquin/Platform/Linux/MachineInfo.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QLocale>
#include <QtCore/QSysInfo>
#include <QtCore/QTimeZone>
#include <QtCore/QUuid>

#include <algorithm>

namespace parloquin::Device {

namespace {

constexpr qint64 machineInfoLimit = 65536; // bytes; the file holds a handful of lines

bool isMachineId(const QByteArray &id)
{
    const auto isHex = [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); };
    return id.size() == 32 && std::all_of(id.begin(), id.end(), isHex) && id != QByteArray(32, '0');
}

bool isNoLocale(const QLocale &locale)
{
    return locale.language() == QLocale::C || locale.language() == QLocale::AnyLanguage;
}

} // namespace

QString name()
{
    // The host name service keeps the name in this file; asking the service could block.
    QFile file(QStringLiteral("/etc/machine-info"));
    if (file.open(QIODevice::ReadOnly)) {
        QString pretty =
            machineInfoValue(file.read(machineInfoLimit), QByteArrayLiteral("PRETTY_HOSTNAME"));
        if (!pretty.isEmpty())
            return pretty;
    }
    return QSysInfo::machineHostName();
}

QString systemVersion()
{
    static const QString version =
        QSysInfo::productVersion(); // of a file; an upgrade comes with a restart
    // Rolling systems number nothing but their kernel.
    return version.isEmpty() || version == QStringLiteral("unknown") ? QSysInfo::kernelVersion()
                                                                     : version;
}

QString identifierForVendor()
{
    static const QByteArray machine = QSysInfo::machineUniqueId().trimmed().toLower(); // of a file
    if (!isMachineId(machine)) // an image not booted yet says "uninitialized"
        return {};

    // The machine id is confidential: only a keyed hash may leave the device.
    QByteArray digest =
        Crypto::hmacSha256(QCoreApplication::organizationDomain().toUtf8(), machine);
    digest.truncate(16);
    digest[6] = static_cast<char>((digest.at(6) & 0x0f) | 0x40); // version 4
    digest[8] = static_cast<char>((digest.at(8) & 0x3f) | 0x80); // the variant of RFC 4122
    return QUuid::fromRfc4122(digest).toString(QUuid::WithoutBraces).toUpper();
}

QString languageCode()
{
    const QLocale locale = QLocale::system();
    return isNoLocale(locale) ? QString() : QLocale::languageToCode(locale.language());
}

QString regionCode()
{
    const QLocale locale = QLocale::system();
    if (isNoLocale(locale) || locale.territory() == QLocale::AnyTerritory)
        return {};
    return QLocale::territoryToCode(locale.territory());
}

QString timeZone() { return QString::fromLatin1(QTimeZone::systemTimeZoneId()); }

} // namespace parloquin::Device
