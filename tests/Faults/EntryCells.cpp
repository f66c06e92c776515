// What fingers, keyboards and windows may do to each screen.
#include "Faults/FaultTest.h"

#include <QtGui/QClipboard>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>

#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Field {
    const char *name;
    const char *call; ///< that sends its text
    QStringList outcomes; ///< of a text that is not the code sent
    QByteArray scene;
};
const Field fields[] = {
    { "txtPhoneNumber", "send-otp", {}, "phone" }, // the service takes none of these
    { "txtCode0", "check-otp", { u"failed 0"_s }, "code" },
    { "txtCode2", "check-otp", { u"failed 0"_s }, "code" },
};

QWidget *focused()
{
    QWidget *const widget = QApplication::focusWidget();
    return widget ? widget : QApplication::activeWindow();
}

void paste(const QString &text)
{
    QApplication::clipboard()->setText(text);
    QTest::keyClick(focused(), Qt::Key_V, Qt::ControlModifier);
}

/// What an input method does: shows a text as not yet entered, and enters one in place of another.
void compose(const QString &shown, const QString &entered, int from = 0, int length = 0)
{
    QInputMethodEvent event(shown, {});
    event.setCommitString(entered, from, length);
    QApplication::sendEvent(focused(), &event);
}

constexpr int mib = 1 << 20;
QString filled(const QString &pattern) { return pattern.repeated(mib / pattern.size()); }

/// Into a field whose text is selected.
struct Typing {
    const char *fault;
    std::function<void()> type;
    QString kept; ///< by the field for the number; of a long text this is the beginning
};
const Typing typings[] = {
    { "paste 1 MiB of digits", [] { paste(filled(u"7"_s)); }, u"777"_s },
    { "paste 1 MiB of faces", [] { paste(filled(u"😀"_s)); }, u"😀😀"_s },
    { "paste 1 MiB of families", [] { paste(filled(u"👨‍👩‍👧"_s)); },
        u"👨‍👩‍👧"_s },
    { "paste 1 MiB of accents", [] { paste(u"e"_s + filled(u"\u0301"_s)); }, u"e\u0301\u0301"_s },
    { "paste 1 MiB of directions", [] { paste(filled(u"\u202E1\u2066ا\u2069"_s)); },
        u"\u202E1\u2066ا"_s },
    { "paste 1 MiB of line feeds", [] { paste(filled(u"1\r\n"_s)); }, u"1\r\n1"_s },
    { "paste 1 MiB of NUL", [] { paste(filled(QString(1, QChar(0)))); }, QString(3, QChar(0)) },
    { "paste 1 MiB of half characters", [] { paste(filled(QString(1, QChar(0xD83D)))); }, {} },
    { "enter 1 MiB", [] { compose({}, filled(u"12"_s)); }, u"1212"_s },
    { "other digits", [] { paste(u"٤١٢"_s); }, u"٤١٢"_s },
    { "compose and enter",
        [] {
            compose(u"1"_s, {});
            compose(u"12"_s, {});
            compose({}, u"12"_s);
        },
        u"12"_s },
    { "compose and give up",
        [] {
            compose({}, u"12"_s);
            compose(u"9"_s, {});
            compose({}, {});
        },
        u"12"_s },
    { "compose and leave",
        [] {
            compose({}, u"12"_s);
            compose(u"9"_s, {});
        },
        u"12"_s },
    { "compose in place of what is not there", [] { compose({}, u"12"_s, -mib, 2 * mib); },
        u"12"_s },
};

Cell typed(const Field &field, const Typing &typing)
{
    const auto act = [field, typing](FaultTest &test) {
        test.goTo(field.call);
        auto *line = test.find<QLineEdit>(field.name);
        test.tap(line);
        line->selectAll();
        QCoreApplication::processEvents(); // the heartbeat: nobody types and pastes in one go
        typing.type();
        QCoreApplication::processEvents();
        if (field.name == fields[0].name) {
            EXPECT_TRUE(line->text().startsWith(typing.kept)) << line->text().toStdString();
        }
        const auto before = test.calls();
        test.make(field.call);
        test.waitForAnswers();
        EXPECT_EQ(test.calls() - before, 1);
        EXPECT_FALSE(test.console().contains("no JSON object")) << "the service could not read it";
    };
    return { typing.fault, QByteArray(field.call) + ' ' + field.name, {}, act, field.outcomes,
        field.scene, typing.fault == typings[3].fault };
}

struct Held {
    const char *fault;
    Qt::Key key;
    const char *widget; ///< that has the focus
    const char *at; ///< the call that is next there
    int calls; ///< that the key makes, however long it is held
    QByteArray until; ///< that shows
    QStringList outcomes;
};
const Held helds[] = {
    { "hold Enter", Qt::Key_Return, "tblKits", "start", 1, "link", {} },
    { "hold Space", Qt::Key_Space, "tblKits", "start", 1, "link", {} },
    { "hold Enter", Qt::Key_Return, "viewAlternativeKit", "start", 0, "phone", {} },
    { "hold Enter", Qt::Key_Return, "viewCountryBack", "country", 1, "countries 16", {} },
    { "hold Enter", Qt::Key_Enter, "btnContinue", "send-otp", 1, "code", {} },
    { "hold Enter", Qt::Key_Return, "txtPhoneNumber", "send-otp", 0, "phone", {} },
    { "hold Enter", Qt::Key_Return, "btnCheck", "check-otp", 1, "code", { u"succeeded"_s } },
    { "hold Enter", Qt::Key_Return, "txtCode2", "check-otp", 0, "code", {} },
    { "hold Enter", Qt::Key_Return, "btnBack", "check-otp", 0, "phone", {} },
    { "hold Escape", Qt::Key_Escape, "txtCode1", "check-otp", 0, "phone", {} },
    { "hold Backspace", Qt::Key_Backspace, "txtCode2", "check-otp", 0, "code", {} },
};

Cell held(const Held &row)
{
    const auto act = [row](FaultTest &test) {
        test.goTo(row.at);
        const auto before = test.calls();
        test.find(row.widget)->setFocus(Qt::TabFocusReason);
        const auto press = [&row](bool isRepeat) {
            QKeyEvent event(QEvent::KeyPress, row.key, {}, {}, isRepeat);
            QApplication::sendEvent(focused(), &event);
            QCoreApplication::processEvents();
        };
        const auto release = [&row] {
            QKeyEvent event(QEvent::KeyRelease, row.key, {});
            QApplication::sendEvent(focused(), &event);
        };
        press(false);
        if (row.key == Qt::Key_Space) // a button waits for its release
            release();
        EXPECT_TRUE(QTest::qWaitFor([&] {
            press(true);
            return test.scene().endsWith(row.until);
        }));
        test.waitForAnswers();
        for (int i = 0; i < 50; ++i)
            press(true);
        release();
        test.waitForAnswers();
        EXPECT_EQ(test.calls() - before, row.calls);
        EXPECT_TRUE(test.scene().endsWith(row.until)) << test.scene().constData();
    };
    return { row.fault, QByteArray(row.at) + ' ' + row.widget, {}, act, row.outcomes, {},
        row.key == Qt::Key_Escape };
}

/// Makes the window as small as it gets, while a finger lies on it, and draws it.
void shrink(const FaultTest &test)
{
    if (!test.container)
        return;
    for (const QSize size : { QSize(1, 1), QSize(0, 0), QSize(3, 90), QSize(4000, 1) }) {
        auto *letters = test.find("sectionIndex");
        if (letters)
            QTest::mousePress(letters, Qt::LeftButton);
        test.container->resize(size);
        QCoreApplication::processEvents();
        test.container->grab();
        if (letters)
            QTest::mouseRelease(letters, Qt::LeftButton);
        for (const Qt::Key key : { Qt::Key_Tab, Qt::Key_Down, Qt::Key_PageDown, Qt::Key_Home })
            QTest::keyClick(focused(), key);
    }
    test.container->resize(390, 844);
    QCoreApplication::processEvents();
}

} // namespace

std::vector<Cell> entryCells()
{
    std::vector<Cell> cells;
    for (const Field &field : fields) {
        for (const Typing &typing : typings)
            cells.push_back(typed(field, typing));
    }
    for (const Held &row : helds)
        cells.push_back(held(row));
    for (const char *call : { "init", "start", "country", "send-otp", "check-otp" }) {
        const auto act = [call](FaultTest &test) {
            test.goTo(call);
            shrink(test);
            const auto before = test.calls();
            test.make(call);
            shrink(test); // with the overlay up
            test.waitForAnswers();
            shrink(test);
            EXPECT_EQ(test.calls() - before, 1);
        };
        const bool isLast = QByteArray(call) == "check-otp";
        cells.push_back({ "window of 1 x 1", call, {}, act,
            isLast ? QStringList(u"succeeded"_s) : QStringList(), {},
            QByteArray(call) == "country" });
    }
    return cells;
}
