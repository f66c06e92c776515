// Bytes of a connection to an HTTP answer, in one piece and in several: the same either way, and
// never more kept than allowed.
#include "Parloquin/Transport/HttpAnswer.h"
#include "fuzz/Fuzz.h"

#include <algorithm>

using namespace parloquin;
using State = HttpAnswer::State;

namespace {

constexpr qint64 most = 4096; // bytes of a body

struct Seen {
    State state;
    std::optional<UrlResponse> response;
    QByteArray body;
};

Seen readInPieces(QByteArrayView bytes, qsizetype size)
{
    HttpAnswer answer(most);
    State state = State::incomplete;
    for (; state == State::incomplete && !bytes.isEmpty(); bytes = bytes.sliced(size)) {
        size = std::min(size, bytes.size());
        state = answer.read(bytes.first(size));
    }
    if (state == State::incomplete)
        state = answer.end();
    return { state, answer.response(), answer.takeBody() };
}

} // namespace

void fuzz(const QByteArray &bytes)
{
    if (bytes.isEmpty())
        return;
    const QByteArray answer = bytes.sliced(1);
    const Seen whole = readInPieces(answer, answer.size());
    const Seen pieces = readInPieces(answer, 1 + static_cast<std::uint8_t>(bytes[0]) % 16);
    require(whole.state == pieces.state, "pieces end in the same state");
    require(whole.response.has_value() == pieces.response.has_value(), "pieces have a head too");
    if (whole.response) {
        require(whole.response->statusCode >= 200, "interim answers are passed over");
        require(whole.response->headers == pieces.response->headers, "fields are the same");
        require(whole.response->mimeType == pieces.response->mimeType, "the type is the same");
    }
    require(std::max(whole.body.size(), pieces.body.size()) <= most + 1, "bodies are bounded");
    if (whole.state == State::whole)
        require(whole.response && whole.body == pieces.body, "bodies are the same");
}
