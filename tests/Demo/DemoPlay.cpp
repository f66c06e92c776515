#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>

#include <gtest/gtest.h>

namespace {

constexpr int edge = 6; // device px; letters of the index stand one further in

/// Rows of pixels that hold more than one colour between two columns, counted in runs: lines of
/// text, buttons, boxes.
int bandsOf(const QImage &picture)
{
    int bands = 0;
    int high = 0;
    for (int y = 0; y < picture.height(); ++y) {
        bool isPlain = true;
        for (int x = edge; x < picture.width() / 2 && isPlain; ++x)
            isPlain = picture.pixel(x, y) == picture.pixel(edge, y);
        high = isPlain ? 0 : high + 1;
        constexpr int legible = 10; // device px; a line that parts is lower
        bands += high == legible ? 1 : 0;
    }
    return bands;
}

/// A screen that has not come to rest leaves a strip of the one before at an edge.
bool hasSliver(const QImage &picture)
{
    const int right = picture.width() - 1;
    const auto column = [&](int x) { return picture.copy(x, 0, 1, picture.height()); };
    const auto row = [&](int y) { return picture.copy(0, y, picture.width(), 1); };
    for (int i = 1; i < edge; ++i)
        if (column(i) != column(0) || column(right - i) != column(right) || row(i) != row(0))
            return true;
    return false;
}

struct Screen {
    const char *file;
    int bands; // at least so many, the kit's bar among them
};
const Screen screens[] = {
    { "01-start", 7 },
    { "02-app-list", 9 }, // the text, five apps, the other road
    { "03-app-list-pressed", 9 },
    { "04-messenger", 6 },
    { "05-verified-by-message", 6 },
    { "06-phone-entry", 4 },
    { "07-country-picker", 13 },
    { "08-country-picker-scrolled", 13 },
    { "09-phone-entry-filled", 4 },
    { "10-code-entry", 5 },
    { "11-not-verified", 7 },
    { "12-code-offered", 5 },
    { "13-code-entry-filled", 4 },
    { "14-verified-by-code", 6 },
};

class DemoPlay : public testing::TestWithParam<const char *> {
protected:
    void play(const QString &language, const QString &scenario)
    {
        m_play.start(QStringLiteral(DEMO),
            { QStringLiteral("--headless"), QStringLiteral("--port"), QStringLiteral("0"),
                QStringLiteral("--built"), QStringLiteral(BUILT), QStringLiteral("--lang"),
                language, QStringLiteral("--scenario"), QStringLiteral(SCENARIOS) + scenario,
                QStringLiteral("--out"), folder.path() });
        // Each of its steps has a limit, of all together CTest's.
        ASSERT_TRUE(m_play.waitForFinished(-1));
        said = QString::fromUtf8(m_play.readAllStandardError());
        code = m_play.exitCode();
    }
    QTemporaryDir folder;
    QString said;
    int code = -1;

private:
    QProcess m_play;
};

TEST_P(DemoPlay, VerifiesByBothRoadsAndLeavesWholePictures)
{
    const QString language = QString::fromLatin1(GetParam());
    play(language, QStringLiteral("/slow.json"));
    ASSERT_EQ(code, 0) << qPrintable(said);

    for (const Screen &screen : screens) {
        SCOPED_TRACE(screen.file);
        const QImage picture(folder.filePath(
            language + QLatin1Char('/') + QLatin1String(screen.file) + QStringLiteral(".png")));
        ASSERT_FALSE(picture.isNull());
        EXPECT_FALSE(hasSliver(picture));
        EXPECT_GE(bandsOf(picture), screen.bands);
    }
}

TEST_P(DemoPlay, EndsByAFaultWhereTheBackEndConfirmsNothing)
{
    play(QString::fromLatin1(GetParam()), QStringLiteral("/refused.json"));
    EXPECT_EQ(code, 1);
    const bool isArabic = GetParam() == std::string("ar_EG");
    for (const char *words : { "demo: tapped the row of Parlo\n",
             isArabic ? "FAILED: لم تُؤكَّد الجلسة: " : "FAILED: Not confirmed: ", GetParam(),
             " run failed at the step named above." })
        EXPECT_TRUE(said.contains(QString::fromUtf8(words)))
            << words << " is not in " << qPrintable(said);
}

INSTANTIATE_TEST_SUITE_P(Languages, DemoPlay, testing::Values("en_US", "ar_EG"),
    [](const auto &row) { return row.param; });

} // namespace
