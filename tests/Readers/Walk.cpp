// Both roads by what a screen reader does alone, in every host; what it finds: Transcript.cpp.
#include "Screens/Hosts.h"

#include <QtGui/QAccessible>

namespace {

QString roleOf(const QAccessibleInterface *node)
{
    static const QHash<int, QString> names { { QAccessible::Window, u"window"_s },
        { QAccessible::Pane, u"pane"_s }, { QAccessible::Button, u"button"_s },
        { QAccessible::StaticText, u"text"_s }, { QAccessible::EditableText, u"field"_s },
        { QAccessible::List, u"list"_s }, { QAccessible::ListItem, u"row"_s },
        { QAccessible::Heading, u"heading"_s }, { QAccessible::ProgressBar, u"progress bar"_s } };
    return names.value(node->role(), u"role 0x%1"_s.arg(node->role(), 0, 16));
}

QAccessibleInterface *find(QAccessibleInterface *node, const QString &what)
{
    if (roleOf(node) + QLatin1Char(' ') + node->text(QAccessible::Name) == what)
        return node;
    for (int i = 0; i < node->childCount(); ++i) {
        if (auto *found = find(node->child(i), what))
            return found;
    }
    return nullptr;
}

class Reader : public InEveryHost {
protected:
    [[nodiscard]] QAccessibleInterface *kit() const
    {
        return QAccessible::queryAccessibleInterface(container.get());
    }
    QAccessibleInterface *await(const QString &what) const
    {
        QAccessibleInterface *found = nullptr;
        if (HasFailure())
            return found;
        EXPECT_TRUE(QTest::qWaitFor([&] { return (found = ::find(kit(), what)) != nullptr; }))
            << what.toStdString() << " is not there";
        return found;
    }
    void press(const QString &what) const
    {
        QCoreApplication::processEvents(); // as between any two calls of another process
        if (auto *found = await(what))
            found->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
    void write(const QString &what, const QString &text) const
    {
        if (auto *found = await(what))
            found->editableTextInterface()->insertText(0, text);
    }
    [[nodiscard]] std::string outcome(int count) const
    {
        return waitForOutcomes(count) ? delegate->outcomes().constLast().toStdString() : "none";
    }
};

TEST_P(Reader, LeadsToASessionOnBothRoads)
{
    answer("/v1.0/country", R"({"result":{"list":[{"title":"Norway","countryCode":"NO",
        "phoneCode":"+47"},{"title":"Chad","countryCode":"TD","phoneCode":"+235"},
        {"title":"Corsica"},{"title":"Nauru","countryCode":"NR","phoneCode":"+674"}]}})");
    server.pause();
    show(std::get<0>(GetParam()), std::get<1>(GetParam()));
    await(u"progress bar Loading"_s);
    server.proceed();

    auto *const stale = await(u"button Close"_s);
    server.pause();
    press(u"row Verify with Parlo"_s);
    await(u"progress bar Loading"_s);
    ASSERT_TRUE(stale);
    stale->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(container->isVisible()) << "closed by a button under the veil";
    server.proceed();
    ASSERT_FALSE(HasFailure());
    ASSERT_TRUE(settle(2));
    comeBack();
    EXPECT_EQ(outcome(1), "succeeded S-1");

    press(u"button Don't use any of these apps? Get a code by SMS instead"_s);
    press(u"button Select Country.."_s);
    press(u"row Norway, +47"_s);
    write(u"field Phone number"_s, u"41234567"_s);
    press(u"button Send SMS"_s);
    for (const int digit : { 1, 2, 3 })
        write(u"field Code, digit %1 of 3"_s.arg(digit), QString::number(digit + 3));
    press(u"button Send Code"_s);
    ASSERT_FALSE(HasFailure());
    EXPECT_EQ(outcome(2), "succeeded S-2");
    EXPECT_EQ(server.requests().back().parameters().value(u"code"_s), u"456"_s);

    press(u"button Back"_s);
    await(u"field Phone number"_s);
    press(u"button Back"_s);
    await(u"list Messaging apps"_s);
    press(u"button Close"_s);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !container->isVisible(); }));
}

INSTANTIATE_TEST_SUITE_P(Hosts, Reader, everyHost, byHost);

} // namespace
