#pragma once

#include <QtCore/QString>

#include <functional>
#include <memory>

namespace parloquin {

/// \brief Hears the SMS that the device receives while this object lives.
///
/// Main thread only; never waits. Messages from before are not looked at, those that come in parts
/// are heard once they are whole. Nothing is kept or written anywhere. A device without a modem, or
/// one that does not let this program read, is heard as one that gets no messages.
class IncomingMessages {
public:
    /// On the main thread; may destroy the object.
    using Heard = std::function<void(const QString &text)>;

    explicit IncomingMessages(Heard heard);
    ~IncomingMessages();
    Q_DISABLE_COPY_MOVE(IncomingMessages)

private:
    struct Private;
    std::shared_ptr<Private> d;
};

} // namespace parloquin
