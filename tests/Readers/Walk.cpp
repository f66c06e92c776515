// Both roads by what a screen reader finds and does alone: its tree, names, actions and texts.
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

// As it is read: "pane SMS { button Back; field Phone number (+47) = 4123 }"
QString read(QAccessibleInterface *node)
{
    QString text = roleOf(node) + QLatin1Char(' ') + node->text(QAccessible::Name);
    const auto state = node->state();
    if (const QString more = node->text(QAccessible::Description);
        !more.isEmpty() && node->role() == QAccessible::EditableText)
        text += u" (%1)"_s.arg(more);
    if (const QString value = node->text(QAccessible::Value); !value.isEmpty())
        text += u" = "_s + value;
    if (state.checked)
        text += u", checked"_s;
    if (state.busy)
        text += u", busy"_s;
    QStringList parts;
    for (int i = 0; i < node->childCount(); ++i) {
        EXPECT_EQ(node->child(i)->parent(), node) << text.toStdString();
        EXPECT_EQ(node->indexOfChild(node->child(i)), i) << text.toStdString();
        parts.append(read(node->child(i)));
    }
    return parts.isEmpty() ? text : u"%1 { %2 }"_s.arg(text, parts.join(u"; "_s));
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
    /// All that there is, once it is that.
    void expectToRead(const QString &expected) const
    {
        if (HasFailure()) // a walk that went wrong ends there
            return;
        const QString whole =
            (around ? u"pane "_s : u"window Parloquin"_s) + u" { %1 }"_s.arg(expected);
        qsizetype pages = 0; // read at a time, also while one slides in
        (void)QTest::qWaitFor([&] {
            const QString now = read(kit());
            pages = std::max(pages, now.count(u"pane "_s) - (around ? 1 : 0));
            return now == whole;
        });
        EXPECT_LE(pages, 1);
        EXPECT_EQ(read(kit()).toStdString(), whole.toStdString());
    }
    QAccessibleInterface *await(const QString &what) const
    {
        QAccessibleInterface *found = nullptr;
        if (HasFailure())
            return found;
        EXPECT_TRUE(QTest::qWaitFor([&] { return (found = ::find(kit(), what)) != nullptr; }))
            << what.toStdString() << " is not in " << read(kit()).toStdString();
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
    const QString apps =
        u"button Close; pane Parloquin { text Pick an app.; list Messaging apps { row Verify with "
        "Parlo; row Verify with Kite; row Murmur }; button Don't use any of these apps? Get a code "
        "by SMS instead }"_s;
    answer("/v1.0/country", R"({"result":{"list":[{"title":"Norway","countryCode":"NO",
        "phoneCode":"+47"},{"title":"Chad","countryCode":"TD","phoneCode":"+235"},
        {"title":"Corsica"},{"title":"Nauru","countryCode":"NR","phoneCode":"+674"}]}})");
    server.pause();
    show(std::get<0>(GetParam()), std::get<1>(GetParam()));
    expectToRead(u"progress bar Loading, busy"_s);
    server.proceed();
    expectToRead(apps);

    auto *const stale = await(u"button Close"_s);
    server.pause();
    press(u"row Verify with Parlo"_s);
    expectToRead(u"progress bar Loading, busy"_s);
    ASSERT_TRUE(stale);
    stale->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(container->isVisible()) << "closed by a button under the veil";
    server.proceed();
    ASSERT_FALSE(HasFailure());
    ASSERT_TRUE(settle(2));
    expectToRead(apps);
    comeBack();
    EXPECT_EQ(outcome(1), "succeeded S-1");

    press(u"button Don't use any of these apps? Get a code by SMS instead"_s);
    expectToRead(u"button Back; pane SMS { button Select Country..; field Phone "
                 "number; button Send SMS }"_s);
    server.pause();
    press(u"button Select Country.."_s);
    expectToRead(
        u"button Back; pane Country List { list Country List { text Loading the countries… } }"_s);
    server.proceed();
    expectToRead(
        u"button Back; pane Country List { list Country List { heading C; row Chad, +235; row "
        "Corsica, checked; heading N; row Norway, +47; row Nauru, +674 } }"_s);
    press(u"row Norway, +47"_s);
    write(u"field Phone number"_s, u"41234567"_s);
    expectToRead(u"button Back; pane SMS { button Country, Norway; field Phone "
                 "number (+47) = 41234567; button Send SMS }"_s);
    press(u"button Send SMS"_s);
    expectToRead(
        u"button Back; pane SMS { field Code, digit 1 of 3; field Code, digit 2 of 3; field Code, "
        "digit 3 of 3; button Send Code; button Didn't you receive the code? Tap here to try "
        "again }"_s);
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
