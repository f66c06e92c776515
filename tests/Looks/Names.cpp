// docs/names.md, held against the live screens: what automation and screen readers find there.
#include "Looks/Walk.h"

#include <QtCore/QFile>
#include <QtGui/QAccessible>

#include <map>

namespace {

class Names : public Walk { };

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

TEST_F(Names, OfTheScreensAreThoseOfTheDocument)
{
    QString names = u"# Names\n\nWhat automation (`QObject::objectName`) and screen "
                    "readers find, as a service fills\nthe screens. The suite holds this page "
                    "against the live ones;\n`PARLOQUIN_WRITE_NAMES=1 ctest -R Names` in the "
                    "build folder writes it anew.\n"_s;
    answer("/v1.0/init", R"({"result":{"description":"Pick an app.",
        "list":[{"text":"Verify with Parlo"}],"alternativeValidation":"otp",
        "alternativeValidationDescription":"Get a code by SMS instead"}})");
    const std::map<std::string, QString> titles { { "app list", u"The apps"_s },
        { "phone entry", u"The number"_s }, { "country picker", u"The countries"_s },
        { "code entry", u"The code"_s } };
    take([&](const std::string &stop) {
        if (titles.contains(stop))
            names += u"\n## %1\n"_s.arg(titles.at(stop)) + tableOf(*container);
    });

    QFile document(QStringLiteral(NAMES_DOCUMENT));
    if (qEnvironmentVariableIsSet("PARLOQUIN_WRITE_NAMES")) {
        ASSERT_TRUE(document.open(QIODevice::WriteOnly));
        document.write(names.toUtf8());
        return;
    }
    ASSERT_TRUE(document.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(document.readAll()).toStdString(), names.toStdString());
}

} // namespace
