// Whatever a host does to the looks of its own widgets, the kit's screens stay as they are.
#include "Looks/Walk.h"

#include <QtWidgets/QDialog>

#include <map>

namespace {

enum class Place { dialog, page, container, application };

struct Look {
    const char *name;
    const char *sheet = "";
    Place place = Place::application; // of the sheet
    bool dark = false;
    const char *style = "Windows";
    int points = 0;
    Qt::LayoutDirection direction = Qt::LeftToRight; // of all but the dialog
};

constexpr const char *sizes = "* { min-height: 60px; min-width: 90px; margin: 5px; padding: 3px;"
                              " border: 3px solid red; border-radius: 9px; font: 22px;"
                              " background: green }";

// clang-format off
const Look looks[] = {
    { "EveryWidgetInPoints", "* { font: 22pt; color: red; background: green; padding: 7px;"
                             " border: 2px solid blue } QLineEdit { padding: 20px; min-height: 60px }" },
    { "DarkTheme", "QWidget { color: #f8f8f2; background-color: #282a36 }" },
    { "NoGround", "* { background: transparent } QLabel { qproperty-alignment: AlignRight }" },
    { "FieldsByState", "QLineEdit:focus { border: 4px solid red; font: italic 40px serif }"
                       " QLineEdit:read-only { color: lime; margin: 9px }"
                       " QLineEdit { selection-color: red; width: 300px; max-height: 10px;"
                       " border-image: url(:/icon-sms.svg) }" },
    { "Sizes", sizes },
    { "LargeSizes", "QDialog > QWidget > QWidget QWidget { min-width: 500px; min-height: 900px }" },
    { "SmallSizes", "QDialog > QWidget > QWidget QWidget { max-width: 40px; max-height: 30px }" },
    { "OnTheDialog", sizes, Place::dialog },
    { "OnThePage", sizes, Place::page },
    { "OnTheContainer", sizes, Place::container },
    { "DarkPalette", "", Place::application, true },
    { "Fusion", "", Place::application, false, "Fusion" },
    { "LargeFont", "", Place::application, false, "Windows", 20 },
    { "Mirrored", "", Place::application, false, "Windows", 0, Qt::RightToLeft },
};
// clang-format on

class HostLooks : public Walk, public testing::WithParamInterface<Look> {
protected:
    void SetUp() override
    {
        Walk::SetUp();
        page = new QWidget(&dialog);
        page->resize(size);
        dialog.setLayoutDirection(Qt::LeftToRight);
        undress();
        dialog.resize(size);
        dialog.show();
    }

    void dress(const Look &look)
    {
        QApplication::setStyle(new ParloquinTest::PacedStyle(0, QLatin1String(look.style)));
        QApplication::setLayoutDirection(look.direction);
        if (look.dark)
            QApplication::setPalette(QPalette(QColor(0x20, 0x20, 0x20), QColor(0x10, 0x10, 0x10)));
        if (look.points > 0) {
            QFont font = QApplication::font();
            font.setPointSize(look.points);
            font.setItalic(true);
            font.setLetterSpacing(QFont::AbsoluteSpacing, 3);
            QApplication::setFont(font);
        }
        setSheet(QString::fromLatin1(look.sheet));
    }

    void undress()
    {
        static const QPalette palette = QApplication::palette();
        static const QFont font = QApplication::font();
        setSheet({});
        QApplication::setLayoutDirection(Qt::LeftToRight);
        QApplication::setStyle(new ParloquinTest::PacedStyle(0, u"Windows"_s));
        QApplication::setPalette(palette);
        QApplication::setFont(font);
    }

    void setSheet(const QString &sheet)
    {
        QWidget *const widgets[] = { &dialog, page, container.get() };
        if (GetParam().place == Place::application)
            qApp->setStyleSheet(sheet);
        else if (auto *const dressed = widgets[static_cast<int>(GetParam().place)])
            dressed->setStyleSheet(sheet);
    }

    void expectPicture(const QImage &expected, const std::string &stop) const
    {
        EXPECT_EQ(difference(picture(), expected), "") << stop;
    }

    QDialog dialog;
};

TEST_P(HostLooks, LeaveEveryScreenAsItIs)
{
    std::map<std::string, QImage> plain;
    const Stop look = [&](const std::string &stop) {
        plain[stop] = picture();
        dress(GetParam());
        expectPicture(plain[stop], stop + ", set while it is open");
        undress();
        expectPicture(plain[stop], stop + ", taken back while it is open");
    };
    take(look);
    takeEmpty(look);
    ASSERT_EQ(plain.size(), 18);

    dress(GetParam());
    const Stop compare = [&](const std::string &stop) {
        expectPicture(plain[stop], stop + ", set before the kit was made");
    };
    answerWell();
    take(compare);
    takeEmpty(compare);
}

INSTANTIATE_TEST_SUITE_P(All, HostLooks, testing::ValuesIn(looks), byName);

} // namespace
