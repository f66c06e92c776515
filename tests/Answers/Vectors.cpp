#include "Parloquin/Platform/Crypto.h"
#include "sandbox/service/Cipher.h"

#include <QtCore/QFile>

#include <gtest/gtest.h>

#include <map>

using namespace parloquin;

namespace {

/// \return the fields of each line that is no comment
QList<QByteArrayList> linesOf(const QString &name)
{
    QFile file(QStringLiteral(FOLDER) + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QList<QByteArrayList> lines;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        if (!line.startsWith('#'))
            lines.append(line.split(' '));
    }
    return lines;
}

void expectAes(const QByteArray &key, const QByteArray &plainText, const QByteArray &published)
{
    EXPECT_TRUE(Crypto::isAesKeySize(key.size()));
    const QByteArray cipherText = Crypto::aesEncrypt(plainText, key).value_or(QByteArray(16, '?'));
    const QByteArray paddingBlock = cipherText.last(16); // the published ones have none
    EXPECT_EQ(cipherText.chopped(16).toHex(), published);
    EXPECT_EQ(Crypto::aesDecrypt(QByteArray::fromHex(published) + paddingBlock, key), plainText);
    if (key.size() == 32) { // the only size that the second library is asked for
        EXPECT_EQ(
            cipherText.toStdString(), sandbox::encrypt(plainText.toStdString(), key.toStdString()));
    }
}

TEST(KnownAnswers, OfAes)
{
    std::map<std::string, int> counts;
    for (const QByteArrayList &line : linesOf(QStringLiteral("AesVectors.txt"))) {
        const std::string name = line[0].toStdString();
        SCOPED_TRACE(name + std::to_string(++counts[name]));
        expectAes(QByteArray::fromHex(line[1]), QByteArray::fromHex(line[2]), line[3]);
    }
    const std::map<std::string, int> all = { { "F.1.1/2", 1 }, { "F.1.3/4", 1 }, { "F.1.5/6", 1 },
        { "GFSbox", 5 }, { "KeySbox", 16 }, { "MMT", 20 } };
    EXPECT_EQ(counts, all);
}

TEST(KnownAnswers, OfHmac)
{
    const QList<QByteArrayList> lines = linesOf(QStringLiteral("HmacVectors.txt"));
    EXPECT_EQ(lines.size(), 7);
    for (const QByteArrayList &line : lines) {
        const QByteArray key = QByteArray::fromHex(line[0]);
        const QByteArray text = QByteArray::fromHex(line[1]);
        const QByteArray code = Crypto::hmacSha256(text, key);
        EXPECT_EQ(code.toHex().left(line[2].size()), line[2]);
        EXPECT_EQ(code.toStdString(), sandbox::hmacSha256(text.toStdString(), key.toStdString()));
    }
}

} // namespace
