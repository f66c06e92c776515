#pragma once

#include "Screens/Container.h"
#include "support/Widgets.h"

/// An answer that goes well with this result.
QByteArray ok(const QByteArray &result);

/// \brief A phone of 390 x 844 with a status area of 44, phone entry open on an empty root screen.
class SmsRoad : public ContainerTest {
public:
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
    QRect frame(const char *name) const { return ContainerTest::frame(part(name)); }
    void goBack(); ///< from code entry
    /// Texts of the code's boxes, the focused one in brackets.
    QString boxes() const;

protected:
    void SetUp() override;
};
