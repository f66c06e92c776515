#pragma once

#include "Parloquin/Transport/UrlSession.h"

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayView>

#include <optional>

namespace parloquin {

/// \brief Reads one HTTP/1.x answer (RFC 9112) from the bytes of a connection that carries no
/// other.
///
/// Interim answers (1xx) are passed over and trailers dropped. Refused are a transfer coding other
/// than chunked, which has no end that can be told, and a NUL or a lone CR among the fields, which
/// every reader takes for something else. What a peer can make it keep is bounded: 64 KiB of head,
/// in 500 fields, as much of any later line, and the body.
class HttpAnswer {
public:
    enum class State {
        incomplete, ///< more has to come
        whole,
        broken, ///< no HTTP, or cut off by end()
        tooLong, ///< more than the bounds allow
    };

    /// \param maximumBytes of the body, and beside it of its chunks' framing
    explicit HttpAnswer(qint64 maximumBytes);

    /// Takes the bytes that came next; those behind a whole answer are ignored.
    State read(QByteArrayView bytes);

    /// Says that no more will come.
    /// \return `whole` where the end of the connection is the end of the body
    State end();

    /// \return the head; nothing until all of it has come
    [[nodiscard]] const std::optional<UrlResponse> &response() const { return m_response; }
    [[nodiscard]] QByteArray takeBody() { return std::move(m_body); }

private:
    enum class Part { status, field, body, bodyToEnd, chunkSize, chunk, chunkEnd, trailer };

    void takeLine(QByteArrayView line);
    void takeStatus(QByteArrayView line);
    void takeField(QByteArrayView line);
    void takeChunkSize(QByteArrayView line);
    void takeData(QByteArrayView &bytes);
    void startBody();
    void expect(qint64 bytes, Part part);

    const qint64 m_maximumBytes;
    State m_state = State::incomplete;
    Part m_part = Part::status;
    QByteArray m_line; ///< as much of the present one as has come
    qint64 m_lineBytes = 0; ///< of all lines so far
    UrlResponse m_head; ///< under way
    qsizetype m_field = 0; ///< of the head: what the last line was about
    std::optional<UrlResponse> m_response;
    qint64 m_expected = 0; ///< bytes still to come of the body or the chunk
    QByteArray m_body;
};

} // namespace parloquin
