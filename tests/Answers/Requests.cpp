// Every call byte for byte, as a socket receives it from a host in several surroundings.
#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Platform/Device.h"
#include "sandbox/service/Cipher.h"
#include "support/ByName.h"
#include "support/PropertyLists.h"
#include "support/RawServer.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

#include <gtest/gtest.h>
#include <unistd.h>

#include <map>

namespace {

const std::string signingKey = "GPzEyoL8,?Es,]|$aJd#wy$XxQPpl+H)8ACyjkz,4;)jmBQlm.7k)nI4]+pS(hZ/";
const std::string secret =
    *sandbox::fromHex("8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e");

using Words = std::map<QByteArray, QByteArray>;

QByteArray filled(QByteArray text, const Words &words)
{
    for (const auto &[word, value] : words)
        text.replace('{' + word + '}', value);
    return text;
}

/// What the wire has to show. \param words all but those that follow from the call and its time
std::string expected(const QByteArray &head, const QByteArray &plainBody, Words words)
{
    QByteArray plain = filled(plainBody, words);
    const QByteArray data =
        sandbox::toBase64(sandbox::encrypt(plain.toStdString(), secret)).c_str();
    const QByteArray body = R"({"data":")" + QByteArray(data).replace("/", "\\/") + R"("})";
    const QByteArray signedText = words["time"] + '-' + plain.replace("\\/", "/");
    words["length"] = QByteArray::number(body.size());
    words["signature"] =
        sandbox::toBase64(sandbox::hmacSha256(signedText.toStdString(), signingKey)).c_str();
    return filled(head + "\n\n", words).replace("\n", "\r\n").toStdString() + body.toStdString();
}

struct Surroundings {
    const char *name;
    QByteArray variables; // @ stands for the address of a server of this test
    QByteArray language, region;
    bool isProxied = false; // the service is reached through that server
};

class EveryCall : public testing::TestWithParam<Surroundings> { };

TEST_P(EveryCall, IsTheSameToTheByte)
{
    const Surroundings &given = GetParam();
    RawServer server;
    RawServer bystander; // a proxy of which a service on this machine has no need
    const QString service =
        given.isProxied ? QStringLiteral("service.invalid:8046") : server.hostAndPort();
    QByteArray variables = "TZ=America/Argentina/Ushuaia " + given.variables;
    variables.replace("@", (given.isProxied ? server : bystander).url({}).toLatin1());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *mine :
        { "http_proxy", "HTTP_PROXY", "no_proxy", "NO_PROXY", "LANGUAGE", "LC_MESSAGES" })
        environment.remove(QString::fromLatin1(mine));
    for (const QString &variable : QString::fromLatin1(variables).split(u' '))
        environment.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
    QProcess host;
    host.setProcessEnvironment(environment);
    host.setStandardOutputFile(QProcess::nullDevice());
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    // Keys beside the program do not count where it has its own.
    const QTemporaryDir folder(QCoreApplication::applicationDirPath() + QStringLiteral("/XXXXXX"));
    QFile others(folder.filePath(QStringLiteral("Info.plist")));
    ASSERT_TRUE(others.open(QIODevice::WriteOnly)
        && others.write(dictionary("<key>ParloquinKey</key><string>other</string>")) > 0);
    others.close();
    const QString program = folder.filePath(QStringLiteral("host"));
    ASSERT_EQ(::link(CALLER, QFile::encodeName(program).constData()), 0);
    host.start(program, { service });
    ASSERT_TRUE(host.waitForFinished(60'000));
    ASSERT_EQ(host.exitCode(), 0) << host.readAllStandardError().toStdString();
    const qint64 after = QDateTime::currentSecsSinceEpoch();

    QFile file(QStringLiteral(FOLDER "Requests.txt"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArrayList parts = file.readAll().replace("\n\n", "\f").trimmed().split('\f');
    ASSERT_EQ(parts.size(), 3);
    const QByteArray name = parloquin::jsonText({ { {}, parloquin::Device::name() } });
    Words words = {
        { "folder", given.isProxied ? "http://service.invalid:8046/v1.0/" : "/v1.0/" },
        { "host", service.toLatin1() },
        { "device", parloquin::Device::identifierForVendor().toLatin1() },
        { "os", "ios " + parloquin::Device::systemVersion().toUtf8() },
        { "language", given.language }, { "region", given.region },
        { "name", name.sliced(5).chopped(2) }, // of {"":"name"}
    };
    const std::vector<RawRequest> requests = server.requests();
    size_t count = 0;
    for (const QByteArray &line : parts[2].split('\n')) {
        const QByteArrayList start = line.left(line.indexOf('{')).split(' ');
        if (start[1] == (given.region.isEmpty() ? "region" : "nowhere"))
            continue;
        ASSERT_LT(count, requests.size());
        const RawRequest &request = requests[count++];
        words["call"] = start[0];
        words["time"] = request.header("X-TRZ-Req-Timestamp");
        EXPECT_EQ((request.head + "\r\n" + request.body).toStdString(),
            expected(parts[1], line.sliced(line.indexOf('{')), words));
        const qint64 milliseconds = words["time"].toLongLong();
        EXPECT_TRUE(milliseconds % 1000 == 0 && milliseconds / 1000 >= before
            && milliseconds / 1000 <= after)
            << milliseconds;
    }
    EXPECT_EQ(requests.size(), count);
    EXPECT_EQ(bystander.connections(), 0);
}

// The system's proxy is used, as other apps use it, but not on the way to this machine.
const Surroundings surroundings[] = {
    { "C", "LC_ALL=C", "", "" },
    { "British", "LC_ALL=en_GB.UTF-8", "en", "GB" },
    { "Egyptian", "LC_ALL=ar_EG.UTF-8", "ar", "EG" },
    { "Turkish", "LC_ALL=tr_TR.UTF-8 LANGUAGE=tr:en", "tr", "TR" },
    { "Serbian", "LC_ALL=sr_RS.UTF-8@latin", "sr", "RS" },
    { "Filipino", "LC_ALL=fil_PH.UTF-8", "fil", "PH" }, // of three letters
    { "BrazilianByLang", "LC_ALL= LANG=pt_BR.UTF-8", "pt", "BR" },
    { "PosixByLang", "LC_ALL= LANG=POSIX", "", "" },
    { "NoLocale", "LC_ALL= LANG=", "", "" },
    { "UpgradeAllowed", "LC_ALL=C.UTF-8 QT_NETWORK_H2C_ALLOWED=1", "", "" },
    { "ProxyForOthers", "LC_ALL=C.UTF-8 http_proxy=@ HTTP_PROXY=@", "", "" },
    { "Proxy", "LC_ALL=en_GB.UTF-8 http_proxy=@", "en", "GB", true },
    { "ProxyInCapitals", "LC_ALL=tr_TR.UTF-8 HTTP_PROXY=@", "tr", "TR", true },
};

INSTANTIATE_TEST_SUITE_P(Golden, EveryCall, testing::ValuesIn(surroundings), byName);

} // namespace
