#include "sandbox/messenger/MessengerWindow.h"

#include "sandbox/messenger/Panels.h"
#include "sandbox/messenger/TapButton.h"

#include <QtCore/QTimer>
#include <QtGui/QIcon>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QVBoxLayout>

#include <chrono>

namespace messenger {
namespace {
using namespace std::chrono_literals;
constexpr int margin = 20; // px, as all below
constexpr int barHeight = 48;
constexpr int headerHeight = 64;
constexpr int sheetHeight = 248; // with a message of three lines
constexpr int iconSize = 21;
/// Long enough to see that it went, short enough not to be in the way.
constexpr auto farewell = 1200ms;

const QColor ink(0x11, 0x13, 0x22);
const QColor quietInk(0x4f, 0x5a, 0x55);
const QColor hairline(0xd5, 0xdb, 0xd8);
const QColor faultInk(0xb0, 0x1e, 0x1e);

QLabel *makeLabel(
    const QString &text, int size, QFont::Weight weight, const QColor &colour, QWidget *parent)
{
    auto *label = new Line(text, parent);
    label->setTextFormat(Qt::PlainText); // names and texts come from outside
    // The page decides the side; a name may be of another direction than the page.
    label->setAlignment((label->isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft)
        | Qt::AlignAbsolute | Qt::AlignVCenter);
    auto font = label->font();
    font.setPixelSize(size);
    font.setWeight(weight);
    label->setFont(font);
    auto colours = label->palette();
    colours.setColor(QPalette::WindowText, colour);
    label->setPalette(colours);
    return label;
}
}

MessengerWindow::MessengerWindow(const DeepLink &link, const QString &service)
    : m_link(link)
    , m_look(AppLook::of(link.app))
    , m_sender(service)
{
    setWindowTitle(m_look.title);
    setWindowIcon(QIcon(m_look.icon(64, 1)));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeBar());
    column->addWidget(makeHeader());
    column->addWidget(makeChat(), 1);
    column->addWidget(makeSheet());

    connect(btnSend, &TapButton::clicked, this, &MessengerWindow::send);
    connect(btnClose, &TapButton::clicked, this, &QWidget::close);
    connect(&m_sender, &MessageSender::sent, this, &MessengerWindow::onSent);
    connect(&m_sender, &MessageSender::failed, this, &MessengerWindow::onFailed);
    btnSend->setFocus(Qt::OtherFocusReason);
}

QWidget *MessengerWindow::makeBar()
{
    auto *bar = new Panel(m_look.colour, this);
    bar->setFixedHeight(barHeight);
    btnClose = new TapButton(TapButton::Kind::plain, m_look, tr("Close"), bar);
    btnClose->setObjectName(QStringLiteral("btnClose"));
    auto *icon = new QLabel(bar);
    icon->setPixmap(m_look.icon(iconSize, devicePixelRatioF()));
    auto *title = makeLabel(m_look.title, 17, QFont::Bold, m_look.ink, bar);

    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(btnClose);
    row->addStretch(1);
    row->addWidget(icon);
    row->addSpacing(9);
    row->addWidget(title);
    row->addStretch(1);
    // As wide as the button, so that the title stands in the middle of the bar.
    row->addSpacing(btnClose->sizeHint().width());
    return bar;
}

QWidget *MessengerWindow::makeHeader()
{
    auto *header = new Panel(Qt::white, this);
    header->setFixedHeight(headerHeight);
    header->setLine(Qt::BottomEdge, hairline);
    auto *names = new QVBoxLayout;
    names->setSpacing(1);
    names->setContentsMargins(0, 0, 0, 3); // the lines look centred when they stand a little high
    names->addStretch(1);
    auto *name = makeLabel(m_link.recipient, 16, QFont::DemiBold, ink, header);
    name->setFixedHeight(20); // also with the taller lines of a font for Arabic
    names->addWidget(name);
    auto *origin =
        makeLabel(tr("Opened by a link from another app"), 13, QFont::Normal, quietInk, header);
    origin->setWordWrap(true);
    names->addWidget(origin);
    names->addStretch(1);
    auto *row = new QHBoxLayout(header);
    row->setContentsMargins(margin, 0, margin, 0);
    row->setSpacing(12);
    row->addWidget(new TickDisc(header));
    row->addLayout(names, 1);
    return header;
}

QWidget *MessengerWindow::makeChat()
{
    auto *chat = new Panel(m_look.quietTint(0.062), this);
    chat->setShadeAtBottom(12);
    m_lblEmpty = makeLabel({}, 15, QFont::Normal, quietInk, chat);
    m_lblEmpty->setTextFormat(Qt::RichText); // for the distance of the lines
    m_lblEmpty->setText(
        QStringLiteral("<p style=\"line-height:21px;margin:0\">%1<br>%2</p>")
            .arg(tr("No messages yet."), tr("Tap Send, then go back to the other app.")));
    m_lblEmpty->setWordWrap(true);
    m_lblEmpty->setAlignment(Qt::AlignCenter);
    m_bubble = new Bubble(m_link.text, m_look.colour, m_look.colour, m_look.ink, chat);
    m_bubble->hide();
    m_lblState = makeLabel({}, 12, QFont::Medium, quietInk, chat);
    m_lblState->setObjectName(QStringLiteral("lblState"));
    m_lblState->setAlignment(Qt::AlignTrailing);
    m_lblState->hide();

    auto *column = new QVBoxLayout(chat);
    column->setContentsMargins(margin, 24, margin, margin);
    column->setSpacing(6);
    column->addWidget(
        new Pill(tr("Stand-in messenger, for development"), m_look.quietTint(0.145), chat), 0,
        Qt::AlignHCenter);
    column->addStretch(1);
    column->addWidget(m_lblEmpty);
    column->addStretch(1);
    auto *own = new QHBoxLayout; // one's own messages keep off the other side
    own->addSpacing(2 * margin);
    own->addWidget(m_bubble, 1);
    column->addLayout(own);
    column->addWidget(m_lblState);
    return chat;
}

QWidget *MessengerWindow::makeSheet()
{
    auto *sheet = new Panel(Qt::white, this);
    sheet->setMinimumHeight(sheetHeight);
    sheet->setLine(Qt::TopEdge, hairline);
    m_lblError = makeLabel({}, 13, QFont::Medium, faultInk, sheet);
    m_lblError->setObjectName(QStringLiteral("lblError"));
    m_lblError->setWordWrap(true);
    m_lblError->hide();
    btnSend = new TapButton(TapButton::Kind::solid, m_look, tr("Send"), sheet);
    btnSend->setObjectName(QStringLiteral("btnSend"));

    auto *column = new QVBoxLayout(sheet);
    column->setContentsMargins(margin, 18, margin, 29);
    column->setSpacing(0);
    column->addWidget(makeLabel(tr("Prepared message"), 12, QFont::DemiBold, quietInk, sheet));
    column->addSpacing(9);
    column->addWidget(new Bubble(m_link.text, m_look.tint(0.09), m_look.tint(0.26), ink, sheet));
    column->addSpacing(12);
    column->addWidget(m_lblError);
    column->addStretch(1);
    column->addSpacing(12);
    column->addWidget(btnSend);
    return sheet;
}

void MessengerWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        btnSend->click();
}

void MessengerWindow::send()
{
    setFocus(Qt::OtherFocusReason); // else it would go on, as by a Tab, and Close would ring
    btnSend->setEnabled(false); // one tap, one message
    m_lblError->hide();
    m_lblEmpty->hide();
    m_bubble->show();
    m_lblState->setText(tr("Sending"));
    m_lblState->show();
    m_sender.send(m_link.app, m_link.text);
}

void MessengerWindow::onSent()
{
    m_lblState->setText(tr("Sent") + QStringLiteral(" \u2713"));
    QTimer::singleShot(farewell, this, &QWidget::close);
}

void MessengerWindow::onFailed(const QString &complaint)
{
    m_bubble->hide();
    m_lblState->hide();
    m_lblEmpty->show();
    m_lblError->setText(foldable(complaint, m_lblError->font()));
    m_lblError->setAccessibleName(complaint); // its words whole
    m_lblError->show();
    btnSend->setEnabled(true);
    btnSend->setFocus(Qt::OtherFocusReason);
}

}
