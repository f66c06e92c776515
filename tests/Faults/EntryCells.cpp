// What fields and windows may go through on each screen.
#include "Faults/FaultTest.h"

#include <QtGui/QClipboard>
#include <QtWidgets/QLineEdit>

namespace {

struct Field {
    QByteArray name;
    QByteArray call; ///< that sends its text
    QStringList outcomes; ///< of a text that is not the code sent
    QByteArray scene;
};
const Field fields[] = {
    { "txtPhoneNumber", "send-otp", {}, "phone" }, // the service takes none of these
    { "txtCode0", "check-otp", { u"failed 0"_s }, "code" },
    { "txtCode2", "check-otp", { u"failed 0"_s }, "code" },
};

using Typing = std::function<void()>;
constexpr int mib = 1 << 20;
QString filled(const QString &pattern) { return pattern.repeated(mib / pattern.size()); }

Typing paste(const QString &text)
{
    return [text] {
        QApplication::clipboard()->setText(text);
        hands::key(Qt::Key_V, Qt::ControlModifier);
    };
}

/// What an input method does: shows a text as not yet entered, and enters one in place of another.
struct Composition {
    QString shown, entered;
    int from = 0, length = 0;
};
Typing compose(const QList<Composition> &steps)
{
    return [steps] {
        for (const auto &[shown, entered, from, length] : steps) {
            QInputMethodEvent event(shown, {});
            event.setCommitString(entered, from, length);
            QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
        }
    };
}

/// Into a field whose text is selected.
struct Typed {
    const char *fault;
    Typing type;
    QString kept; ///< by the field for the number; of a long text this is the beginning
    bool inSample = false;
};
const Typed typings[] = {
    { "paste 1 MiB of digits", paste(filled(u"7"_s)), u"777"_s },
    { "paste 1 MiB of faces", paste(filled(u"😀"_s)), u"😀😀"_s },
    { "paste 1 MiB of families", paste(filled(u"👨‍👩‍👧"_s)), u"👨‍👩‍👧"_s },
    { "paste 1 MiB of accents", paste(u"e"_s + filled(u"\u0301"_s)), u"e\u0301\u0301"_s, true },
    { "paste 1 MiB of directions", paste(filled(u"\u202E1\u2066ا\u2069"_s)), u"\u202E1\u2066ا"_s },
    { "paste 1 MiB of line feeds", paste(filled(u"1\r\n"_s)), u"1\r\n1"_s },
    { "paste 1 MiB of NUL", paste(QString(mib, QChar(0))), QString(3, QChar(0)) },
    { "paste 1 MiB of half characters", paste(QString(mib, QChar(0xD83D))), {} },
    { "enter 1 MiB", compose({ { {}, filled(u"12"_s) } }), u"1212"_s },
    { "other digits", paste(u"٤١٢"_s), u"٤١٢"_s },
    { "compose and enter", compose({ { u"1"_s, {} }, { u"12"_s, {} }, { {}, u"12"_s } }), u"12"_s },
    { "compose and give up", compose({ { {}, u"12"_s }, { u"9"_s, {} }, {} }), u"12"_s },
    { "compose and leave", compose({ { {}, u"12"_s }, { u"9"_s, {} } }), u"12"_s },
    { "compose in place of what is not there", compose({ { {}, u"12"_s, -mib, 2 * mib } }),
        u"12"_s },
};

Cell typed(const Field &field, const Typed &row)
{
    const auto act = [&](FaultTest &test) {
        test.goTo(field.call);
        auto *line = test.find<QLineEdit>(field.name);
        test.tap(line);
        line->selectAll();
        QCoreApplication::processEvents(); // the heartbeat: nobody types and pastes in one go
        row.type();
        QCoreApplication::processEvents();
        EXPECT_TRUE(field.call != "send-otp" || line->text().startsWith(row.kept))
            << line->text().toStdString();
        const auto before = Yardstick::requests();
        test.makeAndWait(field.call);
        EXPECT_EQ(Yardstick::requests() - before, 1);
        EXPECT_FALSE(Yardstick::output().contains("no JSON object"))
            << "the service could not read it";
    };
    return { row.fault, field.call + ' ' + field.name, act, field.outcomes, field.scene,
        row.inSample };
}

/// Makes the window as small as it gets, while a finger lies on it, and draws it.
void shrink(const FaultTest &test)
{
    if (!test.container)
        return;
    for (const QSize size : { QSize(1, 1), QSize(0, 0), QSize(3, 90), QSize(4000, 1) }) {
        auto *letters = test.find("sectionIndex");
        if (letters)
            hands::press(letters);
        test.container->resize(size);
        QCoreApplication::processEvents();
        test.container->grab();
        if (letters)
            hands::release(letters);
        for (const Qt::Key key : { Qt::Key_Tab, Qt::Key_Down, Qt::Key_PageDown, Qt::Key_Home })
            hands::key(key);
    }
    test.container->resize(390, 844);
    QCoreApplication::processEvents();
}

Cell shrunk(const QByteArray &call)
{
    const auto act = [call](FaultTest &test) {
        test.goTo(call);
        shrink(test);
        const auto before = Yardstick::requests();
        test.make(call);
        shrink(test); // with the overlay up
        test.waitForAnswers();
        shrink(test);
        EXPECT_EQ(Yardstick::requests() - before, 1);
        if (call == "start") { // an app that starts late would be the next round's
            EXPECT_TRUE(FaultTest::waitForLink());
        }
    };
    const QStringList outcomes(call == "check-otp" ? 1 : 0, u"succeeded"_s);
    return { "window of 1 x 1", call, act, outcomes, {}, call == "country" };
}

} // namespace

std::vector<Cell> entryCells()
{
    std::vector<Cell> cells;
    for (const Field &field : fields) {
        for (const Typed &row : typings)
            cells.push_back(typed(field, row));
    }
    for (const char *call : { "init", "start", "country", "send-otp", "check-otp" })
        cells.push_back(shrunk(call));
    return cells;
}
