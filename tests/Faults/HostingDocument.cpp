// What docs/hosting.md says that a host hears of each call, against what every cell is held to.
#include "Faults/Cell.h"

#include <QtCore/QFile>
#include <QtCore/QHash>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// Of a cell of that table: as the cells of ours have it.
QStringList heardIn(const QString &words)
{
    static const QHash<QString, QString> heard { { u"`verificationDidSucceed`"_s, u"succeeded"_s },
        { u"`authorizationError`"_s, u"failed 0"_s }, { u"`serverError`"_s, u"failed 1"_s } };
    return words.startsWith(u"nothing"_s) ? QStringList() : QStringList(heard.value(words, words));
}

TEST(HostingDocument, TellsWhatIsHeardOfEachCall)
{
    QFile page(QStringLiteral(HOSTING_DOCUMENT));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const auto lines = QString::fromUtf8(page.readAll()).split(u'\n');
    for (const Call &call : calls) {
        SCOPED_TRACE(call.name.constData());
        const QByteArray name = call.name == "icon" ? "a picture of an app" : '`' + call.name + '`';
        const auto rows = lines.filter(u"| %1 | "_s.arg(QLatin1String(name)));
        ASSERT_EQ(rows.size(), 1);
        const auto cells = rows[0].split(u'|');
        ASSERT_EQ(cells.size(), 7); // nothing, call, when, three kinds of answers, nothing
        for (const Kind kind : { usual, empty, failed })
            EXPECT_EQ(heardIn(cells[3 + kind].trimmed()), call.effects[kind].outcomes);
    }
}

} // namespace
