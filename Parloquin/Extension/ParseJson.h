#pragma once

#include <QtCore/QByteArray>

#include <simdjson.h>

namespace parloquin {

/// \brief Parses a body; what comes out borrows from the document, which holds its texts.
///
/// The parser looks a little beyond the end of its text, and copies a text that has no room there;
/// one that does is read in place. What only it needs is gone on return.
[[nodiscard]] inline simdjson::simdjson_result<simdjson::dom::element> parseJson(
    simdjson::dom::document &document, const QByteArray &body)
{
    if (body.startsWith("\xEF\xBB\xBF"))
        return simdjson::TAPE_ERROR; // newer versions pass over the mark, older ones do not
    QByteArray text = body; // shares the bytes: only a text that may change tells its room
    const bool hasRoom =
        text.data_ptr().freeSpaceAtEnd() >= static_cast<qsizetype>(simdjson::SIMDJSON_PADDING);
    simdjson::dom::parser parser;
    return parser.parse_into_document(
        document, body.constData(), static_cast<std::size_t>(body.size()), !hasRoom);
}

} // namespace parloquin
