// The kit in another language: no English is left on any screen, for eyes and for a screen reader.
#include "Looks/Walk.h"

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QTranslator>
#include <QtGui/QFontMetricsF>

namespace {

class Languages : public Walk, public testing::WithParamInterface<const char *> {
protected:
    /// Every text of the kit, as the template has it.
    static QStringList sources()
    {
        QFile file(QStringLiteral(TRANSLATION_SOURCES "/parloquin.ts"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QString catalogue = QString::fromUtf8(file.readAll());
        QStringList all;
        const QRegularExpression source(u"<source>(.*)</source>"_s);
        for (auto each = source.globalMatch(catalogue); each.hasNext();)
            all.append(each.next().captured(1).replace(u"&apos;"_s, u"'"_s));
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

/// What of the kit's own texts needs more room than it has.
QStringList cut(const QWidget *container, const QSet<QString> &own)
{
    QStringList all;
    for (const auto *label : container->findChildren<Label *>()) {
        if (!label->isVisible() || !own.contains(label->text()))
            continue;
        const int high = label->heightForWidth(label->width());
        const bool wraps = high > label->sizeHint().height();
        if (wraps ? label->height() < high : label->width() < label->sizeHint().width())
            all.append(label->text());
    }
    for (const auto *button : container->findChildren<Button *>()) {
        if (button->isVisible() && button->height() < button->heightForWidth(button->width()))
            all.append(button->text());
    }
    for (const auto *field : container->findChildren<QLineEdit *>()) {
        const QFontMetricsF metrics(field->font());
        if (field->isVisible()
            && field->width() < metrics.horizontalAdvance(field->placeholderText()))
            all.append(field->placeholderText());
    }
    return all;
}

TEST_P(Languages, LeaveNoEnglishAndFitTheSmallestScreen)
{
    size = { 320, 480 };
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
    const Stop look = [&](const std::string &stop) {
        const auto shown = texts();
        const auto left = shown & english;
        for (const QString &text : left)
            ADD_FAILURE() << stop << ": " << qPrintable(text);
        EXPECT_TRUE(shown.intersects(translated)) << stop;
        const auto tooLong = cut(container.get(), translated);
        for (const QString &text : tooLong)
            ADD_FAILURE() << stop << " cuts " << qPrintable(text);
    };
    take(look);
    takeEmpty(look);
}

INSTANTIATE_TEST_SUITE_P(All, Languages, testing::Values("ar", "de", "es", "fr", "tr"),
    [](const auto &row) { return std::string(row.param); });

} // namespace
