#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QString>
#include <QtCore/QTimer>
#include <QtGui/QImage>

class QWidget;

namespace demo {

/// \brief Keeps what a window shows as frames, each a picture named by how long it stood.
///
/// `00042-300.png` is the 42nd frame and stood for 300 ms. Main thread only; until it goes.
class Recorder {
public:
    /// \param folder must exist
    Recorder(QWidget &window, QString folder);
    ~Recorder();
    Recorder(const Recorder &) = delete;
    Recorder &operator=(const Recorder &) = delete;

private:
    void look();
    void keep();

    QWidget &m_window;
    QString m_folder;
    QTimer m_timer;
    QImage m_frame; // not kept yet
    QElapsedTimer m_since; // it is shown
    int m_number = 0;
};

} // namespace demo
