#include "OutcomePage.h"

#include "Card.h"
#include "HostButton.h"
#include "Look.h"
#include "ScrollPage.h"
#include "SvgPicture.h"
#include "Text.h"

#include <QtCore/QLocale>
#include <QtCore/QTimer>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>

using namespace std::chrono_literals;

namespace demo {

namespace {

const TextStyle caption { 14, QFont::Normal, Look::secondInk, 18 };
const TextStyle value { 16, QFont::Normal, Look::ink, 22 };

/// Whole, on two lines that break at a hyphen: an id of five groups after its third.
QString onTwoLines(const QString &sessionId)
{
    QStringList groups = sessionId.split(QLatin1Char('-'));
    if (groups.size() != 5)
        return sessionId;
    return groups.mid(0, 3).join(QLatin1Char('-')) + QStringLiteral("-\n")
        + groups.mid(3).join(QLatin1Char('-'));
}

QString lasting(std::chrono::seconds taken)
{
    const int seconds = std::max(1, int(taken.count()));
    if (seconds == 1)
        return OutcomePage::tr("1 second");
    if (seconds < 60)
        return OutcomePage::tr("%1 seconds").arg(QLocale().toString(seconds));
    return OutcomePage::tr("%1 min %2 s")
        .arg(QLocale().toString(seconds / 60), QLocale().toString(seconds % 60));
}

} // namespace

OutcomePage::OutcomePage(QWidget *parent)
    : QWidget(parent)
    , m_picture(new SvgPicture(this))
    , m_title(new Text({ 28, QFont::Bold, Look::ink, 36, true, -0.4 }, this))
    , m_words(new Text({ 16, QFont::Normal, Look::secondInk, 22, true }, this))
    , m_cardPlace(new QWidget(this))
    , m_first(new HostButton(HostButton::Kind::filled, tr("Done"), QStringLiteral("btnDone"), this))
    , m_second(new HostButton(
          HostButton::Kind::text, tr("Verify again"), QStringLiteral("btnAgain"), this))
{
    setObjectName(QStringLiteral("pageOutcome"));
    setAutoFillBackground(true);
    m_title->setObjectName(QStringLiteral("lblOutcome"));
    m_words->setObjectName(QStringLiteral("lblOutcomeWords"));
    m_picture->setObjectName(QStringLiteral("imgOutcome"));
    m_cardPlace->setObjectName(QStringLiteral("cardOutcome"));
    auto *place = new QVBoxLayout(m_cardPlace);
    place->setContentsMargins(0, 0, 0, 0);

    auto *above = new QVBoxLayout;
    above->setContentsMargins(Look::pageMargin, 0, Look::pageMargin, 0);
    above->setSpacing(0);
    above->addSpacerItem(new QSpacerItem(0, 68, QSizePolicy::Minimum, QSizePolicy::Maximum));
    above->addWidget(m_picture);
    above->addSpacerItem(new QSpacerItem(0, 27, QSizePolicy::Minimum, QSizePolicy::Maximum));
    above->addWidget(m_title);
    above->addSpacing(8);
    above->addWidget(m_words);
    above->addSpacing(12);
    above->addSpacerItem(new QSpacerItem(0, 23, QSizePolicy::Minimum, QSizePolicy::Maximum));
    above->addWidget(m_cardPlace);
    above->addStretch(1);

    auto *below = new QVBoxLayout;
    const int side = Look::pageMargin - HostButton::ringMargin;
    below->setContentsMargins(side, 0, side, 0);
    below->setSpacing(2);
    below->addWidget(m_first);
    below->addWidget(m_second, 0, Qt::AlignHCenter);
    below->addSpacerItem(new QSpacerItem(0, 27, QSizePolicy::Minimum, QSizePolicy::Maximum));

    auto *page = new QVBoxLayout(this);
    page->setContentsMargins(0, 0, 0, 0);
    page->setSpacing(0);
    page->addWidget(new ScrollPage(above, this), 1);
    page->addSpacerItem(new QSpacerItem(0, 12, QSizePolicy::Minimum, QSizePolicy::Maximum));
    page->addLayout(below);

    // After a success leaving is the first choice, after a failure another try.
    connect(m_first, &QAbstractButton::clicked, this, [this] {
        m_state == QStringLiteral("failed") ? Q_EMIT againTapped() : Q_EMIT doneTapped();
    });
    connect(m_second, &QAbstractButton::clicked, this, [this] {
        m_state == QStringLiteral("failed") ? Q_EMIT doneTapped() : Q_EMIT againTapped();
    });
}

void OutcomePage::show(const QString &state, const QString &title, const QString &words)
{
    m_state = state;
    m_picture->show(state);
    m_title->setText(title);
    m_words->setText(words);
    const bool failed = state == QStringLiteral("failed");
    const auto name = [](HostButton *button, const QString &text) { button->setTitle(text, text); };
    name(m_first, failed ? tr("Try again") : tr("Done"));
    name(m_second, failed ? tr("Not now") : tr("Verify again"));
    m_first->setAccessibleDescription(title + QLatin1Char(' ') + words); // read with it
    m_first->setFocus();
    delete std::exchange(m_card, nullptr);
}

void OutcomePage::showAsking()
{
    show(QStringLiteral("asking"), tr("Almost there"),
        tr("The back end is confirming this session."));
}

void OutcomePage::showVerified(const QString &sessionId, std::chrono::seconds taken)
{
    show(QStringLiteral("verified"), tr("Number verified"),
        tr("The back end has confirmed this session."));
    fill({ { tr("Session id"), sessionId }, { tr("Confirmed by"), tr("Back end") },
        { tr("Time taken"), lasting(taken) } });
}

void OutcomePage::showNotConfirmed(const QString &fault, std::chrono::seconds taken)
{
    show(QStringLiteral("failed"), tr("Not confirmed"), fault);
    fill({ { tr("Asked"), tr("Back end") }, { tr("Time taken"), lasting(taken) } });
}

void OutcomePage::showFailed(ParloquinSignals::Error error, std::chrono::seconds taken)
{
    QString title = tr("Not verified");
    QString words;
    QString reason;
    switch (error) {
    case ParloquinSignals::AuthorizationError:
        words = tr("The service has not received your message,\nor the code was not right.");
        reason = tr("Not authorised");
        break;
    case ParloquinSignals::ServerError:
        title = tr("No answer");
        words = tr("The verification service could not be asked.\nIs this device connected?");
        reason = tr("Service error");
        break;
    case ParloquinSignals::UrlSchemeError:
        words = tr("The messaging app could not be opened.");
        reason = tr("App not reachable");
        break;
    }
    show(QStringLiteral("failed"), title, words);
    fill({ { tr("Reason"), reason }, { tr("Time taken"), lasting(taken) } });
}

void OutcomePage::fill(const QList<std::pair<QString, QString>> &rows)
{
    auto *card = new Card(20);
    for (const auto &[name, text] : rows) {
        if (name == tr("Session id")) {
            card->addRow(makeSessionRow(text), 105);
            continue;
        }
        auto *row = new QWidget;
        auto *label = new Text(caption, row);
        label->setText(name);
        auto *words = new Text(value, row);
        words->setText(text);
        words->setTrailing(true);
        auto *line = new QHBoxLayout(row);
        line->setContentsMargins(20, 0, 20, 0);
        line->setSpacing(12);
        line->addWidget(label);
        line->addWidget(words, 1);
        card->addRow(row, 53);
    }
    m_card = card;
    m_cardPlace->layout()->addWidget(card);
}

QWidget *OutcomePage::makeSessionRow(const QString &sessionId)
{
    auto *row = new QWidget;
    auto *label = new Text(caption, row);
    label->setText(tr("Session id"));
    auto *id = new Text(value, row);
    id->setObjectName(QStringLiteral("lblSessionId"));
    id->setText(onTwoLines(sessionId));
    id->setAccessibleName(sessionId);
    auto *button =
        new HostButton(HostButton::Kind::text, tr("Copy"), QStringLiteral("btnCopy"), row);
    auto *shown = new QTimer(button);
    shown->setSingleShot(true);
    connect(
        shown, &QTimer::timeout, button, [button] { button->setTitle(tr("Copy"), tr("Copy")); });
    connect(button, &QAbstractButton::clicked, shown, [sessionId, button, shown] {
        QGuiApplication::clipboard()->setText(sessionId);
        // No word of another width: it would take room from the id, which breaks anew on a small
        // phone.
        button->setMinimumWidth(button->width());
        button->setTitle(QStringLiteral("\u2713"), tr("Copied"));
        shown->start(2s); // anew by each tap
    });

    auto *texts = new QVBoxLayout;
    texts->setSpacing(7);
    texts->addWidget(label);
    texts->addWidget(id);
    texts->setContentsMargins(0, 0, 0, 2);
    auto *line = new QHBoxLayout(row);
    // Spacings, not margins, at the sides: margins do not turn with the layout's direction.
    line->setContentsMargins(0, 18, 0, 16);
    line->setSpacing(0);
    line->addSpacing(20);
    line->addLayout(texts, 1);
    line->addSpacing(8);
    line->addWidget(button, 0, Qt::AlignBottom); // beside the id, not its caption
    line->addSpacing(12);
    return row;
}

} // namespace demo
