// docs/names.md, held against the live screens: what automation and screen readers find there.
#include <QtCore/QFile>
#include <QtGui/QAccessible>
#include <QtTest/QTest>
#include <QtWidgets/QWidget>

#include <Parloquin/Parloquin.h>
#include <Parloquin/TestKit/Person.h>
#include <Parloquin/TestKit/Sandbox.h>
#include <gtest/gtest.h>

using namespace ParloquinTest;
using namespace Qt::StringLiterals;

namespace {

/// Each name once, in the order of the screen; a row of a table stands for all of its kind.
QString tableOf(const QWidget &container)
{
    QStringList names;
    QString table = u"\n| object name | accessible name |\n|---|---|\n"_s;
    for (const QWidget *widget : container.findChildren<QWidget *>()) {
        const QString name = widget->objectName();
        if (name.isEmpty() || name.startsWith(u"qt_"_s) || !widget->isVisible()
            || widget->visibleRegion().isEmpty() || names.contains(name))
            continue;
        names += name;
        const QAccessibleInterface *const face =
            QAccessible::queryAccessibleInterface(const_cast<QWidget *>(widget));
        table += u"| `%1` | %2 |\n"_s.arg(name, face ? face->text(QAccessible::Name) : QString());
    }
    return table;
}

TEST(Names, OfTheScreensAreThoseOfTheDocument)
{
    Sandbox sandbox;
    switchMotionOff();
    const std::unique_ptr<ParloquinViewController> kit(Parloquin().viewControllerForLogin());
    kit->show();
    Person person(sandbox, kit.get());
    QString page = u"# Names\n\nWhat automation (`QObject::objectName`) and screen "
                   "readers find, as the sandbox's\nscenario fills the screens. The "
                   "suite holds this page against the live ones;\n"
                   "`PARLOQUIN_WRITE_NAMES=1 ctest -R Names` in the build folder "
                   "writes it anew.\n"_s;
    const auto add = [&](const char *title, Person::Screen screen) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return person.screen() == screen; })) << title;
        page += u"\n## %1\n"_s.arg(QLatin1String(title)) + tableOf(*kit);
    };
    const auto see = [&](const char *name) {
        QWidget *seen = nullptr;
        EXPECT_TRUE(QTest::qWaitFor([&] {
            for (QWidget *widget : kit->findChildren<QWidget *>(QLatin1String(name)))
                seen = widget->visibleRegion().isEmpty() ? seen : widget;
            return seen && person.screen() != Person::Screen::none;
        })) << name;
        return seen;
    };
    const auto tap = [&](const char *name) {
        const auto *const widget = see(name);
        ASSERT_NE(widget, nullptr);
        QTest::mouseClick(kit->windowHandle(), Qt::LeftButton, {},
            widget->mapTo(kit.get(), widget->rect().center()));
    };
    see("ThirdPartyKitTableCell");
    add("The apps", Person::Screen::apps);
    tap("viewAlternativeKit");
    add("The number", Person::Screen::number);
    tap("viewCountryBack");
    see("CountryTableCell");
    add("The countries", Person::Screen::countries);
    tap("btnClose");
    ASSERT_TRUE(QTest::qWaitFor([&] { return person.screen() == Person::Screen::number; }));
    ASSERT_TRUE(person.asksForCode(u"470123456"_s));
    add("The code", Person::Screen::code);

    QFile document(QStringLiteral(NAMES_DOCUMENT));
    if (qEnvironmentVariableIsSet("PARLOQUIN_WRITE_NAMES")) {
        ASSERT_TRUE(document.open(QIODevice::WriteOnly));
        document.write(page.toUtf8());
        return;
    }
    ASSERT_TRUE(document.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(document.readAll()).toStdString(), page.toStdString());
}

} // namespace
