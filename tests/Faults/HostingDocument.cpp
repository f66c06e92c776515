// What docs/hosting.md says that a host hears of each call, against what every cell is held to.
#include "Faults/Cell.h"

#include <QtCore/QFile>

#include <gtest/gtest.h>

namespace {

/// Of a cell of that table: as the cells of ours have it.
QStringList heardIn(const QString &words)
{
    const struct {
        const char *said;
        const char *heard;
    } rows[] = {
        { "`verificationDidSucceed`", "succeeded" },
        { "`authorizationError`", "failed 0" },
        { "`serverError`", "failed 1" },
    };
    for (const auto &row : rows) {
        if (words == QLatin1String(row.said))
            return { QLatin1String(row.heard) };
    }
    return words.startsWith(QStringLiteral("nothing")) ? QStringList() : QStringList(words);
}

TEST(HostingDocument, TellsWhatIsHeardOfEachCall)
{
    QFile page(QStringLiteral(HOSTING_DOCUMENT));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const auto lines = QString::fromUtf8(page.readAll()).split(u'\n');
    for (const Call &call : calls) {
        SCOPED_TRACE(call.name.constData());
        const QString name = call.name == "icon"
            ? QStringLiteral("a picture of an app")
            : QStringLiteral("`%1`").arg(QString::fromLatin1(call.name));
        const auto rows = lines.filter(QStringLiteral("| %1 | ").arg(name));
        ASSERT_EQ(rows.size(), 1);
        const auto cells = rows[0].split(u'|');
        ASSERT_EQ(cells.size(), 7); // nothing, call, when, three kinds of answers, nothing
        for (const Kind kind : { usual, empty, failed })
            EXPECT_EQ(heardIn(cells[3 + kind].trimmed()), call.effects[kind].outcomes);
    }
}

} // namespace
