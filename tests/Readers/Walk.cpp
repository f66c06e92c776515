// Both roads through the accessible tree alone, while something waits or moves; at rest:
// Transcript.cpp.
#include "Screens/Hosts.h"

#include <QtGui/QAccessible>
#include <QtWidgets/QPushButton>

namespace {

class Reader : public InEveryHost {
protected:
    [[nodiscard]] QAccessibleInterface *kit() const
    {
        return QAccessible::queryAccessibleInterface(container.get());
    }
    /// By its name, read as a reader does: down and up again.
    static QAccessibleInterface *find(QAccessibleInterface *node, const QString &name, int &pages)
    {
        EXPECT_TRUE(node->isValid()) << name.toStdString();
        auto *found = node->text(QAccessible::Name) == name ? node : nullptr;
        pages += int(qobject_cast<Screen *>(node->object()) != nullptr);
        for (int i = 0; i < node->childCount(); ++i) {
            EXPECT_EQ(node->child(i)->parent(), node) << name.toStdString();
            EXPECT_EQ(node->indexOfChild(node->child(i)), i) << name.toStdString();
            auto *const below = find(node->child(i), name, pages);
            found = found ? found : below;
        }
        return found;
    }
    /// Waits for it, one page being read at a time.
    [[nodiscard]] QAccessibleInterface *await(const QString &name) const
    {
        QAccessibleInterface *found = nullptr;
        const auto isThere = [&] {
            int pages = 0;
            found = find(kit(), name, pages);
            EXPECT_LE(pages, 1);
            return found != nullptr;
        };
        EXPECT_TRUE(QTest::qWaitFor(isThere)) << name.toStdString();
        return found;
    }
    static void press(QAccessibleInterface *node)
    {
        QCoreApplication::processEvents(); // as between any two calls of another process
        if (node)
            node->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
    static void write(QAccessibleInterface *node, const QString &text)
    {
        if (node)
            node->editableTextInterface()->insertText(
                node->textInterface()->characterCount(), text);
    }
};

TEST_P(Reader, WalksBothRoadsOnePageAtATimeAndPressesNothingUnderTheOverlay)
{
    const QByteArray link = "parlo://reader";
    answer("/v1.0/start", R"({"result":{"deeplink":")" + link + R"(","reference":"R-1"}})");
    open();
    const QString bySms = u"Don't use any of these apps? Get a code by SMS instead"_s;
    const auto kept = { await(u"Close"_s), await(bySms), await(u"Verify with Parlo"_s) };
    server.pause();
    press(await(u"Verify with Parlo"_s));
    EXPECT_TRUE(await(u"Loading"_s)->state().busy);
    std::ranges::for_each(kept, press);
    EXPECT_TRUE(container->isVisible() && !visible("viewCountryBack"));
    server.proceed();
    ASSERT_SOON(handlerArguments() == QStringList(QString::fromLatin1(link)));
    ASSERT_TRUE(settle(2));
    EXPECT_EQ(paths().count("/v1.0/start"), 1);
    comeBack();
    ASSERT_TRUE(waitForOutcomes(1));
    ASSERT_TRUE(settle(3));
    for (const QString &name : { bySms, u"Select Country.."_s, u"Norway, +47"_s })
        press(await(name));
    (void)await(u"Country, Norway"_s);
    write(await(u"Phone number"_s), u"41234567"_s);
    press(await(u"Send SMS"_s));
    for (int i = 0; i < 3; ++i)
        write(await(u"Code, digit %1 of 3"_s.arg(i + 1)), u"471"_s.mid(i, 1));
    press(await(u"Send Code"_s));
    ASSERT_TRUE(waitForOutcomes(2));
    EXPECT_EQ(delegate->outcomes(), QStringList({ u"succeeded S-1"_s, u"succeeded S-2"_s }));
    ASSERT_TRUE(settle(6));
    press(await(u"Back"_s));
    (void)await(u"Phone number"_s);
    press(await(u"Back"_s));
    press(await(u"Close"_s));
    EXPECT_FALSE(container->isVisible());
}

TEST_P(Reader, FindsTheHostsOwnBoxesAsBefore)
{
    open();
    QWidget window;
    auto *const box = new QWidget(&window);
    const auto *const settings = new QPushButton(u"Settings"_s, box);
    int pages = 0;
    const auto *found = find(QAccessible::queryAccessibleInterface(&window), u"Settings"_s, pages);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->object(), settings);
    EXPECT_EQ(found->parent()->object(), box);
    QPushButton help(u"Help"_s, container.get());
    help.show();
    EXPECT_NE(find(kit(), u"Help"_s, pages), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Hosts, Reader, everyHost, byHost);

} // namespace
