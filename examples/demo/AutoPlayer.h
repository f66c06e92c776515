#pragma once

#include <QtCore/QObject>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtGui/QImage>

#include <chrono>
#include <functional>

class QWidget;

namespace demo {

class DemoWindow;

/// \brief Plays both roads by itself, as a user would: with a mouse, a wheel and keys.
///
/// Finds everything by objectName and texts, knows no type of the kit, and so shows how any host
/// may be automated. Prints a line a step, saves a picture of every screen, and stops at the first
/// step that does not come true within its deadline. Main thread only.
class AutoPlayer : public QObject {
    Q_OBJECT
public:
    /// \param pictures folder for the pictures; must exist
    /// \param leisure how long a screen stands before the next tap, for someone who watches
    AutoPlayer(DemoWindow &window, QString pictures, std::chrono::milliseconds leisure);

    /// \brief Plays; returns when done, turning the event loop meanwhile.
    /// \return true once the back end has confirmed a session on each road
    [[nodiscard]] bool play();

    /// \brief How long a step may take; heeded by the one under way too. The messenger, which is a
    /// program to be started, may take twice as long.
    void setPatience(std::chrono::milliseconds patience) { m_patience = patience; }

private:
    [[nodiscard]] bool playMessaging();
    [[nodiscard]] bool playSms();
    [[nodiscard]] bool presentKit();
    [[nodiscard]] bool openKit(const QString &button);
    [[nodiscard]] bool pickCountry();
    [[nodiscard]] bool typeCode(const QString &code);
    [[nodiscard]] bool takeCodeFromMessage(const QString &code);
    [[nodiscard]] bool askForCode(QString &code);
    [[nodiscard]] bool outcome(QString &state);
    [[nodiscard]] bool refused();
    [[nodiscard]] bool confirmed(const QString &name);

    // The player's eyes and hands. Each that returns a bool names the step at fault when false.
    using Condition = std::function<bool()>;
    [[nodiscard]] bool waitFor(const QString &what, const Condition &come, int patiences = 1);
    [[nodiscard]] bool waitQuietlyFor(
        const QString &what, const Condition &come, int patiences = 1);
    [[nodiscard]] bool see(const QString &name, QWidget *&found);
    /// Waits until it may be tapped, taps, and waits for what comes of it.
    [[nodiscard]] bool tap(const QString &name, const QString &effect, const Condition &come);
    void turnWheel(QWidget *target, int eighths);
    /// Into what has the caret; waits until it stands there.
    [[nodiscard]] bool type(const QString &name, const QString &text);
    /// Once for each name: a road walked again is not pictured again.
    [[nodiscard]] bool picture(const QString &name);
    [[nodiscard]] bool isAtRest() const;
    [[nodiscard]] bool settled();
    [[nodiscard]] bool iconsShown() const;
    [[nodiscard]] bool fail(const QString &why);
    void step(const QString &words) const;

    [[nodiscard]] QWidget *visible(const QString &name) const;
    [[nodiscard]] QString toldBy(const QString &name) const; // empty where it is not to be seen
    [[nodiscard]] Condition shown(const QString &name) const;
    [[nodiscard]] Condition focused(const QString &name) const;
    [[nodiscard]] QWidget *visibleWithText(
        const QString &cell, const QString &part, const QString &text) const;
    [[nodiscard]] QPoint middleOf(const QWidget *widget) const;
    [[nodiscard]] QImage frame() const;

    DemoWindow &m_window;
    QString m_pictures;
    std::chrono::milliseconds m_leisure;
    std::chrono::milliseconds m_patience { 30000 }; // busy machines are slow
    int m_number = 0; // of the next picture
    bool m_left = false; // another program came to the front
    QImage m_frame; // the last one looked at
    QSet<QString> m_pictured;
    QSet<QString> m_sessions; // confirmed so far
};

} // namespace demo
