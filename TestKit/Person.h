#pragma once

#include <QtCore/QPointer>
#include <QtCore/QString>

#include <chrono>
#include <functional>

class QWidget;
class ParloquinViewController;

namespace ParloquinTest {

class Sandbox;

/// \brief Someone who verifies a number: taps and types at the container's window.
///
/// Acts on one container, in a window of its own or within the app's, that is shown by the first
/// step at the latest. Each step waits until the screens are at rest, acts as the device would, by
/// the window, and waits for its effect. A step that cannot be done, or whose effect does not come,
/// says on standard error what was missing, what is on screen and what the sandbox got, and returns
/// false. Main thread only; steps turn the event loop.
/// \since 1.1
class Person {
public:
    /// \param sandbox borrowed; outlives this
    /// \param container borrowed; may go or hide at any time, as an app may do by an outcome
    Person(Sandbox &sandbox, QWidget *container);

    /// \brief Picks an app, sends its message and comes back: no app is started for it.
    ///
    /// Waits until the service was asked for the outcome.
    /// \param app as its row is labelled, or the end of that: `Parlo`
    bool sendsFrom(const QString &app);

    /// \brief Goes to the number's screen, picks the country, types the number, asks for the code.
    ///
    /// Waits for the code's screen.
    /// \param number as it is typed, without the country's code
    /// \param phoneCode of the country, with its plus
    bool asksForCode(const QString &number, const QString &phoneCode = QStringLiteral("+32"));

    /// \brief Types the code and has it checked. Waits for the answer, whatever it says.
    bool types(const QString &code);

    /// \brief Goes back a screen.
    bool goesBack();

    /// \brief Closes the kit by its button.
    bool closes();

    /// The screens of the kit; none: no screen is at rest.
    enum class Screen { none, apps, number, countries, code };
    /// \return which screen is at rest; none while screens slide or wait, and before they show
    [[nodiscard]] Screen screen() const;

    /// \brief How long to wait for one effect; 10 seconds by default.
    void setPatience(std::chrono::milliseconds patience);

private:
    using Condition = std::function<bool()>;

    [[nodiscard]] bool isAtRest() const;
    [[nodiscard]] bool hasSettled() const; // what was under way, if need be with the kit
    [[nodiscard]] QWidget *visible(const QString &name) const;
    [[nodiscard]] QWidget *row(
        const QString &cell, const QString &label, const QString &text) const;
    [[nodiscard]] bool waits(const QString &what, const Condition &condition) const;
    [[nodiscard]] bool sees(Screen screen, const QString &what) const;
    [[nodiscard]] bool answered(
        const QString &call, int before, const QString &what, const Condition &effect) const;
    bool taps(const QString &name);
    bool taps(QWidget *widget);
    bool picksCountry(const QString &phoneCode);
    bool keys(const QString &text);
    bool fail(const QString &what) const;

    Sandbox &m_sandbox;
    QPointer<QWidget> m_container;
    std::chrono::milliseconds m_patience = std::chrono::seconds(10);
};

/// \brief Switches motion off, for the whole application: screens are there at once.
///
/// Puts a style in front of the application's own that answers `SH_Widget_Animation_Duration` by 0,
/// which the kit heeds, as Qt's own widgets do. Call it after the app has set its style.
/// \since 1.1
void switchMotionOff();

} // namespace ParloquinTest
