// The kit in another language: no English is left on any screen, for eyes and for a screen reader.
#include "Looks/Walk.h"

#include <QtCore/QFile>
#include <QtCore/QSet>
#include <QtCore/QTranslator>
#include <QtCore/QXmlStreamReader>
#include <QtWidgets/QApplication>

namespace {

class Languages : public Walk, public testing::WithParamInterface<const char *> {
protected:
    /// Every text of the kit, as the template has it.
    static QStringList sources()
    {
        QFile file(QStringLiteral(TRANSLATION_SOURCES "/parloquin.ts"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        QXmlStreamReader reader(&file);
        QStringList all;
        while (!reader.atEnd()) {
            if (reader.readNext() == QXmlStreamReader::StartElement
                && reader.name() == QLatin1String("source"))
                all.append(reader.readElementText());
        }
        return all;
    }

    /// What can be read of the container, by whatever means.
    [[nodiscard]] QSet<QString> texts() const
    {
        QSet<QString> all { container->accessibleName(), container->accessibleDescription() };
        for (const auto *widget : container->findChildren<QWidget *>()) {
            all.insert(widget->accessibleName());
            all.insert(widget->property("text").toString());
            all.insert(widget->property("placeholderText").toString());
        }
        return all;
    }
};

TEST_P(Languages, LeaveNoEnglish)
{
    QTranslator catalogue;
    ASSERT_TRUE(catalogue.load(
        QStringLiteral(TRANSLATIONS "/parloquin_%1.qm").arg(QLatin1String(GetParam()))));
    QCoreApplication::installTranslator(&catalogue);

    QSet<QString> english;
    QSet<QString> translated;
    const auto all = sources();
    ASSERT_GE(all.size(), 19);
    for (const QString &source : all) {
        const QString text = catalogue.translate("Parloquin", qPrintable(source));
        EXPECT_FALSE(text.isEmpty()) << qPrintable(source) << " has no translation";
        for (const auto *sign : { "%1", "..", "+(" })
            EXPECT_EQ(text.contains(QLatin1String(sign)), source.contains(QLatin1String(sign)))
                << qPrintable(text) << ": " << sign;
        translated.insert(text);
        if (text != source)
            english.insert(source);
    }
    take([&](const std::string &stop) {
        const auto shown = texts();
        const auto left = shown & english;
        for (const QString &text : left)
            ADD_FAILURE() << stop << ": " << qPrintable(text);
        EXPECT_TRUE(shown.intersects(translated)) << stop;
    });
}

INSTANTIATE_TEST_SUITE_P(All, Languages, testing::Values("ar", "de", "es", "fr", "tr"),
    [](const auto &row) { return std::string(row.param); });

} // namespace
