// Walks of the transcript that are written in texts of their own, walks/*.txt: a step is a line of
// commands that begins with "$ ", below it stands what came of it: what went out, who was told, and
// what is gone from the screen (-) and new on it (+). TRANSCRIPT=approve writes that anew. Places
// and ways from side to side are those of a page from left to right, and mirrored on the other.
#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Readers/Transcript.h"

#include <QtCore/QDir>
#include <QtGui/QClipboard>
#include <QtGui/QKeySequence>
#include <QtWidgets/QDialog>

namespace {

QByteArray latin(const QString &text) { return text.toLatin1(); }

/// Once a word: "btnBack 20" gives "btnBack", "20" and so on.
QString word(const QString &text, int at) { return text.section(u' ', at, at); }

} // namespace

QPoint Transcript::mirrored(QPoint way) const
{
    return GetParam() == Qt::LeftToRight ? way : QPoint(-way.x(), way.y());
}

QKeyCombination Transcript::keyOf(const QString &name) const
{
    const QKeyCombination key = QKeySequence(name)[0];
    EXPECT_NE(key.key(), Qt::Key_unknown) << name.toStdString();
    const bool turns = GetParam() == Qt::RightToLeft && key.keyboardModifiers() == Qt::NoModifier;
    if (turns && key.key() == Qt::Key_Left)
        return Qt::Key_Right;
    return turns && key.key() == Qt::Key_Right ? Qt::Key_Left : key;
}

/// The first of the ways begins in the middle of what it names, or at "X,Y" of the kit.
void Transcript::touch(const QString &ways, bool isCancelled)
{
    const auto pointOf = [](const QString &text) {
        return QPoint(text.section(u',', 0, 0).toInt(), text.section(u',', 1, 1).toInt());
    };
    const QString from = word(ways, 0);
    const QRect kit = container->rect();
    QPoint at;
    if (from.contains(u',')) {
        at = pointOf(from);
        at.setX(GetParam() == Qt::LeftToRight ? at.x() : kit.right() - at.x());
    } else {
        const QRect part = frame(hands::there(visible(latin(from))));
        at = { part.center().x(), std::clamp(part.center().y(), 50, kit.bottom() - 4) };
    }
    m_finger->down(container.get(), at);
    for (const QString &way : ways.split(u' ').mid(1))
        m_finger->drag(mirrored(pointOf(way)));
    if (isCancelled)
        m_finger->cancel(); // and what Qt makes of it
    m_finger->up();
}

/// Held on until what comes of it has come, and longer: "KEY REQUESTS PART".
void Transcript::holdOn(const QString &words)
{
    const auto key = keyOf(word(words, 0));
    const auto again = [key] { hands::keyDown(key.key(), true, key.keyboardModifiers()); };
    const size_t sent = m_sent + word(words, 1).toUInt();
    hands::keyDown(key.key(), false, key.keyboardModifiers());
    EXPECT_TRUE(QTest::qWaitFor([&] {
        again();
        return server.requests().size() >= sent && visible(latin(word(words, 2))) && !overlayIsUp()
            && isAtRest();
    })) << words.toStdString();
    for (int i = 0; i < 30; ++i)
        again();
    hands::keyUp(key.key());
}

// clang-format off
void Transcript::command(const QString &name, const QString &rest)
{
    const auto mirror = GetParam() == Qt::LeftToRight ? Qt::RightToLeft : Qt::LeftToRight;
    const auto field = [&] { return QAccessible::queryAccessibleInterface(find(latin(word(rest, 0)))); };
    const auto number = [&](int at) { return word(rest, at).toInt(); };
    const std::map<QString, std::function<void()>> commands {
        // The kit anew, and what the service brings from now on: "answer CALL STATUS JSON", or no STATUS where it hangs up.
        { u"kit"_s, [&] { answerBothRoads(); again(); } },
        { u"again"_s, [&] { again(); } },
        { u"number"_s, [&] { answerBothRoads(); again(); EXPECT_TRUE(seen("viewAlternativeKit")); tap("viewAlternativeKit"); EXPECT_TRUE(seen("viewCountryBack")); } },
        { u"answer"_s, [&] { server.answer("/v1.0/" + latin(word(rest, 0)), word(rest, 1).isEmpty() ? QByteArray() : RawServer::http(word(rest, 1).toInt(), rest.section(u' ', 2).toUtf8())); } },
        { u"network"_s, [&] { ApiSessionHelper::shared().isNetworkReachable = rest == u"on"; } },
        { u"unheard"_s, [&] { container->setKitDelegate(nullptr); } },
        { u"pause"_s, [&] { server.pause(latin(rest)); m_waits = true; } },
        { u"proceed"_s, [&] { server.proceed(); m_waits = false; } },
        // What a person does.
        { u"tap"_s, [&] { tap(latin(rest)); } },
        { u"app"_s, [&] { tapRow(rest.toInt()); } },
        { u"pick"_s, [&] { pick(rest); } },
        { u"list"_s, [&] { tap("viewCountryBack"); (void)row("tblCountries", 0, 0); } },
        { u"type"_s, [&] { hands::keys(QString(rest).replace(u'_', u' ')); } },
        { u"commit"_s, [&] { hands::commit(QString(rest).replace(u'_', u' ')); } },
        { u"paste"_s, [&] { QApplication::clipboard()->setText(rest); hands::key(Qt::Key_V, Qt::ControlModifier); } },
        { u"key"_s, [&] { hands::key(keyOf(rest).key(), keyOf(rest).keyboardModifiers()); } },
        { u"menu"_s, [&] { hands::menuKey(); if (!rest.isEmpty()) hands::key(keyOf(rest).key()); EXPECT_SOON(QGuiApplication::focusWindow()); } },
        { u"held"_s, [&] { hands::hold(keyOf(rest).key()); } },
        { u"hold"_s, [&] { holdOn(rest); } },
        { u"finger"_s, [&] { touch(rest, false); } },
        { u"cancelled"_s, [&] { touch(rest, true); } },
        { u"wheel"_s, [&] { hands::wheel(container.get(), { 100, 200 }, {}, { 0, rest.toInt() }); } },
        { u"returns"_s, [&] { comeBack(); } },
        // What a reader does, to a field.
        { u"reader-writes"_s, [&] { field()->editableTextInterface()->insertText(number(1), word(rest, 2)); } },
        { u"reader-deletes"_s, [&] { field()->editableTextInterface()->deleteText(number(1), number(2)); } },
        { u"reader-replaces"_s, [&] { field()->editableTextInterface()->replaceText(number(1), number(2), word(rest, 3)); } },
        { u"reader-selects"_s, [&] { field()->textInterface()->setSelection(number(3), number(1), number(2)); } },
        { u"reader-adds"_s, [&] { field()->textInterface()->addSelection(number(1), number(2)); } },
        { u"reader-unselects"_s, [&] { field()->textInterface()->removeSelection(number(1)); } },
        { u"reader-moves"_s, [&] { field()->textInterface()->setCursorPosition(number(1)); } },
        { u"reader-shows"_s, [&] { field()->textInterface()->scrollToSubstring(number(1), number(2)); } },
        { u"reader-feels"_s, [&] {
            const QPoint at = container->mapToGlobal(frame(visible(latin(rest))).center());
            for (auto *found = QAccessible::queryAccessibleInterface(container.get()); found; found = found->childAt(at.x(), at.y()))
                Heard::events << u"under the finger "_s + found->text(QAccessible::Name);
        } },
        // What the host does.
        { u"resize"_s, [&] { container->resize(word(rest, 0).toInt(), word(rest, 1).toInt()); } },
        { u"focus"_s, [&] { hands::there(visible(latin(rest))); visible(latin(rest))->setFocus(Qt::TabFocusReason); } },
        { u"dialog"_s, [&] { QDialog above(&page); above.open(); EXPECT_SOON(above.isActiveWindow()); above.close(); EXPECT_SOON(page.isActiveWindow()); } },
        { u"covered"_s, [&] { QWidget other; other.show(); other.activateWindow(); EXPECT_SOON(other.isActiveWindow()); page.activateWindow(); EXPECT_SOON(page.isActiveWindow()); } },
        { u"hide"_s, [&] { container->hide(); } },
        { u"show"_s, [&] { container->show(); } },
        { u"disable"_s, [&] { page.setEnabled(false); } },
        { u"enable"_s, [&] { page.setEnabled(true); } },
        { u"sheet"_s, [&] { qApp->setStyleSheet(rest); } },
        { u"family"_s, [&] { QApplication::setFont(QFont(rest)); } },
        { u"margins"_s, [&] { container->setContentsMargins(0, word(rest, 0).toInt(), 0, word(rest, 1).toInt()); } },
        { u"mirror"_s, [&] { container->setLayoutDirection(rest == u"on" ? mirror : GetParam()); } },
        { u"look"_s, [&] { QApplication::setStyle(new ParloquinTest::PacedStyle(number(0))); } }, // %, of motion
        // What is waited for.
        { u"sent"_s, [&] { EXPECT_SOON(server.requests().size() >= m_sent + rest.toUInt()); } },
        { u"told"_s, [&] { EXPECT_TRUE(waitForOutcomes(static_cast<int>(m_told) + rest.toInt())); } },
        { u"seen"_s, [&] { EXPECT_TRUE(seen(latin(rest))); } },
        { u"reads"_s, [&] { EXPECT_SOON(visible("lblEmpty") && textOf(visible("lblEmpty")) == rest); } },
        { u"opened"_s, [&] { EXPECT_SOON(!handlerArguments().isEmpty()); } },
        { u"at"_s, [&] { EXPECT_SOON(visible(latin(rest)) && visible(latin(rest))->hasFocus()); } },
    };
    const auto found = commands.find(name);
    ASSERT_NE(found, commands.end()) << name.toStdString();
    found->second();
}
// clang-format on

void Transcript::again()
{
    container.reset();
    QCoreApplication::processEvents();
    Heard::events.clear(); // of the one before
    present(&page);
    EXPECT_SOON(server.requests().size() > m_sent);
}

void Transcript::walk(const std::string &file)
{
    m_isBrief = true;
    steps.clear();
    m_state.clear(); // each begins alike, alone or behind the others
    for (const auto &[head, text] : transcript::read(file)) {
        const QString line = QString::fromStdString(head).mid(2);
        if (head.starts_with("# ")) {
            steps.push_back({ head, "\n" });
            continue;
        }
        step(line, [&] {
            m_finger = std::make_unique<hands::Finger>(); // quick within a step alone
            for (const QString &each : line.split(u" ; "_s))
                command(each.section(u' ', 0, 0), each.section(u' ', 1));
        });
    }
    if (!HasFailure()) // of a step, which says more
        expectApproved(file);
}

TEST_P(Transcript, OfEachWalkIsTheApprovedOne)
{
    open();
    proceed();
    const QDir walks(QStringLiteral(APPROVED "/walks"));
    for (const QString &file : walks.entryList({ qEnvironmentVariable("WALK", u"*.txt"_s) }))
        walk(walks.filePath(file).toStdString());
}
