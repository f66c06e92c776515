#include "Parloquin/Platform/Telephony.h"

#include "Parloquin/Platform/Linux/MobileCountryCodes.h"
#include "Parloquin/Platform/Linux/ModemService.h"
#include "Parloquin/Platform/MainQueue.h"
#include "Parloquin/Platform/SerialQueue.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTimer>

#include <atomic>
#include <chrono>
#include <utility>

namespace parloquin {

namespace {

constexpr std::chrono::milliseconds connectPatience { 1500 };

/// One question under way: what its threads share.
struct Question {
    GLibPointer<GCancellable> cancelled { g_cancellable_new() };
    std::atomic<bool> isConnected { false };
};

} // namespace

struct Telephony::Private {
    std::optional<QString> isoCountryCode;
    std::unique_ptr<SerialQueue> queue;
    std::shared_ptr<Question> question; // while there is one
    std::unique_ptr<QTimer> patience; // of the question, for connecting
    bool asksAgain = false;
    std::unique_ptr<ModemService> service; // touched on the queue only

    void ask()
    {
        if (question) {
            asksAgain = true; // what changed in between may not be in its answer
            return;
        }
        if (!queue) {
            queue = std::make_unique<SerialQueue>(QStringLiteral("telephony"));
            qAddPostRoutine([] { shared().d->end(); });
        }
        question = std::make_shared<Question>();
        // Connecting knows no time limit of its own.
        patience = std::make_unique<QTimer>();
        patience->setSingleShot(true);
        QObject::connect(patience.get(), &QTimer::timeout, patience.get(), [asked = question] {
            if (!asked->isConnected)
                g_cancellable_cancel(asked->cancelled.get());
        });
        patience->start(connectPatience);
        queue->async([this, asked = question] {
            auto country = answer(*asked);
            onMain([this, asked, found = std::move(country)] {
                if (asked == question)
                    finish(found);
            });
        });
    }

    void finish(const std::optional<QString> &country)
    {
        isoCountryCode = country;
        patience.reset();
        question.reset();
        if (std::exchange(asksAgain, false))
            ask();
    }

    /// On the queue.
    std::optional<QString> answer(Question &asked)
    {
        if (!service)
            service = std::make_unique<ModemService>([] { onMain([] { shared().ask(); }); });
        const bool isConnected = service->connect(asked.cancelled.get());
        asked.isConnected = true;
        if (!isConnected)
            return std::nullopt;
        const auto identifier = service->operatorIdentifier(asked.cancelled.get());
        return identifier ? countryOfOperator(*identifier) : std::nullopt;
    }

    // Before the application object goes; ends every wait.
    void end()
    {
        if (question)
            g_cancellable_cancel(question->cancelled.get());
        queue->sync([this] { service.reset(); });
        queue.reset();
        patience.reset();
        question.reset();
        asksAgain = false;
    }
};

Telephony::Telephony()
    : d(std::make_unique<Private>())
{
}

Telephony::~Telephony()
{
    // exit() takes the statics down beneath a running application object: nothing else would end
    // the wait for a bus that does not answer.
    if (d->queue)
        d->end();
}

Telephony &Telephony::shared()
{
    static Telephony instance;
    return instance;
}

void Telephony::ask()
{
    if (QCoreApplication::instance() && !QCoreApplication::closingDown())
        d->ask();
}

std::optional<QString> Telephony::isoCountryCode() const { return d->isoCountryCode; }

} // namespace parloquin
