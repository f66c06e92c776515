#pragma once

#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

namespace demo {

class BackEnd;
class HostButton;
class Text;

/// \brief What the user sees first: one thing to do, what will happen, and whether the sandbox
/// runs.
class StartPage : public QWidget {
    Q_OBJECT
public:
    explicit StartPage(BackEnd &backEnd, QWidget *parent = nullptr);

Q_SIGNALS:
    void verifyTapped();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QWidget *makeSteps();
    QWidget *makeStatus();
    void askHealth();
    void showHealth(bool running);

    BackEnd &m_backEnd;
    HostButton *m_verify;
    QWidget *m_dot;
    Text *m_status;
    QTimer m_poll;
    bool m_asking = false;
};

} // namespace demo
