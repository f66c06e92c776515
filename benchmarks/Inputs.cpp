#include "Inputs.h"

#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Manager/EncryptManager.h"

#include <QtCore/QJsonArray>

#include <random>

using namespace parloquin;
using namespace Qt::StringLiterals;

namespace {

constexpr const char *syllables[] = { "an", "bor", "ça", "del", "é", "fi", "gua", "ha", "istan",
    "ja", "ka", "lia", "mo", "nor", "ø", "pa", "que", "ria", "sau", "tu", "ü", "ven", "wa", "ya",
    "zan" };

class Text {
public:
    explicit Text(unsigned seed)
        : m_engine(seed + 1)
    {
    }

    int number(int below) { return static_cast<int>(m_engine() % static_cast<unsigned>(below)); }

    QString word(int parts)
    {
        QString text;
        for (int i = 0; i < parts; ++i)
            text += QString::fromUtf8(syllables[number(std::size(syllables))]);
        text[0] = text[0].toUpper();
        return text;
    }

    /// Visible ASCII without what JSON escapes, as references and links are.
    QString filler(qsizetype size)
    {
        QString text(std::max<qsizetype>(size, 1), u' ');
        for (QChar &c : text)
            c = QLatin1Char(static_cast<char>('a' + number(26)));
        return text;
    }

private:
    std::mt19937 m_engine;
};

QJsonObject success(const QJsonObject &result)
{
    return { { u"meta"_s, QJsonObject { { u"httpStatusCode"_s, 200 } } }, { u"result"_s, result } };
}

} // namespace

StartRequestModel Inputs::startRequest(unsigned seed, int bytes)
{
    Text text(seed);
    // A probed scheme takes 22 bytes: {\"name89012:\/\/\":1,
    QString apps = u"{"_s;
    while (apps.size() < bytes * 3 / 4 - 120)
        apps += u'"' + text.filler(9) + u"://\":"_s + QString::number(text.number(2)) + u',';
    apps.back() = u'}';
    StartRequestModel model { text.filler(2), text.filler(8), apps };
    const auto size = jsonText(dictionary(model)).size();
    model.app = *model.app + text.filler(bytes - size);
    return model;
}

QJsonObject Inputs::startAnswer(unsigned seed, int bytes)
{
    Text text(seed);
    QJsonObject result { { u"reference"_s, text.filler(36) }, { u"type"_s, u"3rdparty"_s },
        { u"deeplink"_s, u"parlo://send?text="_s } };
    const auto size = jsonText(success(result)).size();
    result.insert(u"deeplink"_s, u"parlo://send?text="_s + text.filler(bytes - size));
    return success(result);
}

QJsonObject Inputs::initAnswer()
{
    QJsonArray apps;
    for (const char *name : { "Parlo", "Kite", "Murmur", "Wrenly", "Hushbell" }) {
        const QString title = QString::fromLatin1(name);
        apps.append(QJsonObject { { u"app"_s, title.toLower() }, { u"name"_s, title },
            { u"appPackage"_s, title.toLower() + u"://"_s }, { u"bgColour"_s, u"#1C7C4C"_s },
            { u"textColour"_s, u"#FFFFFF"_s }, { u"text"_s, u"Verify with "_s + title } });
    }
    return success({ { u"description"_s, u"Pick an app to verify your number with."_s },
        { u"alternativeValidation"_s, u"otp"_s },
        { u"alternativeValidationDescription"_s, u"Get a code by SMS instead"_s },
        { u"list"_s, apps } });
}

QJsonObject Inputs::countryAnswer(unsigned seed, int countries)
{
    Text text(seed);
    QJsonArray list;
    for (int i = 0; i < countries; ++i) {
        list.append(QJsonObject { { u"phoneCode"_s, u'+' + QString::number(text.number(999) + 1) },
            { u"countryCode"_s, text.filler(2).toUpper() },
            { u"title"_s, text.word(2 + text.number(4)) } });
    }
    return success({ { u"list"_s, list } });
}

QByteArray Inputs::encrypted(const QJsonObject &envelope)
{
    const auto text = EncryptManager::shared().encrypt(envelope);
    return R"({"data":")" + text.value().toLatin1() + R"("})";
}
