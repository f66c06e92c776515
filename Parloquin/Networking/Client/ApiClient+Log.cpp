#include "Parloquin/Networking/Client/ApiClient.h"

#include "Parloquin/Extension/String+Extension.h"
#include "Parloquin/Manager/LogManager.h"
#include "Parloquin/Platform/Fatal.h"

#include <QtCore/QDateTime>
#include <QtCore/QStringDecoder>

namespace parloquin {

namespace {

// Of a field: it holds no line feed.
QString quoted(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    text.replace(QLatin1Char('"'), QLatin1String("\\\""));
    text.replace(QLatin1Char('\r'), QLatin1String("\\r"));
    text.replace(QLatin1Char('\t'), QLatin1String("\\t"));
    return QLatin1Char('"') + text + QLatin1Char('"');
}

std::optional<QString> utf8Text(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

QString fieldsText(const HeaderFields &fields)
{
    if (fields.isEmpty())
        return QStringLiteral("[:]");
    QStringList entries;
    for (const auto &[name, value] : fields)
        entries.append(quoted(QString::fromUtf8(name)) + QLatin1String(": ")
            + quoted(QString::fromUtf8(value)));
    return QLatin1Char('[') + entries.join(QLatin1String(", ")) + QLatin1Char(']');
}

QString dateText()
{
    return QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss '+0000'"));
}

} // namespace

void ApiClient::logRequest(const Dump &response, const std::optional<QByteArray> &body,
    const HeaderFields &headers, const UrlRequest &urlRequest) const
{
    if (!body)
        fatal(QStringLiteral(
            "the request log cannot read the request's own body; put a usable ParloquinSecret (64 "
            "hexadecimal digits) into Info.plist (README, Set up)"));

    const QString start = dateText();
    // clang-format off
    const QString lines[] = {
        QStringLiteral("\n\n✓"),
        QStringLiteral("Parloquin Request Start"),
        QStringLiteral("[Start Date: ") + start + QLatin1Char(']'),
        QStringLiteral("🌐 URL: Optional(") + QString::fromLatin1(urlRequest.url.toEncoded()) + QLatin1Char(')'),
        QStringLiteral("🤜🏻 Request Header: ") + fieldsText(urlRequest.headers),
        // The closing parenthesis has no opening one; readers of the log rely on the line as it is.
        QStringLiteral("🤜🏻 Request Params: ") + optionalDescription(utf8Text(*body)) + QLatin1Char(')'),
        QStringLiteral("** --------------- ** "),
        QStringLiteral("✅ Response Header: ") + fieldsText(headers),
        QStringLiteral("✅ Response:"),
    };
    // clang-format on
    for (const QString &line : lines)
        print(line);
    print(response);
    print(QStringLiteral("[End Date: ") + dateText() + QLatin1Char(']'));
    print(QStringLiteral("Parloquin Request End"));
    print(QStringLiteral("✓\n\n"));
}

void ApiClient::printServerError(const std::optional<TransportError> &error) const
{
    const auto description =
        error ? std::optional(error->localizedDescription) : std::optional<QString>();
    LogManager::shared().log(QStringLiteral("*Server Error \n- Error: ")
            + optionalDescription(description) + QStringLiteral(", \n- Path: ")
            + (router ? router->path() : QString()),
        true);
}

void ApiClient::printJsonParseError(const QString &fault, const QByteArray &data) const
{
    LogManager::shared().log(QStringLiteral("*Json Parse Error \n- Error: ") + fault
            + QStringLiteral(" CurrentJSON: ") + utf8Text(data).value_or(QString()),
        true);
}

void ApiClient::printRequestCreateError(const QString &fault) const
{
    LogManager::shared().log(QStringLiteral("*Request Create Error \n- Error: ") + fault, true);
}

} // namespace parloquin
