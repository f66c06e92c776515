#pragma once

#include "Parloquin/Parloquin.h"
#include "Parloquin/Toolkit/TableView.h"
#include "support/Hands.h"
#include "support/RawServer.h"

#include <QtCore/QMutex>
#include <QtCore/QPointer>
#include <QtCore/QStringList>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

/// \brief Hears outcomes on any thread and keeps them as texts: "succeeded S-1", "failed 0".
class RecordingDelegate : public ParloquinDelegate {
public:
    void verificationDidSucceed(const QString &sessionId) override;
    void verificationDidFail(ParloquinError error) override;

    [[nodiscard]] QStringList outcomes() const;

    /// Called within each outcome, on its thread.
    std::function<void()> whenTold;

private:
    void record(const QString &outcome);

    mutable QMutex m_mutex;
    QStringList m_outcomes;
};

/// \brief A container over a server of the test, on a device with one messaging app.
///
/// The desktop of the test has a handler for `parlo:`, which writes down its arguments, and some
/// odd ones.
class ContainerTest : public testing::Test {
public:
    /// A container of 390 x 844, shown, its answers still to come.
    /// \param page of a host, to stand in; else it is a window
    void present(QWidget *page = nullptr);
    /// The same, and waits until the overlay has gone again.
    void presentLoaded();
    /// \return a button, label, ... of the container by its name; null where there is none
    template <class T = QWidget> [[nodiscard]] T *find(const char *name) const
    {
        return container->findChild<T *>(QString::fromLatin1(name));
    }
    /// The one that shows, of screens with parts of the same name; null where none does
    [[nodiscard]] QWidget *visible(const char *name) const;
    [[nodiscard]] QRect frame(const QWidget *widget) const; ///< within the container

    [[nodiscard]] bool isAtRest() const { return container->property("atRest").toBool(); }
    [[nodiscard]] bool rests() const; ///< waits for it
    /// Waits for a part of a screen that has come to rest.
    [[nodiscard]] testing::AssertionResult seen(const char *name) const;
    [[nodiscard]] parloquin::TableCell *row(const char *table, int section, int at) const;
    [[nodiscard]] bool overlayIsUp() const;
    [[nodiscard]] bool waitForOverlay(bool up) const;
    /// Waits until that many requests have come and the overlay has gone again.
    ///
    /// It was up in between: to lay it is queued for the main thread before the request is sent.
    [[nodiscard]] testing::AssertionResult settle(size_t requests) const;
    /// Handlers run one after another: behind one of our own, that of the last answer is through,
    /// and so is what it had for the main thread.
    [[nodiscard]] static bool drainSession();
    [[nodiscard]] testing::AssertionResult waitForOutcomes(int count) const;
    static void tap(const QWidget *widget) { hands::click(widget); }
    void tap(const char *name) const { tap(visible(name)); }
    void tapRow(int row) const { tap(this->row("tblKits", 0, row)); }
    /// As an input method does.
    static void type(const QString &text) { hands::commit(text); }
    // The steps of the road by SMS from phone entry on, each by hand and eye.
    void openPicker() const;
    void choose(const QString &title) const;
    void pick(const QString &title) const; ///< both
    void enterNumber(const QString &number) const;
    /// Norway, 41234567.
    /// \param other of a host; it takes the keyboard while the number is sent
    void goToCode(QWidget *other = nullptr) const;
    static void comeBack();

    [[nodiscard]] QList<QByteArray> paths() const; ///< of the requests so far
    void answer(const char *path, const QByteArray &json);
    /// With the apps below and some countries: it ends with "S-1" on one road, "S-2" on the other.
    void answerBothRoads();

    /// \return what the messaging app was started with; empty while it was not
    [[nodiscard]] static QStringList handlerArguments();
    static void forgetHandlerArguments();
    /// \return how often it was started since this was asked last
    [[nodiscard]] static int takeHandlerStarts();

    RawServer server;
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
    std::unique_ptr<ParloquinViewController> container;

protected:
    void SetUp() override;
    void TearDown() override { container.reset(); }
};

/// Of a label, a button or a field.
inline QString textOf(const QWidget *widget) { return widget->property("text").toString(); }
/// Of a country's row.
inline QString titleOf(const QWidget *cell)
{
    return textOf(cell->findChild<QWidget *>(QStringLiteral("lblTitle")));
}

/// One app that the device has, one it has not, one without a link; with the road by SMS.
inline const QByteArray threeApps = R"({"meta":{"httpStatusCode":200},"result":{
    "description":"Pick an app.","alternativeValidation":"otp",
    "alternativeValidationDescription":"Get a code by SMS instead",
    "appPackageList":[{"package":"parlo://"},{"package":"kite://"},{"package":"not a url"},{}],
    "list":[{"app":"parlo","appPackage":"parlo://","text":"Verify with Parlo","name":"Parlo",
             "bgColour":"#1C7C4C","textColour":"#FFD14A"},
            {"app":"kite","appPackage":"kite://","text":"Verify with Kite"},
            {"app":"murmur","name":"Murmur"}]}})";
