#pragma once

#include "Parloquin/Toolkit/NavigationController.h"
#include "Parloquin/Toolkit/Screen.h"
#include "Screens/Container.h"
#include "support/ByName.h"
#include "support/Hands.h"

/// An answer that goes well with this result.
QByteArray ok(const QByteArray &result);
/// The service hangs up instead of answering.
inline const QByteArray dropped;
/// Of a country's row.
inline QString titleOf(const QWidget *cell)
{
    return cell->findChild<QWidget *>(QStringLiteral("lblTitle"))->property("text").toString();
}

/// \brief A phone of 390 x 844 with a status area of 44, phone entry open on an empty root screen.
class SmsRoad : public ContainerTest {
public:
    /// As an input method does.
    static void type(const QString &text) { hands::commit(text); }
    static void paste(const QString &text);

    /// What a call, as "send-otp", brings from now on.
    void on(const std::string &call, const QByteArray &answer);
    /// The same where the server has been paused.
    void release(const std::string &call, const QByteArray &answer);
    /// Plain bodies received for a call, oldest first.
    [[nodiscard]] QList<QJsonObject> bodies(const std::string &call) const;

    [[nodiscard]] parloquin::NavigationController &navigation() const;
    template <class S> S *top() const
    {
        return dynamic_cast<S *>(navigation().topViewController());
    }
    /// A part of the screen on top, or of its bar, by its name.
    template <class W = QWidget> W *part(const char *name) const
    {
        W *here = top<parloquin::Screen>()->template findChild<W *>(QLatin1String(name));
        W *const found = here ? here : find<W>(name);
        [&] { ASSERT_NE(found, nullptr) << name; }(); // ends the case
        return found;
    }
    QString text(const char *name) const { return part(name)->property("text").toString(); }
    /// Of a part, in the container.
    QRect frame(const char *name) const { return ContainerTest::frame(part(name)); }

    void tap(const char *name) const { hands::click(part(name)); }
    template <class S> [[nodiscard]] bool arrivesAt() const
    {
        return QTest::qWaitFor([this] { return top<S>() != nullptr; });
    }
    [[nodiscard]] bool isTold() const { return waitForOutcomes(1); }
    [[nodiscard]] QStringList told() const { return delegate->outcomes(); }
    [[nodiscard]] bool isAtRest() const { return container->property("atRest").toBool(); }
    [[nodiscard]] bool rests() const
    {
        return QTest::qWaitFor([this] { return isAtRest(); });
    }

    // The steps of the road, each by hand and eye.
    void openPicker();
    void choose(const QString &title);
    void pick(const QString &title); ///< both
    void enterNumber(const QString &number);
    void goToCodeEntry(); // Norway, 41234567, reference "ref-1"
    /// Texts of the code's boxes, the focused one in brackets.
    QString boxes() const;

protected:
    void SetUp() override;
};
