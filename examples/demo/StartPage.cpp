#include "StartPage.h"

#include "BackEnd.h"
#include "Card.h"
#include "HostButton.h"
#include "Look.h"
#include "ScrollPage.h"
#include "SvgPicture.h"
#include "Text.h"

#include <QtCore/QLocale>
#include <QtGui/QPainter>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QVBoxLayout>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace demo {

namespace {

/// A filled circle, with a text in it or without.
class Disc : public QWidget {
public:
    Disc(int diameter, const QColor &color, QString text, QWidget *parent)
        : QWidget(parent)
        , m_text(std::move(text))
    {
        setFixedSize(diameter, diameter);
        setColor(color);
        QFont wanted = font();
        wanted.setPixelSize(14);
        wanted.setWeight(QFont::DemiBold);
        setFont(wanted);
    }

    void setColor(const QColor &color)
    {
        m_color = color;
        update();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_color);
        painter.drawEllipse(rect());
        painter.setPen(Look::blue);
        painter.drawText(rect(), Qt::AlignCenter, m_text);
    }

private:
    QColor m_color;
    QString m_text;
};

} // namespace

StartPage::StartPage(BackEnd &backEnd, QWidget *parent)
    : QWidget(parent)
    , m_backEnd(backEnd)
    , m_verify(new HostButton(
          HostButton::Kind::filled, tr("Verify my number"), QStringLiteral("btnVerify"), this))
{
    setObjectName(QStringLiteral("pageStart"));

    auto *hero = new SvgPicture(this);
    hero->show(QStringLiteral("hero"));
    auto *title = new Text({ 28, QFont::Bold, Look::ink, 36, true, -0.4 }, this);
    title->setText(tr("Is this number yours?"));
    auto *words = new Text({ 16, QFont::Normal, Look::secondInk, 22, true }, this);
    words->setText(tr("One message from your phone proves it.\nNo password, about half a minute."));

    auto *above = new QVBoxLayout;
    above->setContentsMargins(Look::pageMargin, 0, Look::pageMargin, 0);
    above->setSpacing(0);
    above->addSpacerItem(new QSpacerItem(0, 44, QSizePolicy::Minimum, QSizePolicy::Maximum));
    above->addWidget(hero);
    above->addSpacerItem(new QSpacerItem(0, 23, QSizePolicy::Minimum, QSizePolicy::Maximum));
    above->addWidget(title);
    above->addSpacing(8);
    above->addWidget(words);
    above->addSpacing(12);
    above->addSpacerItem(new QSpacerItem(0, 24, QSizePolicy::Minimum, QSizePolicy::Maximum));
    above->addWidget(makeSteps());
    above->addStretch(1);

    auto *below = new QVBoxLayout;
    const int side = Look::pageMargin - HostButton::ringMargin;
    below->setContentsMargins(side, 0, side, 0);
    below->setSpacing(0);
    below->addWidget(m_verify);
    below->addSpacing(10);
    below->addWidget(makeStatus());
    below->addSpacerItem(new QSpacerItem(0, 49, QSizePolicy::Minimum, QSizePolicy::Maximum));

    auto *page = new QVBoxLayout(this);
    page->setContentsMargins(0, 0, 0, 0);
    page->setSpacing(0);
    page->addWidget(new ScrollPage(above, this), 1);
    page->addLayout(below);

    connect(m_verify, &QAbstractButton::clicked, this, &StartPage::verifyTapped);
    connect(&m_poll, &QTimer::timeout, this, &StartPage::askHealth);
    m_poll.setInterval(1s);
}

QWidget *StartPage::makeSteps()
{
    const struct {
        QString title;
        QString words;
    } steps[] = {
        { tr("Choose a messaging app"), tr("Or ask for a code by SMS") },
        { tr("Send the prepared message"), tr("It opens ready, just tap Send") },
        { tr("Come back here"), tr("Your number is confirmed at once") },
    };

    auto *card = new Card(64, this);
    int number = 0;
    for (const auto &step : steps) {
        auto *row = new QWidget;
        auto *title = new Text({ 16, QFont::DemiBold, Look::ink, 22 }, row);
        title->setText(step.title);
        auto *words = new Text({ 14, QFont::Normal, Look::secondInk, 20 }, row);
        words->setText(step.words);

        auto *texts = new QVBoxLayout;
        texts->setSpacing(0);
        texts->addStretch(1);
        texts->addWidget(title);
        texts->addWidget(words);
        texts->addStretch(1);
        auto *line = new QHBoxLayout(row);
        line->setContentsMargins(20, 4, 20, 4);
        line->setSpacing(16);
        line->addWidget(new Disc(28, Look::softBlue, QLocale().toString(++number), row));
        line->addLayout(texts, 1);
        card->addRow(row, 80);
    }
    return card;
}

QWidget *StartPage::makeStatus()
{
    auto *row = new QWidget(this);
    m_dot = new Disc(8, Look::waiting, {}, row);
    m_dot->setObjectName(QStringLiteral("imgStatus"));
    m_status = new Text({ 13, QFont::Normal, Look::secondInk, 22 }, row);
    m_status->setObjectName(QStringLiteral("lblStatus"));
    m_status->setText(tr("Looking for the sandbox"));

    auto *line = new QHBoxLayout(row);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(8);
    line->addStretch(1);
    line->addWidget(m_dot);
    line->addWidget(m_status);
    line->addStretch(1);
    return row;
}

void StartPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    askHealth();
    m_poll.start();
}

void StartPage::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    m_poll.stop();
}

void StartPage::askHealth()
{
    if (std::exchange(m_asking, true))
        return;
    m_backEnd.askHealth([this](bool running) {
        m_asking = false;
        showHealth(running);
    });
}

void StartPage::showHealth(bool running)
{
    static_cast<Disc *>(m_dot)->setColor(running ? Look::success : Look::fault);
    m_status->setText(
        running ? tr("Sandbox is running") : tr("Sandbox is not running, start it with ./demo"));
    // Without a service there is nothing to verify against.
    m_verify->setEnabled(running);
}

} // namespace demo
