#include "Parloquin/Transport/HttpAnswer.h"

#include <algorithm>
#include <cctype>

namespace parloquin {

namespace {

constexpr qint64 mostHeadBytes = qint64 { 64 } * 1024; // interim answers included
constexpr qint64 mostLineBytes = mostHeadBytes; // of a chunk's size, or behind the last chunk
constexpr qsizetype mostFields = 500; // each is looked for among the ones before it
constexpr qint64 spareBytes = 64; // behind a body, for parsers that read in blocks
constexpr qint64 mostReservedBytes = qint64 { 1 } * 1024 * 1024; // before any of them has come

/// \return the number; nothing where there is another character than digits, or too many of them
std::optional<qint64> number(QByteArrayView digits, int base)
{
    const auto isOther = [base](char c) {
        const auto value = static_cast<unsigned char>(c);
        return (base == 16 ? std::isxdigit(value) : std::isdigit(value)) == 0;
    };
    bool fits = false;
    const qint64 value = digits.toLongLong(&fits, base);
    if (!fits || std::any_of(digits.begin(), digits.end(), isOther))
        return {};
    return value;
}

/// \return the length that a field tells; it may stand there several times, always the same
std::optional<qint64> contentLength(const QByteArray &value)
{
    const QByteArrayList lengths = value.split(',');
    const QByteArray first = lengths.constFirst().trimmed();
    const bool agree = std::all_of(lengths.begin(), lengths.end(),
        [&first](const QByteArray &length) { return length.trimmed() == first; });
    return agree ? number(first, 10) : std::nullopt;
}

bool isUnreadable(QByteArrayView line) { return line.contains('\0') || line.contains('\r'); }

} // namespace

HttpAnswer::HttpAnswer(qint64 maximumBytes)
    : m_maximumBytes(maximumBytes)
{
}

HttpAnswer::State HttpAnswer::read(QByteArrayView bytes)
{
    while (m_state == State::incomplete && !bytes.isEmpty()) {
        if (m_part == Part::body || m_part == Part::bodyToEnd || m_part == Part::chunk) {
            takeData(bytes);
            continue;
        }
        const qsizetype end = bytes.indexOf('\n');
        const QByteArrayView piece = end < 0 ? bytes : bytes.first(end + 1);
        bytes = bytes.sliced(piece.size());
        m_lineBytes += piece.size();
        if (m_lineBytes > mostHeadBytes + (m_response ? m_maximumBytes : 0)
            || m_line.size() + piece.size() > mostLineBytes) {
            m_state = State::tooLong;
        } else if (end < 0) {
            m_line += piece;
        } else if (m_line.isEmpty()) {
            takeLine(piece);
        } else {
            m_line += piece;
            takeLine(std::exchange(m_line, {}));
        }
    }
    return m_state;
}

HttpAnswer::State HttpAnswer::end()
{
    if (m_state == State::incomplete)
        m_state = m_part == Part::bodyToEnd ? State::whole : State::broken;
    return m_state;
}

void HttpAnswer::takeLine(QByteArrayView line)
{
    line.chop(line.endsWith("\r\n") ? 2 : 1);
    if (isUnreadable(line)) {
        m_state = State::broken;
        return;
    }
    switch (m_part) {
    case Part::status:
        takeStatus(line);
        break;
    case Part::field:
        if (line.isEmpty())
            startBody();
        else
            takeField(line);
        break;
    case Part::chunkSize:
        takeChunkSize(line);
        break;
    case Part::chunkEnd:
        if (line.isEmpty())
            m_part = Part::chunkSize;
        else
            m_state = State::broken;
        break;
    case Part::trailer:
        if (line.isEmpty())
            m_state = State::whole;
        break;
    default:
        break; // data, which has no lines
    }
}

void HttpAnswer::takeStatus(QByteArrayView line)
{
    // HTTP/1.1 200 OK, where the last word and the blank before it may be missing.
    const bool isStatus = line.size() >= 12 && line.startsWith("HTTP/1.")
        && number(line.sliced(7, 1), 10) && line[8] == ' '
        && (line.size() == 12 || line[12] == ' ');
    const auto code = isStatus ? number(line.sliced(9, 3), 10) : std::nullopt;
    if (!code || *code < 100) {
        m_state = State::broken;
        return;
    }
    m_head = { static_cast<int>(*code), {}, {} };
    m_part = Part::field;
}

void HttpAnswer::takeField(QByteArrayView line)
{
    HeaderFields &fields = m_head.headers;
    if (line.front() == ' ' || line.front() == '\t') { // goes on with the line before
        if (fields.isEmpty()) {
            m_state = State::broken;
            return;
        }
        QByteArray &value = fields[m_field].second;
        const QByteArrayView rest = line.trimmed();
        if (!value.isEmpty() && !rest.isEmpty())
            value += ' ';
        value += rest;
        return;
    }
    const qsizetype colon = std::max<qsizetype>(line.indexOf(':'), 0);
    const QByteArray name = line.first(colon).trimmed().toByteArray();
    if (name.isEmpty()) {
        m_state = State::broken;
        return;
    }
    QByteArray value = line.sliced(colon + 1).trimmed().toByteArray();
    const auto same = std::find_if(fields.begin(), fields.end(),
        [&name](const auto &field) { return field.first.compare(name, Qt::CaseInsensitive) == 0; });
    m_field = std::distance(fields.begin(), same);
    if (same != fields.end())
        same->second += ", " + value;
    else if (fields.size() == mostFields)
        m_state = State::tooLong;
    else
        fields.append({ name, std::move(value) });
}

void HttpAnswer::startBody()
{
    if (m_head.statusCode < 200) {
        m_part = Part::status;
        return;
    }
    std::optional<QByteArray> length;
    std::optional<QByteArray> coding;
    for (const auto &[name, value] : std::as_const(m_head.headers)) {
        if (name.compare("Content-Length", Qt::CaseInsensitive) == 0)
            length = value;
        else if (name.compare("Transfer-Encoding", Qt::CaseInsensitive) == 0)
            coding = value;
        else if (name.compare("Content-Type", Qt::CaseInsensitive) == 0)
            m_head.mimeType = value.split(';').constFirst().trimmed().toLower();
    }
    m_response = std::move(m_head);
    if (m_response->statusCode == 204 || m_response->statusCode == 304) {
        m_state = State::whole;
    } else if (coding) {
        m_part = Part::chunkSize;
        if (coding->compare("chunked", Qt::CaseInsensitive) != 0)
            m_state = State::broken;
    } else if (!length) {
        m_part = Part::bodyToEnd;
        m_expected = m_maximumBytes + 1; // one more, which is too much
    } else if (const auto bytes = contentLength(*length)) {
        expect(*bytes, Part::body);
    } else {
        m_state = State::broken;
    }
}

void HttpAnswer::takeChunkSize(QByteArrayView line)
{
    // Extensions may stand behind the size.
    const auto end = std::find_if(line.begin(), line.end(), [](char c) { return c == ';'; });
    const auto size = number(line.first(std::distance(line.begin(), end)).trimmed(), 16);
    if (!size)
        m_state = State::broken;
    else if (*size == 0)
        m_part = Part::trailer;
    else
        expect(*size, Part::chunk);
}

void HttpAnswer::expect(qint64 bytes, Part part)
{
    m_part = part;
    m_expected = bytes;
    if (bytes > m_maximumBytes - m_body.size())
        m_state = State::tooLong;
    else if (bytes == 0)
        m_state = State::whole;
    else if (part == Part::body)
        m_body.reserve(std::min(bytes, mostReservedBytes) + spareBytes);
}

void HttpAnswer::takeData(QByteArrayView &bytes)
{
    const qsizetype count = std::min<qint64>(m_expected, bytes.size());
    m_body += bytes.first(count);
    bytes = bytes.sliced(count);
    m_expected -= count;
    if (m_expected > 0)
        return;
    if (m_part == Part::chunk)
        m_part = Part::chunkEnd;
    else
        m_state = m_part == Part::body ? State::whole : State::tooLong;
}

} // namespace parloquin
