#pragma once

#include <QtWidgets/QMainWindow>

class ParloquinViewController;
class QLabel;
class QStackedWidget;
class QTabWidget;

/// An app with the kit in each of the three places that a window of widgets has for it.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    MainWindow();

    enum class Place { dialog, page, tab };
    void verify(Place place);

private:
    ParloquinViewController *makeKit(QWidget *place, const std::function<void()> &close);

    QTabWidget *m_tabs;
    QStackedWidget *m_pages; // the account, and the kit over it
    QLabel *m_state;
};
