#include "Recorder.h"

#include <QtCore/QDir>
#include <QtGui/QPixmap>
#include <QtWidgets/QWidget>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace demo {

namespace {

constexpr auto pace = 80ms; // between two frames
constexpr qint64 longest = 1500; // ms; nobody wants to watch a slow machine think
constexpr int width = 260; // px

} // namespace

Recorder::Recorder(QWidget &window, QString folder)
    : m_window(window)
    , m_folder(std::move(folder))
{
    QObject::connect(&m_timer, &QTimer::timeout, &m_window, [this] { look(); });
    m_timer.start(pace);
}

Recorder::~Recorder() { keep(); }

void Recorder::look()
{
    QImage now = m_window.grab().toImage().scaledToWidth(width, Qt::SmoothTransformation);
    if (now == m_frame)
        return;
    keep();
    m_frame = std::move(now);
    m_since.start();
}

void Recorder::keep()
{
    if (m_frame.isNull())
        return;
    const qint64 stood = std::clamp<qint64>(m_since.elapsed(), pace.count(), longest);
    m_frame.save(QDir(m_folder).filePath(
        QStringLiteral("%1-%2.png").arg(++m_number, 5, 10, QLatin1Char('0')).arg(stood)));
}

} // namespace demo
