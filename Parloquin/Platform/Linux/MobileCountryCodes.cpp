#include "Parloquin/Platform/Linux/MobileCountryCodes.h"

#include <QtCore/QFile>
#include <QtCore/QXmlStreamReader>

#include <algorithm>
#include <utility>

namespace parloquin {

namespace {

constexpr qsizetype mccDigits = 3;

bool isIdentifier(const QString &text)
{
    return (text.size() == mccDigits + 2 || text.size() == mccDigits + 3)
        && std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

/// How well a country fits: by the very network, then by how many networks share its code.
using Fit = std::pair<int, int>;

} // namespace

std::optional<QString> countryOfOperator(const QString &identifier)
{
    if (!isIdentifier(identifier))
        return std::nullopt;
    const QString mcc = identifier.left(mccDigits);
    const QString mnc = identifier.mid(mccDigits);

    QFile file(QStringLiteral("/usr/share/mobile-broadband-provider-info/serviceproviders.xml"));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QXmlStreamReader xml(&file);
    QString country;
    Fit fit;
    QString best;
    Fit bestFit;
    // Some codes stand under several countries, where operators share networks or a row is wrong.
    while (!xml.atEnd()) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::StartElement && xml.name() == QStringLiteral("country")) {
            country = xml.attributes().value(QStringLiteral("code")).toString().toLower();
            fit = {};
        } else if (token == QXmlStreamReader::StartElement
            && xml.name() == QStringLiteral("network-id")
            && xml.attributes().value(QStringLiteral("mcc")) == mcc) {
            fit.first += xml.attributes().value(QStringLiteral("mnc")) == mnc ? 1 : 0;
            ++fit.second;
        } else if (token == QXmlStreamReader::EndElement && xml.name() == QStringLiteral("country")
            && fit > bestFit) {
            best = country;
            bestFit = fit;
        }
    }
    if (best.size() != 2)
        return std::nullopt;
    return best;
}

} // namespace parloquin
