#pragma once

#include "Screens/Container.h"
#include "support/Widgets.h"

/// An answer that goes well with this result.
QByteArray ok(const QByteArray &result);
/// The service hangs up instead of answering.
inline const QByteArray dropped;

/// \brief A phone of 390 x 844 with a status area of 44, phone entry open on an empty root screen.
class SmsRoad : public ContainerTest {
public:
    static void paste(const QString &text);

    /// What a call, as "send-otp", brings from now on.
    void on(const std::string &call, const QByteArray &answer);
    [[nodiscard]] QList<QJsonObject> bodies(const std::string &call) const;

    [[nodiscard]] Screen *page() const;
    /// A part of it, or of its bar, by its name.
    template <class W = QWidget> W *part(const char *name) const
    {
        W *const found = dynamic_cast<W *>(visible(name));
        [&] { ASSERT_NE(found, nullptr) << name; }(); // ends the case
        return found;
    }
    QString text(const char *name) const { return textOf(part(name)); }
    QRect frame(const char *name) const { return ContainerTest::frame(part(name)); }
    /// What the page's fields hold, a bar between two.
    [[nodiscard]] QString fields() const;

    [[nodiscard]] bool isTold() const { return waitForOutcomes(1); }
    [[nodiscard]] QStringList told() const { return delegate->outcomes(); }

    void goBack(); ///< from code entry
    /// Texts of the code's boxes, the focused one in brackets.
    QString boxes() const;

protected:
    void SetUp() override;
};
