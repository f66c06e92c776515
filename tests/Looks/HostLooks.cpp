// Whatever a host does to the looks of its own widgets, the kit's screens stay as they are.
#include "Looks/Walk.h"
#include "TestKit/PacedStyle.h"

#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <map>

namespace {

struct Look {
    const char *name;
    const char *sheet = "";
    bool dark = false;
    const char *style = "Windows";
    int points = 0;
};

// clang-format off
const Look looks[] = {
    { "EveryWidgetInPixels", "* { font: 30px; color: red; background: green; padding: 7px;"
                             " border: 2px solid blue } QLineEdit { padding: 20px; min-height: 60px }" },
    { "EveryWidgetInPoints", "* { font: 22pt; color: red; background: green; padding: 7px;"
                             " border: 2px solid blue } QLineEdit { padding: 20px; min-height: 60px }" },
    { "DarkTheme", "QWidget { color: #f8f8f2; background-color: #282a36 }" },
    { "Labels", "QLabel { qproperty-alignment: AlignRight }" },
    { "FieldsByState", "QLineEdit:focus { border: 4px solid red; font: italic 40px serif }"
                       " QLineEdit:read-only { color: lime; margin: 9px }"
                       " QLineEdit { selection-color: red; width: 300px; max-height: 10px }" },
    { "DarkPalette", "", true },
    { "Fusion", "", false, "Fusion" },
    { "LargeFont", "", false, "Windows", 20 },
};
// clang-format on

void PrintTo(const Look &look, std::ostream *out) { *out << look.name; }

class HostLooks : public Walk, public testing::WithParamInterface<Look> {
protected:
    void SetUp() override
    {
        Walk::SetUp();
        undress();
    }

    static void dress(const Look &look)
    {
        QApplication::setStyle(new ParloquinTest::PacedStyle(0, QLatin1String(look.style)));
        if (look.dark)
            QApplication::setPalette(QPalette(QColor(0x20, 0x20, 0x20), QColor(0x10, 0x10, 0x10)));
        if (look.points > 0) {
            QFont font = QApplication::font();
            font.setPointSize(look.points);
            font.setItalic(true);
            font.setLetterSpacing(QFont::AbsoluteSpacing, 3);
            QApplication::setFont(font);
        }
        qApp->setStyleSheet(QString::fromLatin1(look.sheet));
    }

    static void undress()
    {
        static const QPalette palette = QApplication::palette();
        static const QFont font = QApplication::font();
        qApp->setStyleSheet({});
        QApplication::setStyle(new ParloquinTest::PacedStyle(0, QStringLiteral("Windows")));
        QApplication::setPalette(palette);
        QApplication::setFont(font);
    }

    /// The overlay turns: each of its steps is as good as any.
    using Pictures = std::vector<QImage>;
    Pictures pictures(const std::string &stop) const
    {
        Pictures seen { picture() };
        const auto isNew = [&seen](const QImage &now) {
            return std::none_of(
                seen.cbegin(), seen.cend(), [&now](const QImage &before) { return now == before; });
        };
        while (stop == "overlay" && seen.size() < 12
            && QTest::qWaitFor([&] { return isNew(picture()); }))
            seen.push_back(picture());
        return seen;
    }

    void expectOneOf(const Pictures &expected, const std::string &stop) const
    {
        const QImage now = picture();
        std::string different;
        for (const QImage &one : expected) {
            different = difference(now, one);
            if (different.empty())
                return;
        }
        ADD_FAILURE() << stop << ": " << different;
    }
};

TEST_P(HostLooks, LeaveEveryScreenAsItIs)
{
    std::map<std::string, Pictures> plain;
    take([&](const std::string &stop) {
        plain[stop] = pictures(stop);
        dress(GetParam());
        expectOneOf(plain[stop], stop + ", set while it is open");
        undress();
        expectOneOf(plain[stop], stop + ", taken back while it is open");
    });
    ASSERT_EQ(plain.size(), 7);

    dress(GetParam());
    take([&](const std::string &stop) {
        expectOneOf(plain[stop], stop + ", set before the kit was made");
    });
}

INSTANTIATE_TEST_SUITE_P(All, HostLooks, testing::ValuesIn(looks),
    [](const auto &row) { return std::string(row.param.name); });

} // namespace
